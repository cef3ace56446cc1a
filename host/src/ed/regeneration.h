#pragma once

#include "kd/db/ids.h"

namespace korra::ed {

/// Makes the graphics of a dimension anew where it or its style differs from what the file holds;
/// the graphics that came with the file stand otherwise. Other objects draw themselves as they are.
void regenerate(KdDbObjectId id);

} // namespace korra::ed
