#pragma once

#include "options.h"

/// What the program tells its caller.
enum ExitStatus : int {
    kDone = 0,
    kUnknownCommand = 1,
    kWrongUsage = 2,
    kFileFailure = 3,
};

/// Starts the host, does what the options ask for, and ends the host.
/// @throw UsageError for what only the running host can see to be wrong
ExitStatus runSession(const Options& options);
