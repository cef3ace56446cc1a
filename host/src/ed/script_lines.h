#pragma once

#include "ed/input_event.h"

#include <string>

namespace korra::ed {

/// The event of a line in the script form: a text or point, an empty line for Enter, a hand
/// movement (\esc, \miss [x,y], \right, \space, \ctrl x,y, \move x,y); `\\` begins a text with one
/// backslash. The line is echoed as it stands.
InputEvent readInputLine(const std::string& utf8Line);

/// The event of a text that is typed as it stands, which is echoed: a point where it reads as one,
/// Enter where it is empty.
InputEvent typedEvent(const std::wstring& text);

} // namespace korra::ed
