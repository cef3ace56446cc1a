#include "dxf/extended_values.h"

#include "dxf/tag_text.h"
#include "dxf/tag_values.h"
#include "form/numbers.h"
#include "records/extended_data.h"

#include <algorithm>

namespace korra {
namespace {

constexpr int kBytes = 1004;
constexpr int kFirstPoint = 1010;
constexpr int kLastPoint = 1013;

std::optional<std::string> bytesOfHex(std::string_view digits)
{
    std::string bytes;
    digits = trimmed(digits);
    for (std::size_t index = 0; index + 1 < digits.size(); index += 2) {
        const auto value = parseHandle(digits.substr(index, 2));
        if (!value)
            return std::nullopt;
        bytes += static_cast<char>(*value);
    }
    return digits.size() % 2 == 0 ? std::optional(bytes) : std::nullopt;
}

template <class T>
std::optional<TypedValue> typed(int code, std::optional<T> value)
{
    if (!value)
        return std::nullopt;
    return TypedValue{static_cast<short>(code), *std::move(value)};
}

std::optional<TypedValue> plainValue(const ObjectTag& tag, const TextEncoding& encoding)
{
    if (tag.code == kBytes)
        return typed(tag.code, bytesOfHex(tag.value));
    if (tag.code < kFirstPoint)
        return TypedValue{static_cast<short>(tag.code), encoding.decode(tag.value)};
    const auto whole = wholeOf(tag);
    if (tag.code == kXDataShort)
        return typed(tag.code, whole ? std::optional(static_cast<short>(*whole)) : std::nullopt);
    if (tag.code == 1071)
        return typed(tag.code,
                     whole ? std::optional(static_cast<std::int32_t>(*whole)) : std::nullopt);
    return typed(tag.code, parseReal(tag.value));
}

/// Reads the coordinates of a point: y and z follow x, and may be missing.
std::optional<ExtendedValue> pointValue(const TagList& tags, std::size_t index, std::size_t& wrong)
{
    KdGePoint3d point;
    ExtendedValue read{{}, index, 0};
    for (int axis = 0; axis < 3; ++axis) {
        const std::size_t place = index + read.tagCount;
        if (place >= tags.size() || tags[place].code != tags[index].code + 10 * axis)
            break;
        const auto coordinate = parseReal(tags[place].value);
        wrong = place;
        if (!coordinate)
            return std::nullopt;
        (axis == 0 ? point.x : axis == 1 ? point.y : point.z) = *coordinate;
        ++read.tagCount;
    }
    read.value = {static_cast<short>(tags[index].code), point};
    return read;
}

std::optional<ExtendedValue> readValue(const TagList& tags, std::size_t index,
                                       const TextEncoding& encoding, std::size_t& wrong)
{
    wrong = index;
    if (tags[index].code >= kFirstPoint && tags[index].code <= kLastPoint)
        return pointValue(tags, index, wrong);
    auto value = plainValue(tags[index], encoding);
    if (!value)
        return std::nullopt;
    return ExtendedValue{*std::move(value), index, 1};
}

} // namespace

std::optional<std::vector<ExtendedValue>>
readExtendedData(const TagList& tags, const TextEncoding& encoding, std::size_t& wrong)
{
    std::vector<ExtendedValue> values;
    for (std::size_t index = 0; index < tags.size();) {
        if (tags[index].part != TagPart::extended) {
            ++index;
            continue;
        }
        auto value = readValue(tags, index, encoding, wrong);
        if (!value)
            return std::nullopt;
        index += value->tagCount;
        values.push_back(*std::move(value));
    }
    return values;
}

std::string extendedValueTags(const TypedValue& value, const TextEncoding& encoding,
                              std::string_view lineEnd)
{
    std::string tags;
    const auto add = [&](int code, std::string_view text) { appendTag(tags, code, text, lineEnd); };
    if (const auto* const text = std::get_if<std::wstring>(&value.value)) {
        add(value.code, encoding.encode(*text));
    } else if (const auto* const bytes = std::get_if<std::string>(&value.value)) {
        add(value.code, formatBytes(*bytes));
    } else if (const auto* const point = std::get_if<KdGePoint3d>(&value.value)) {
        add(value.code, realText(point->x));
        add(value.code + 10, realText(point->y));
        add(value.code + 20, realText(point->z));
    } else if (const auto* const real = std::get_if<double>(&value.value)) {
        add(value.code, realText(*real));
    } else if (const auto* const number = std::get_if<short>(&value.value)) {
        add(value.code, formatWhole(*number));
    } else {
        add(value.code, formatWhole(std::get<std::int32_t>(value.value)));
    }
    return tags;
}

} // namespace korra
