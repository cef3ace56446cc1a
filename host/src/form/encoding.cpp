#include "form/encoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <optional>

namespace korra {
namespace {

constexpr wchar_t kReplacement = L'\uFFFD';
constexpr const char* kWide = "WCHAR_T";
const auto kNoConverter = reinterpret_cast<iconv_t>(-1);

/// One direction of a conversion.
class Converter {
public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}

    ~Converter()
    {
        if (handle_ != kNoConverter)
            iconv_close(handle_);
    }

    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    explicit operator bool() const { return handle_ != kNoConverter; }

    /// @return false when the input was not used up
    bool run(const char*& in, std::size_t& inLeft, char*& out, std::size_t& outLeft) const
    {
        char* source = const_cast<char*>(in); // iconv's signature; it does not write there
        const bool done = iconv(handle_, &source, &inLeft, &out, &outLeft) != kFailed;
        in = source;
        return done;
    }

    void reset() const { iconv(handle_, nullptr, nullptr, nullptr, nullptr); }

private:
    static constexpr std::size_t kFailed = static_cast<std::size_t>(-1);
    iconv_t handle_;
};

std::string iconvName(std::string_view codePage)
{
    std::string name;
    for (const char c : codePage)
        name += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    for (const std::string_view prefix : {"ANSI_", "DOS"}) {
        if (name.starts_with(prefix))
            return "CP" + name.substr(prefix.size());
    }
    return name;
}

bool isAscii(std::string_view bytes)
{
    return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::wstring widened(std::string_view bytes)
{
    std::wstring text(bytes.size(), L'\0');
    std::ranges::transform(bytes, text.begin(), [](char c) {
        return static_cast<wchar_t>(static_cast<unsigned char>(c));
    });
    return text;
}

} // namespace

/// Both directions of a code page; Latin-1 where iconv does not know it.
class CodePage {
public:
    explicit CodePage(const std::string& iconvName)
        : toWide_(kWide, iconvName.c_str()), fromWide_(iconvName.c_str(), kWide)
    {
    }

    struct Decoded {
        std::wstring text;
        bool isWhole = true; ///< no byte had to be read as Latin-1
    };

    Decoded decode(std::string_view bytes) const
    {
        if (!toWide_ || isAscii(bytes))
            return {widened(bytes)};
        bool isWhole = true;
        std::wstring text(bytes.size() + 1, L'\0');
        const char* in = bytes.data();
        std::size_t inLeft = bytes.size();
        char* out = reinterpret_cast<char*>(text.data());
        std::size_t outLeft = text.size() * sizeof(wchar_t);
        toWide_.reset();
        while (!toWide_.run(in, inLeft, out, outLeft) && inLeft > 0) {
            isWhole = false;
            *reinterpret_cast<wchar_t*>(out) = static_cast<unsigned char>(*in);
            out += sizeof(wchar_t);
            outLeft -= sizeof(wchar_t);
            ++in;
            --inLeft;
        }
        text.resize(text.size() - outLeft / sizeof(wchar_t));
        return {std::move(text), isWhole};
    }

    /// The bytes of one character; nullopt when the code page lacks it.
    std::optional<std::string> encode(wchar_t character) const
    {
        if (!fromWide_) {
            return character < 0x100 ? std::optional(std::string(1, static_cast<char>(character)))
                                     : std::nullopt;
        }
        std::array<char, 8> bytes;
        const char* in = reinterpret_cast<const char*>(&character);
        std::size_t inLeft = sizeof character;
        char* out = bytes.data();
        std::size_t outLeft = bytes.size();
        fromWide_.reset();
        if (!fromWide_.run(in, inLeft, out, outLeft))
            return std::nullopt;
        return std::string(bytes.data(), out);
    }

private:
    Converter toWide_;
    Converter fromWide_;
};

namespace {

std::optional<wchar_t> hexValue(std::wstring_view digits)
{
    std::uint32_t value = 0;
    for (const wchar_t digit : digits) {
        const bool isDecimal = digit >= L'0' && digit <= L'9';
        const wchar_t letter = digit | 0x20;
        if (!isDecimal && (letter < L'a' || letter > L'f'))
            return std::nullopt;
        value =
            value * 16 + static_cast<std::uint32_t>(isDecimal ? digit - L'0' : letter - L'a' + 10);
    }
    return static_cast<wchar_t>(value);
}

bool isHighSurrogate(wchar_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}

bool isLowSurrogate(wchar_t c)
{
    return c >= 0xDC00 && c < 0xE000;
}

constexpr std::size_t kUnicodeEscape = 7;   // \U+XXXX
constexpr std::size_t kMultiByteEscape = 8; // \M+nXXXX

std::optional<wchar_t> unicodeEscape(std::wstring_view text)
{
    if (text.size() < kUnicodeEscape || !(text.starts_with(L"\\U+") || text.starts_with(L"\\u+")))
        return std::nullopt;
    const auto value = hexValue(text.substr(3, 4));
    return value && *value != 0 ? value : std::nullopt;
}

/// The digit behind \M+ names one of five code pages.
std::optional<std::wstring> multiByteEscape(std::wstring_view text)
{
    if (text.size() < kMultiByteEscape || !text.starts_with(L"\\M+") || text[3] < L'1' ||
        text[3] > L'5')
        return std::nullopt;
    const auto value = hexValue(text.substr(4, 4));
    if (!value)
        return std::nullopt;
    static const std::array<CodePage, 5> pages = {CodePage("CP932"), CodePage("CP950"),
                                                  CodePage("CP949"), CodePage("JOHAB"),
                                                  CodePage("CP936")};
    const std::string bytes = {static_cast<char>(*value >> 8), static_cast<char>(*value & 0xFF)};
    return pages[static_cast<std::size_t>(text[3] - L'1')].decode(bytes).text;
}

/// ^J is a control character, "^ " the caret itself.
std::optional<wchar_t> caretEscape(std::wstring_view text)
{
    if (text.size() < 2 || text[0] != L'^')
        return std::nullopt;
    if (text[1] == L' ')
        return L'^';
    return text[1] > L'@' && text[1] <= L'_' ? std::optional<wchar_t>(text[1] - L'@')
                                             : std::nullopt;
}

/// Appends a 16-bit unit; the second half of a pair joins the first.
void appendUnit(std::wstring& text, wchar_t unit)
{
    if (isLowSurrogate(unit) && !text.empty() && isHighSurrogate(text.back()))
        text.back() = 0x10000 + ((text.back() - 0xD800) << 10) + (unit - 0xDC00);
    else
        text += unit;
}

std::wstring unescaped(std::wstring_view text)
{
    std::wstring plain;
    while (!text.empty()) {
        std::size_t length = 1;
        if (const auto unit = unicodeEscape(text)) {
            appendUnit(plain, *unit);
            length = kUnicodeEscape;
        } else if (const auto characters = multiByteEscape(text)) {
            plain += *characters;
            length = kMultiByteEscape;
        } else if (const auto character = caretEscape(text)) {
            plain += *character;
            length = 2;
        } else {
            plain += text[0];
        }
        text.remove_prefix(length);
    }
    std::ranges::replace_if(
        plain, [](wchar_t c) { return isHighSurrogate(c) || isLowSurrogate(c); }, kReplacement);
    return plain;
}

std::string unicodeEscapes(wchar_t character)
{
    const auto code = static_cast<char32_t>(character);
    const auto escape = [](char32_t unit) {
        char text[kUnicodeEscape + 1];
        std::snprintf(text, sizeof text, "\\U+%04X", static_cast<unsigned>(unit & 0xFFFF));
        return std::string(text);
    };
    if (code < 0x10000)
        return escape(code);
    return escape(0xD800 + ((code - 0x10000) >> 10)) + escape(0xDC00 + ((code - 0x10000) & 0x3FF));
}

bool needsEscapes(std::wstring_view text)
{
    return std::ranges::any_of(text, [](wchar_t c) { return c < 0x20 || c == L'^'; });
}

/// Texts of the file hold no line ends; what would read as an escape is made one.
std::wstring caretEscaped(std::wstring_view text)
{
    std::wstring escaped;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const wchar_t character = text[index];
        if (character < 0x20) {
            escaped += {L'^', static_cast<wchar_t>(character + L'@')};
            continue;
        }
        escaped += character;
        if (caretEscape(text.substr(index)))
            escaped += L' ';
    }
    return escaped;
}

} // namespace

TextEncoding::TextEncoding() : TextEncoding("UTF-8") {}

TextEncoding::TextEncoding(std::string codePage)
    : name_(std::move(codePage)), page_(std::make_shared<CodePage>(iconvName(name_)))
{
}

TextEncoding::TextEncoding(std::string codePage, std::string_view otherPage)
    : TextEncoding(std::move(codePage))
{
    otherPage_ = std::make_shared<CodePage>(iconvName(otherPage));
}

std::wstring TextEncoding::decode(std::string_view bytes) const
{
    CodePage::Decoded decoded = page_->decode(bytes);
    if (!decoded.isWhole && otherPage_)
        decoded = otherPage_->decode(bytes);
    const std::wstring& text = decoded.text;
    return text.find_first_of(L"\\^") == std::wstring::npos ? text : unescaped(text);
}

std::string TextEncoding::encode(std::wstring_view text) const
{
    const std::wstring escaped = needsEscapes(text) ? caretEscaped(text) : std::wstring(text);
    std::string bytes;
    for (const wchar_t character : escaped) {
        if (character < 0x80)
            bytes += static_cast<char>(character);
        else if (const auto encoded = page_->encode(character))
            bytes += *encoded;
        else
            bytes += unicodeEscapes(character);
    }
    return bytes;
}

} // namespace korra
