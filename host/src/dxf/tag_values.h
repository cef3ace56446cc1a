#pragma once

#include "dxf/tag_cursor.h"
#include "form/encoding.h"
#include "form/numbers.h"
#include "kd/db/color.h"

#include <array>
#include <optional>

namespace korra {

/// The coordinates that a point has in the tags; kNone for those that are not there.
struct PointTags {
    std::array<std::size_t, 3> axis = {TagCursor::kNone, TagCursor::kNone, TagCursor::kNone};

    bool found() const { return axis[0] != TagCursor::kNone; }
};

/// Takes the tags of a point with `axes` coordinates.
inline PointTags takePoint(TagCursor& cursor, int code, std::size_t axes)
{
    PointTags tags;
    tags.axis[0] = cursor.take(code);
    for (std::size_t axis = 1; tags.found() && axis < axes; ++axis)
        tags.axis[axis] = cursor.takeBehind(tags.axis[0], code + 10 * static_cast<int>(axis));
    return tags;
}

/// The whole number of a tag; nullopt when it is none or outside the range of its code.
inline std::optional<long long> wholeOf(const ObjectTag& tag)
{
    const auto value = parseWhole(tag.value);
    const WholeRange range = wholeRange(tag.code);
    return value && *value >= range.least && *value <= range.greatest ? value : std::nullopt;
}

/// Indexes of colours run from 0 (by block) to 256 (by layer); 257 stands for none.
inline constexpr long long kLastColor = 257;

/// Layers can have the colours -3 to -1, in memory 65533 to 65535. In files their sixteen bits lack
/// the highest one: the sign says whether the layer is off.
inline constexpr long long kFirstNegativeColor = 65533;
inline constexpr long long kNegativeColorShift = 32768;
inline constexpr long long kFirstNegativeColorInFiles = kFirstNegativeColor - kNegativeColorShift;

/// Red, green and blue of a colour go before its index; the name of a colour book follows them.
inline constexpr int kTrueColorCode = 420;
inline constexpr int kColorNameCode = 430;

inline std::optional<long long> trueColorOf(const ObjectTag& tag)
{
    constexpr long long kRgbBits = 0xFFFFFF;
    const auto value = wholeOf(tag);
    return value ? std::optional(*value & kRgbBits) : std::nullopt;
}

inline void setTrueColor(KdCmColor& color, long long rgb)
{
    color.setRGB(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                 static_cast<std::uint8_t>(rgb));
}

inline std::optional<long long> colorOf(const ObjectTag& tag)
{
    const auto value = wholeOf(tag);
    return value && *value >= 0 && *value <= kLastColor ? value : std::nullopt;
}

} // namespace korra
