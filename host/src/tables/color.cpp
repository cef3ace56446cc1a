#include "kd/db/color.h"

#include "tables/palette.h"

namespace {

constexpr std::uint16_t kByBlockIndex = 0;
constexpr std::uint16_t kByLayerIndex = 256;

constexpr std::uint8_t byteOf(std::int32_t rgb, int shift)
{
    return static_cast<std::uint8_t>(rgb >> shift & 0xFF);
}

korra::Rgb ofIndex(std::uint16_t index)
{
    return korra::isPaletteIndex(index) ? korra::paletteColor(index) : korra::Rgb();
}

} // namespace

KdCmColor::ColorMethod KdCmColor::colorMethod() const
{
    if (rgb_ != kNoRgb)
        return kByColor;
    if (index_ == kByLayerIndex)
        return kByLayer;
    return index_ == kByBlockIndex ? kByBlock : kByIndex;
}

void KdCmColor::setColorIndex(std::uint16_t index)
{
    index_ = index;
    rgb_ = kNoRgb;
}

void KdCmColor::setRGB(std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    index_ = korra::nearestPaletteIndex({red, green, blue});
    rgb_ = red << 16 | green << 8 | blue;
}

std::uint8_t KdCmColor::red() const
{
    return rgb_ == kNoRgb ? ofIndex(index_).red : byteOf(rgb_, 16);
}

std::uint8_t KdCmColor::green() const
{
    return rgb_ == kNoRgb ? ofIndex(index_).green : byteOf(rgb_, 8);
}

std::uint8_t KdCmColor::blue() const
{
    return rgb_ == kNoRgb ? ofIndex(index_).blue : byteOf(rgb_, 0);
}
