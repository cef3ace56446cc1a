#pragma once

#include <string>

class KdDbDimension;

namespace korra {

/// The text that a dimension shows, in the form codes of a multiline text; empty for none.
///
/// The user's own text, "<>" in it replaced by the measurement; without one the measurement. A text
/// of one blank shows nothing.
/// @param measured  drawing units before DIMLFAC
/// @param sign  what stands before the number unless DIMPOST has something else there: "R", "%%c"
std::wstring lengthText(const KdDbDimension& dimension, double measured, const wchar_t* sign);

/// The text that an angular dimension shows, as lengthText() gives that of a length.
/// @param measured  radians
std::wstring angleText(const KdDbDimension& dimension, double measured);

} // namespace korra
