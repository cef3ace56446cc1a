#include "tables/palette.h"

#include <array>
#include <cstddef>

namespace korra {
namespace {

constexpr int kFirstOfCircle = 10;
constexpr int kFirstGrey = 250;

constexpr std::array<Rgb, kFirstOfCircle> kBasic = {{{0, 0, 0},
                                                     {255, 0, 0},
                                                     {255, 255, 0},
                                                     {0, 255, 0},
                                                     {0, 255, 255},
                                                     {0, 0, 255},
                                                     {255, 0, 255},
                                                     {255, 255, 255},
                                                     {128, 128, 128},
                                                     {192, 192, 192}}};

constexpr std::array<std::uint8_t, 6> kGreys = {51, 91, 132, 173, 214, 255};

/// How much of a primary colour a hue has, in quarters; hues are 15 degrees apart, and the primary
/// is the one of the first hue.
constexpr int quartersAt(int hue)
{
    constexpr int kHues = 24;
    constexpr int kRise = 4; // hues from none to all
    hue = (hue % kHues + kHues) % kHues;
    const int distance = hue <= kHues / 2 ? hue : kHues - hue;
    if (distance <= kRise)
        return kRise;
    return distance >= 2 * kRise ? 0 : 2 * kRise - distance;
}

/// A component of a colour of the circle, cut to a whole number.
/// @param pale  half way to white before it is darkened
constexpr std::uint8_t component(int quarters, bool pale, int percent)
{
    const int eighths = pale ? 4 + quarters : 2 * quarters;
    return static_cast<std::uint8_t>(255 * percent * eighths / 800);
}

/// From 10 on the palette goes round the circle of hues, ten colours for each: five degrees of
/// brightness, each full and pale.
constexpr Rgb circleColor(int index)
{
    constexpr std::array kPercent = {100, 65, 50, 30, 15};
    constexpr int kGreenHue = 8;
    constexpr int kBlueHue = 16;
    const int hue = index / 10 - 1;
    const bool pale = index % 2 != 0;
    const int percent = kPercent[static_cast<std::size_t>(index % 10 / 2)];
    return {component(quartersAt(hue), pale, percent),
            component(quartersAt(hue - kGreenHue), pale, percent),
            component(quartersAt(hue - kBlueHue), pale, percent)};
}

constexpr int squaredDistance(Rgb left, Rgb right)
{
    const int red = left.red - right.red;
    const int green = left.green - right.green;
    const int blue = left.blue - right.blue;
    return red * red + green * green + blue * blue;
}

} // namespace

Rgb paletteColor(int index)
{
    if (index < kFirstOfCircle)
        return kBasic[static_cast<std::size_t>(index)];
    if (index < kFirstGrey)
        return circleColor(index);
    const std::uint8_t grey = kGreys[static_cast<std::size_t>(index - kFirstGrey)];
    return {grey, grey, grey};
}

std::uint16_t nearestPaletteIndex(Rgb color)
{
    int nearest = 1;
    for (int index = 2; isPaletteIndex(index); ++index) {
        if (squaredDistance(paletteColor(index), color) <
            squaredDistance(paletteColor(nearest), color))
            nearest = index;
    }
    return static_cast<std::uint16_t>(nearest);
}

} // namespace korra
