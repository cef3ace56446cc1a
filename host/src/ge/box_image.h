#pragma once

#include "kd/ge.h"

namespace korra {

/// The box around everything, of what has no bounds.
KdGeExtents3d boxOfAll();

/// False for a box that reaches beyond all numbers.
bool isBounded(const KdGeExtents3d& box);

/// A box around the image of a box under an affine map; of an empty box an empty one, and around
/// everything for one without bounds.
KdGeExtents3d imageOf(const KdGeExtents3d& box, const KdGeMatrix3d& map);

} // namespace korra
