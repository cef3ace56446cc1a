#pragma once

#include <string>
#include <string_view>

namespace korra {

/// Where a font face lies: a file, UTF-8, and the index of the face in it.
struct FontFile {
    std::string file; ///< empty when no font is installed at all
    int face = 0;
};

/// The installed font that a text style's font name means.
///
/// A name that ends in ".ttf", ".otf" or ".ttc" is an installed file of that base name, case aside;
/// any other, and one that is not installed, is a family. A shape font (".shx", or a name that is
/// no family) and an empty name give the substitute, the system's sans-serif.
FontFile findInstalledFont(std::wstring_view name);

} // namespace korra
