#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace korra {

/// The paragraphs that the contents of a multiline text show, its form codes read.
///
/// \P, \N, \X and line feeds end a paragraph; \~ \\ \{ \} \U+XXXX and %%-codes are characters; the
/// parts of a stack (\S) stand one behind the other; groups and all other codes are passed over.
std::vector<std::wstring> readParagraphs(std::wstring_view contents);

/// Whether contents hold codes that readParagraphs() passes over, or stacks: the paragraphs do not
/// say all of them.
bool isFormatted(std::wstring_view contents);

/// A paragraph broken at blanks into lines not wider than a frame; a word that is wider by itself
/// has a line of its own. The blanks at a break are dropped.
/// @param frameWidth  0: never broken
/// @param widthOf  the width of a piece of text
std::vector<std::wstring> wrapped(const std::wstring& paragraph, double frameWidth,
                                  const std::function<double(std::wstring_view)>& widthOf);

} // namespace korra
