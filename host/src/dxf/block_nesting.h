#pragma once

#include "objects/contents.h"

#include <cstddef>
#include <functional>

namespace korra {

/// Makes sure that no block contains itself, directly or in a circle, and that blocks neither nest
/// deeper nor show more than drawing them can follow.
/// @param lineOf  the line to blame for a block
/// @throw DrawingError that names the block
void checkBlockNesting(const DatabaseContents& contents,
                       const std::function<std::size_t(const KdDbBlockTableRecord&)>& lineOf);

} // namespace korra
