#pragma once

#include "dxf/file_scanner.h"
#include "objects/contents.h"

#include <vector>

namespace korra {

/// Makes sure that no block contains itself, directly or in a circle, and that blocks neither nest
/// deeper nor show more than drawing them can follow.
/// @param ids  of the objects of the file
/// @throw DrawingError that names the block and the line where it is defined
void checkBlockNesting(const DatabaseContents& contents, const ReadFile& file,
                       const std::vector<KdDbObjectId>& ids);

} // namespace korra
