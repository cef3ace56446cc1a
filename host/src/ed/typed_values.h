#pragma once

#include "kd/ge.h"

#include <optional>
#include <string_view>

namespace korra::ed {

/// The number that a text reads as, blanks around it aside.
std::optional<double> readReal(std::wstring_view text);

/// The point `x,y` or `x,y,z` that a text reads as.
std::optional<KdGePoint3d> readPoint(std::wstring_view text);

} // namespace korra::ed
