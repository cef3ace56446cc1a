#pragma once

#include "kd/ge.h"

#include <string>
#include <variant>

namespace korra::ed {

/// A value as its variable's type has it: RTSHORT, RTREAL, RTPOINT or RT3DPOINT, RTSTR.
using VariableValue = std::variant<short, double, KdGePoint3d, std::wstring>;

} // namespace korra::ed
