#include "ed/typed_values.h"

#include "platform/text.h"

#include <charconv>
#include <cmath>

namespace korra::ed {

std::optional<double> readReal(std::wstring_view text)
{
    const std::string digits =
        platform::toUtf8(platform::trimmedLeft(platform::trimmedRight(text)));
    const char* first = digits.data();
    const char* const last = first + digits.size();
    if (digits.size() > 1 && *first == '+' && first[1] != '-')
        ++first;
    double value = 0.0;
    const auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc() || end != last || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<KdGePoint3d> readPoint(std::wstring_view text)
{
    KdGePoint3d point;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const std::size_t comma = text.find(L',');
        const std::optional<double> coordinate = readReal(text.substr(0, comma));
        if (!coordinate)
            return std::nullopt;
        point[axis] = *coordinate;
        if (comma == std::wstring_view::npos)
            return axis > 0 ? std::optional(point) : std::nullopt;
        text.remove_prefix(comma + 1);
    }
    return std::nullopt;
}

} // namespace korra::ed
