#pragma once

#include <string>

namespace korra::ed {

/// A number with up to six decimals, trailing zeros cut; what would read as -0 is 0.
std::wstring numberText(double number);

} // namespace korra::ed
