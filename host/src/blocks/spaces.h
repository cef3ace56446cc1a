#pragma once

#include "kd/db/block_record.h"

#include <string_view>
#include <vector>

/// The blocks that are worked in: model space and the sheets.
namespace korra {

inline constexpr wchar_t kModelSpace[] = L"*Model_Space";
inline constexpr wchar_t kPaperSpace[] = L"*Paper_Space"; ///< the block of the current sheet

/// True for model space and the sheets, by name.
bool isSpaceName(std::wstring_view blockName);

/// Viewports of a sheet that are not erased, the sheet's own one first.
std::vector<KdDbObjectId> viewportsOf(const KdDbBlockTableRecord& sheet);

} // namespace korra
