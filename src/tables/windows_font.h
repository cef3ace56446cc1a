#pragma once

#include <afxwin.h>

namespace tables {

/// True for a name of at most 31 characters, all that a font description holds.
bool fitsFaceName(const CString& name);

/// The description of an installed font family, by its face name in any case; of several families
/// of that name the last one that the system lists.
/// @param faceName  see fitsFaceName()
/// @return nothing but the face name when no such family is installed
LOGFONTW findWindowsFont(const CString& faceName);

} // namespace tables
