#pragma once

#include "rx/loaded_module.h"

#include <string_view>

namespace korra::rx {

/// Calls the list-processing function that the current document knows by a name: the function that
/// was bound to it, else the module that defined it. @return false when there is none
bool invokeFunction(std::wstring_view name);

/// Undefines what a module defined, in every document.
void forgetFunctionsOf(const LoadedModule& module);

} // namespace korra::rx
