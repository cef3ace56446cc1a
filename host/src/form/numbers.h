#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korra {

/// A text without the blanks around it.
std::string_view trimmed(std::string_view text);

/// A group code, 0 to 9999; -1 for anything else.
int parseGroupCode(std::string_view text);

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
