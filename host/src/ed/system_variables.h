#pragma once

#include "ed/variable_value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class KdDbDatabase;

namespace korra::ed {

/// One system variable: what it is, where it lives, what it takes.
struct SystemVariable {
    /// Where the value is kept.
    enum class Home {
        host,     ///< with the host, until it stops
        header,   ///< in the drawing's header
        space,    ///< there, each of model space and the sheets its own (those begin with P)
        computed, ///< nowhere: found out, and set, through functions
    };

    using Read = VariableValue (*)(const KdDbDatabase& database);
    using Write = bool (*)(KdDbDatabase& database, const VariableValue& value);

    std::wstring name;
    short type = 0;
    Home home = Home::host;
    VariableValue byDefault; ///< of what is kept
    double minimum = 0.0;    ///< of a number
    double maximum = 0.0;
    int code = 0;          ///< group code of what is kept in the header
    Read read = nullptr;   ///< of what is computed
    Write write = nullptr; ///< of what is computed, null: it can only be read
};

/// The variable of a name, without regard to case; null when there is none.
const SystemVariable* findVariable(std::wstring_view name);

/// Every variable.
const std::vector<SystemVariable>& systemVariables();

/// The value for the current document; nullopt when there is none and the variable needs it.
std::optional<VariableValue> readVariable(const SystemVariable& variable);

/// @return false, nothing changed, for a value of another type or out of range, a variable that can
///         only be read, or no document where the variable needs one
bool writeVariable(const SystemVariable& variable, const VariableValue& value);

/// The value that a text means for a variable; nullopt where it means none.
std::optional<VariableValue> variableValueOf(const SystemVariable& variable,
                                             std::wstring_view text);

/// Writes the value that a text means into the variable of a name.
/// @return false, nothing changed, when there is no such variable or it refuses the value
bool setVariable(std::wstring_view name, std::wstring_view text);

/// A value as the command line shows it.
std::wstring textOf(const VariableValue& value);

} // namespace korra::ed
