#pragma once

#include "ed/system_variable.h"

#include <optional>
#include <string_view>
#include <vector>

namespace korra::ed {

/// The variable of a name, without regard to case; null when there is none.
const SystemVariable* findVariable(std::wstring_view name);

/// Every variable.
const std::vector<SystemVariable>& systemVariables();

/// The value that a text means for a variable; nullopt where it means none.
std::optional<VariableValue> variableValueOf(const SystemVariable& variable,
                                             std::wstring_view text);

/// Writes the value that a text means.
/// @return false, nothing changed, when it means none, or the variable refuses it or is only read
bool setVariable(const SystemVariable& variable, std::wstring_view text);

/// A value as the command line shows it.
std::wstring textOf(const VariableValue& value);

} // namespace korra::ed
