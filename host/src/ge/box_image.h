#pragma once

#include "kd/ge.h"

namespace korra {

/// A box around the image of a box under an affine map; of an empty box an empty one.
KdGeExtents3d imageOf(const KdGeExtents3d& box, const KdGeMatrix3d& map);

} // namespace korra
