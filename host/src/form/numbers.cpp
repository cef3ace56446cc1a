#include "form/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numbers>

namespace korra {
namespace {

/// A number must end with its text; a plus sign, which std::from_chars refuses, may stand first.
template <class T, class... Form>
std::optional<T> parseWholeText(std::string_view text, std::errc& error, Form... form)
{
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    T value{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, form...);
    error = result.ec;
    if (result.ptr != end || result.ec == std::errc::invalid_argument)
        return std::nullopt;
    return value;
}

template <class T, class... Form>
std::string format(T value, Form... form)
{
    char digits[64];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, form...);
    return std::string(digits, result.ptr);
}

bool readsBackAs(const std::string& degrees, double radians)
{
    return degreesToRadians(*parseReal(degrees)) == radians;
}

} // namespace

std::optional<double> parseReal(std::string_view text)
{
    std::errc error{};
    const auto value = parseWholeText<double>(text, error);
    if (value && error == std::errc::result_out_of_range) {
        const double rounded = std::strtod(std::string(text).c_str(), nullptr);
        return std::abs(rounded) < 1.0 ? std::optional(rounded) : std::nullopt;
    }
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<long long> parseWhole(std::string_view text)
{
    std::errc error{};
    const auto value = parseWholeText<long long>(text, error);
    return error == std::errc{} ? value : std::nullopt;
}

std::optional<std::uint64_t> parseHandle(std::string_view text)
{
    std::errc error{};
    const auto value = parseWholeText<std::uint64_t>(text, error, 16);
    return error == std::errc{} && value && *value <= kLastHandle ? value : std::nullopt;
}

std::string formatReal(double value)
{
    return format(value == 0.0 ? 0.0 : value); // no "-0"
}

std::string formatWhole(long long value)
{
    return format(value);
}

std::string formatHandle(std::uint64_t value)
{
    std::string digits = format(value, 16);
    for (char& digit : digits) {
        if (digit >= 'a')
            digit = static_cast<char>(digit - 'a' + 'A');
    }
    return digits;
}

std::string formatBytes(std::string_view bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        digits += {kDigits[value >> 4], kDigits[value & 15]};
    }
    return digits;
}

double degreesToRadians(double degrees)
{
    return degrees * (std::numbers::pi / 180.0);
}

std::string formatDegrees(double radians)
{
    // The product with 180/pi may be off in its last place: 15 digits find the round number, the
    // neighbours the rest.
    const double degrees = radians * (180.0 / std::numbers::pi);
    const std::string round = format(degrees, std::chars_format::general, 15);
    if (readsBackAs(round, radians))
        return formatReal(*parseReal(round));
    for (const double candidate :
         {degrees, std::nextafter(degrees, 1e300), std::nextafter(degrees, -1e300)}) {
        if (readsBackAs(formatReal(candidate), radians))
            return formatReal(candidate);
    }
    return formatReal(degrees);
}

WholeRange wholeRange(int code)
{
    const bool is32Bits = (code >= 90 && code <= 99) || (code >= 420 && code <= 429) ||
                          (code >= 440 && code <= 459) || code == 1071;
    if (is32Bits)
        return {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
    if (code >= 160 && code <= 169)
        return {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};
    return {std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max()};
}

} // namespace korra
