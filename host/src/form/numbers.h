#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korra {

// The first two are inline, for every tag of a file goes through them.

/// A text without the blanks around it.
inline std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    return text;
}

/// A group code, 0 to 9999; -1 for anything else.
inline int parseGroupCode(std::string_view text)
{
    text = trimmed(text);
    if (text.empty() || text.size() > 4)
        return -1;
    int code = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return -1;
        code = 10 * code + (digit - '0');
    }
    return code;
}

/// A finite number, blanks around it allowed; nullopt for anything else, or when it is too large.
std::optional<double> parseReal(std::string_view text);
std::optional<long long> parseWhole(std::string_view text);

/// Handles have 63 bits.
inline constexpr std::uint64_t kLastHandle = (std::uint64_t{1} << 63) - 1;

/// A handle in hexadecimal; nullopt for anything else, or one beyond the last.
std::optional<std::uint64_t> parseHandle(std::string_view text);

/// The shortest text that reads back as the same number.
std::string formatReal(double value);
std::string formatWhole(long long value);

/// Upper-case hexadecimal.
std::string formatHandle(std::uint64_t value);

/// Bytes as upper-case hexadecimal digits, two each.
std::string formatBytes(std::string_view bytes);

double degreesToRadians(double degrees);

/// Degrees that read back as the same radians where such a text exists, else the nearest.
std::string formatDegrees(double radians);

/// The least and the greatest integer that a group code can carry.
struct WholeRange {
    long long least;
    long long greatest;
};

WholeRange wholeRange(int code);

} // namespace korra
