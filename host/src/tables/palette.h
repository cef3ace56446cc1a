#pragma once

#include <cstdint>

namespace korra {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Rgb&, const Rgb&) = default;
};

/// The colours of the palette have the indexes 1 to 255.
constexpr bool isPaletteIndex(int index)
{
    return index >= 1 && index <= 255;
}

/// The colour of a palette index.
Rgb paletteColor(int index);

/// The index of the palette's nearest colour by the sum of the squared differences; of equally near
/// ones the lowest.
std::uint16_t nearestPaletteIndex(Rgb color);

} // namespace korra
