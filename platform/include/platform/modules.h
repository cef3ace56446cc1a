#pragma once

#include <windows.h>

#include <string>

namespace platform {

/// The module of the running program.
HINSTANCE programModule();

/// The folder that the running program lies in, without a slash at its end.
std::string programFolder();

/// Why the last LoadLibraryW() failed, in the system's words.
std::string whyNotLoaded();

} // namespace platform
