#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace platform {

/// One style of a family of installed scalable fonts, as the font declares itself.
struct InstalledStyle {
    std::wstring family;
    LONG weight = 400; ///< 400 regular, 700 bold
    bool italic = false;
    bool fixedPitch = false;
    BYTE characterSet = ANSI_CHARSET;
    LONG ascent = 0;              ///< units of the font's design
    LONG descent = 0;             ///< below the base line, positive
    bool standsForFamily = false; ///< the one that an enumeration of families tells of
};

/// Every style of every family, families in the order of their names; looked up once.
///
/// A font with several family names is listed under each. Families whose name does not fit into a
/// font description are left out.
const std::vector<InstalledStyle>& installedStyles();

/// The character set that the code pages of a font's own table declare: symbols first, then one of
/// East Asia, else Latin where it is declared, else the first of the others.
/// @param codePages  bits as the OS/2 table has them
BYTE characterSetOf(DWORD codePages);

} // namespace platform
