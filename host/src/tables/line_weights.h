#pragma once

#include <algorithm>
#include <array>

namespace korra {

/// True for the three special line weights and the standard widths in hundredths of a millimetre.
constexpr bool isStandardLineWeight(int weight)
{
    constexpr std::array kWeights = {-3, -2, -1, 0,  5,  9,  13,  15,  18,  20,  25,  30,  35, 40,
                                     50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    return std::ranges::find(kWeights, weight) != kWeights.end();
}

} // namespace korra
