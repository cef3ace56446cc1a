#pragma once

#include "kd/ge.h"
#include "kd/own/sound_variant.h"

#include <functional>
#include <optional>
#include <string>

namespace korra::ed {

/// A value as its variable's type has it: RTSHORT, RTREAL, RTPOINT or RT3DPOINT, RTSTR.
using VariableValue = SoundVariant<short, double, KdGePoint3d, std::wstring>;

/// One system variable: what it is called, and how it is read and written.
struct SystemVariable {
    std::wstring name;
    short type = 0;

    /// The value for the current document; nullopt when there is none and the variable needs it.
    std::function<std::optional<VariableValue>()> read;

    /// Takes a value of the variable's type. Empty: the variable can only be read.
    /// @return false, nothing changed, for one that is refused, or without the document it needs
    std::function<bool(const VariableValue& value)> write;
};

} // namespace korra::ed
