#pragma once

#include <cstdint>

/// A colour: an index of the palette, by layer, by block, or red, green and blue.
class KdCmColor {
public:
    enum ColorMethod : int { kByLayer, kByBlock, kByIndex, kByColor };

    /// By layer.
    constexpr KdCmColor() = default;

    /// How the colour was given last: kByColor by setRGB(), the others by their index.
    ColorMethod colorMethod() const;

    /// 0 by block, 1-255 palette, 256 by layer; the number is kept as it is given.
    void setColorIndex(std::uint16_t index);

    /// The index that was set; of red, green and blue the palette's nearest by the sum of the
    /// squared differences, of equally near ones the lowest.
    std::uint16_t colorIndex() const { return index_; }

    void setRGB(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

    /// As set, or as the palette has the index; 0 for by layer, by block and indexes beyond.
    std::uint8_t red() const;
    std::uint8_t green() const;
    std::uint8_t blue() const;

    friend bool operator==(const KdCmColor&, const KdCmColor&) = default;

private:
    static constexpr std::int32_t kNoRgb = -1;

    std::uint16_t index_ = 256;
    std::int32_t rgb_ = kNoRgb; ///< red in bits 16-23, green in 8-15, blue in 0-7
};
