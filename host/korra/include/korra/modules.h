#pragma once

#include "korra/host.h"

#include <string>

namespace korra {

/// Loads an extension module by path, or by a name beside the program or in an added folder; the
/// name may lack its extension. A module that is loaded already is done, too.
/// @return the message says in one line why it is not loaded
FileOutcome loadModule(const std::string& name);

} // namespace korra
