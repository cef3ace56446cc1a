#include "platform/text.h"

#include <array>
#include <cstdint>

namespace {
constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCharacter = 0x10FFFF;
constexpr char32_t kFirstHighSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr char32_t kFirstBeyondBasicPlane = 0x10000;

/// A malformed byte b of a UTF-8 text is kept as this + b; those bytes are all above 0x7F.
constexpr char32_t kKeptByte = kFirstLowSurrogate;

bool isHighSurrogate(char32_t code)
{
    return code >= kFirstHighSurrogate && code < kFirstLowSurrogate;
}

bool isLowSurrogate(char32_t code)
{
    return code >= kFirstLowSurrogate && code <= kLastSurrogate;
}

bool isCharacter(char32_t code)
{
    return code <= kLastCharacter && !isHighSurrogate(code) && !isLowSurrogate(code);
}

bool isKeptByte(char32_t code)
{
    return code >= kKeptByte + 0x80 && code <= kKeptByte + 0xFF;
}

std::uint8_t byteAt(std::string_view bytes, std::size_t index)
{
    return static_cast<std::uint8_t>(bytes[index]);
}

/// Bytes of the sequence that a first byte announces; 0 when it can begin none.
std::size_t sequenceLength(std::uint8_t first)
{
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

struct Decoded {
    char32_t code;
    std::size_t length; ///< bytes; 0 when they are malformed
};

/// Decodes the first character of a text that is not empty.
Decoded decodeFirst(std::string_view bytes)
{
    constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, kFirstBeyondBasicPlane};
    const std::size_t length = sequenceLength(byteAt(bytes, 0));
    if (length == 0 || length > bytes.size())
        return {0, 0};

    char32_t code = length == 1 ? byteAt(bytes, 0) : byteAt(bytes, 0) & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(bytes, i) & 0xC0) != 0x80)
            return {0, 0};
        code = code << 6 | (byteAt(bytes, i) & 0x3F);
    }
    return code >= kSmallest[length] && isCharacter(code) ? Decoded{code, length} : Decoded{0, 0};
}

void appendUtf8(std::string& bytes, char32_t code)
{
    if (code < 0x80) {
        bytes += static_cast<char>(code);
        return;
    }
    constexpr std::array<char32_t, 4> kLeads{0, 0xC0, 0xE0, 0xF0};
    const std::size_t continuations = code < 0x800 ? 1 : code < kFirstBeyondBasicPlane ? 2 : 3;
    int shift = 6 * static_cast<int>(continuations);
    bytes += static_cast<char>(kLeads[continuations] | code >> shift);
    while ((shift -= 6) >= 0)
        bytes += static_cast<char>(0x80 | (code >> shift & 0x3F));
}
} // namespace

std::wstring platform::fromUtf8(std::string_view bytes)
{
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded next = decodeFirst(bytes);
        const char32_t code = next.length ? next.code : kKeptByte + byteAt(bytes, 0);
        text += static_cast<wchar_t>(code);
        bytes.remove_prefix(next.length ? next.length : 1);
    }
    return text;
}

std::string platform::toUtf8(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        const auto code = static_cast<char32_t>(character);
        appendUtf8(bytes, isCharacter(code) ? code : kReplacement);
    }
    return bytes;
}

std::string platform::toBytes(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        const auto code = static_cast<char32_t>(character);
        if (isKeptByte(code))
            bytes += static_cast<char>(code - kKeptByte);
        else
            appendUtf8(bytes, isCharacter(code) ? code : kReplacement);
    }
    return bytes;
}

std::wstring platform::fromUtf16(std::u16string_view units)
{
    std::wstring text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t code = units[i];
        if (isHighSurrogate(code) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
            ++i;
            code = kFirstBeyondBasicPlane + ((code - kFirstHighSurrogate) << 10) +
                   (units[i] - kFirstLowSurrogate);
        }
        text += static_cast<wchar_t>(code);
    }
    return text;
}

std::u16string platform::toUtf16(std::wstring_view text)
{
    std::u16string units;
    units.reserve(text.size());
    for (const wchar_t character : text) {
        const auto code = static_cast<char32_t>(character);
        if (code > kLastCharacter) {
            units += static_cast<char16_t>(kReplacement);
        } else if (code >= kFirstBeyondBasicPlane) {
            const char32_t offset = code - kFirstBeyondBasicPlane;
            units += static_cast<char16_t>(kFirstHighSurrogate + (offset >> 10));
            units += static_cast<char16_t>(kFirstLowSurrogate + (offset & 0x3FF));
        } else {
            units += static_cast<char16_t>(code);
        }
    }
    return units;
}
