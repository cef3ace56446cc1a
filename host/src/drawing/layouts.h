#pragma once

#include "kd/db/layout.h"
#include "objects/contents.h"

#include <string_view>
#include <vector>

namespace korra {

inline constexpr wchar_t kLayoutDictionary[] = L"ACAD_LAYOUT";

/// The dictionary of the layouts; null when there is none.
KdDbObjectId layoutDictionaryOf(const DatabaseContents& contents);

/// Layouts in the order of their tabs, the model tab first; erased ones excluded.
std::vector<KdDbLayout*> layoutsOf(const DatabaseContents& contents);

/// The layout whose tab is current; null in a drawing that is not complete.
KdDbLayout* currentLayout(const DatabaseContents& contents);

/// Makes a layout current, by name without regard to case. The block of the current sheet is the
/// one named "*Paper_Space", so the blocks trade names; the model tab only sets the tile mode.
/// @return eOk; eKeyNotFound, nothing changed
Kdapi::ErrorStatus setCurrentLayout(DatabaseContents& contents, std::wstring_view name);

} // namespace korra
