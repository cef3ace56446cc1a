#pragma once

#include <string_view>

namespace korra::ed {

/// Reads commands and runs them until the input ends or QUIT.
/// @return false when one was unknown
bool runCommands();

/// Runs a command or a list-processing function by the name that was typed; an underscore and a dot
/// before it are passed over. @return false, and it is said, when there is none
bool runCommand(std::wstring_view typed);

} // namespace korra::ed
