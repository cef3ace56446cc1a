#include "dxf/binary_form.h"

#include "dxf/drawing_error.h"
#include "dxf/tag_stream.h"
#include "dxf/tag_text.h"
#include "form/numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace korra {
namespace {

/// Behind the name of a program.
constexpr std::string_view kSentinelEnd(" Binary DXF\r\n\x1A\0", 15);
constexpr std::size_t kSentinelSize = 22;

enum class ValueForm { none, text, real, bits16, bits32, bits64, byte, chunk };

/// Group codes up to one have their values in one form.
struct CodeRange {
    int last;
    ValueForm form;
};

constexpr std::array kCodeRanges = {
    CodeRange{9, ValueForm::text},      CodeRange{59, ValueForm::real},
    CodeRange{79, ValueForm::bits16},   CodeRange{89, ValueForm::none},
    CodeRange{99, ValueForm::bits32},   CodeRange{109, ValueForm::text},
    CodeRange{149, ValueForm::real},    CodeRange{159, ValueForm::none},
    CodeRange{169, ValueForm::bits64},  CodeRange{179, ValueForm::bits16},
    CodeRange{209, ValueForm::none},    CodeRange{239, ValueForm::real},
    CodeRange{269, ValueForm::none},    CodeRange{289, ValueForm::bits16},
    CodeRange{299, ValueForm::byte},    CodeRange{309, ValueForm::text},
    CodeRange{319, ValueForm::chunk},   CodeRange{369, ValueForm::text},
    CodeRange{389, ValueForm::bits16},  CodeRange{399, ValueForm::text},
    CodeRange{409, ValueForm::bits16},  CodeRange{419, ValueForm::text},
    CodeRange{429, ValueForm::bits32},  CodeRange{439, ValueForm::text},
    CodeRange{459, ValueForm::bits32},  CodeRange{469, ValueForm::real},
    CodeRange{481, ValueForm::text},    CodeRange{998, ValueForm::none},
    CodeRange{1003, ValueForm::text},   CodeRange{1004, ValueForm::chunk},
    CodeRange{1009, ValueForm::text},   CodeRange{1059, ValueForm::real},
    CodeRange{1070, ValueForm::bits16}, CodeRange{1071, ValueForm::bits32},
};

ValueForm formOf(int code)
{
    const auto* const range = std::ranges::lower_bound(kCodeRanges, code, {}, &CodeRange::last);
    return range == kCodeRanges.end() ? ValueForm::none : range->form;
}

/// Takes the bytes of a file and knows where it is.
class ByteCursor {
public:
    ByteCursor(std::string_view bytes, std::size_t place) : bytes_(bytes), place_(place) {}

    /// What was not taken yet.
    std::string_view rest() const { return bytes_.substr(place_); }

    std::string_view take(std::size_t count)
    {
        if (rest().size() < count)
            fail("the file ends within a tag");
        const std::string_view taken = rest().substr(0, count);
        place_ += count;
        return taken;
    }

    /// The bytes before the next zero byte, which is taken with them.
    std::string_view takeText()
    {
        const std::size_t length = rest().find('\0');
        if (std::min(length, rest().size()) > kLongestLine)
            fail("a text is longer than a megabyte");
        if (length == bytes_.npos)
            fail("the file ends within a text");
        return take(length + 1).substr(0, length);
    }

    [[noreturn]] void fail(const std::string& what) const
    {
        throw DrawingError{0, what + ", at byte " + std::to_string(place_)};
    }

private:
    std::string_view bytes_;
    std::size_t place_;
};

/// Turns tags of the binary form into those of the ASCII form.
class BinaryForm {
public:
    /// @param bytes  of the whole file
    explicit BinaryForm(std::string_view bytes) : bytes_(bytes, kSentinelSize)
    {
        // Codes of one byte came first. A drawing begins with code 0, or 999 in a comment.
        const std::string_view first = bytes_.rest().substr(0, 2);
        hasShortCodes_ =
            first.starts_with(kLongCode) || (first.starts_with('\0') && first != kZero);
    }

    /// The tags up to EOF, and what stands behind it as it is; that EOF is missing its reader sees.
    std::string inAscii()
    {
        std::string text;
        bool isEnd = false;
        while (!isEnd && !bytes_.rest().empty()) {
            const int code = takeCode();
            const std::string value = takeValue(code);
            appendTag(text, code, value, "\n");
            isEnd = code == 0 && value == "EOF";
        }
        return text.append(bytes_.rest());
    }

private:
    static constexpr char kLongCode = '\xFF'; ///< among codes of one byte: two more are the code
    static constexpr std::string_view kZero{"\0\0", 2};

    int takeCode()
    {
        if (hasShortCodes_) {
            const auto code = takeBits<std::uint8_t>();
            if (code != static_cast<std::uint8_t>(kLongCode))
                return code;
        }
        return takeBits<std::uint16_t>();
    }

    std::string takeValue(int code)
    {
        switch (formOf(code)) {
        case ValueForm::text:
            return takeLine();
        case ValueForm::real:
            return takeReal();
        case ValueForm::bits16:
            return formatWhole(static_cast<std::int16_t>(takeBits<std::uint16_t>()));
        case ValueForm::bits32:
            return formatWhole(static_cast<std::int32_t>(takeBits<std::uint32_t>()));
        case ValueForm::bits64:
            return formatWhole(static_cast<std::int64_t>(takeBits<std::uint64_t>()));
        case ValueForm::byte:
            return formatWhole(takeBits<std::uint8_t>());
        case ValueForm::chunk:
            return formatBytes(bytes_.take(takeBits<std::uint8_t>()));
        case ValueForm::none:
            break;
        }
        bytes_.fail(std::to_string(code) + " is no group code of the binary form");
    }

    /// A text of one line: its line ends are told as in the ASCII form.
    std::string takeLine()
    {
        std::string line;
        for (const char character : bytes_.takeText()) {
            if (character == '\n' || character == '\r')
                line += {'^', static_cast<char>(character + '@')};
            else
                line += character;
        }
        return line;
    }

    std::string takeReal()
    {
        const auto value = std::bit_cast<double>(takeBits<std::uint64_t>());
        if (!std::isfinite(value))
            bytes_.fail("a number was expected");
        return formatReal(value);
    }

    /// Numbers stand with the lowest byte first.
    template <class Bits>
    Bits takeBits()
    {
        const std::string_view bytes = bytes_.take(sizeof(Bits));
        std::uint64_t bits = 0;
        for (std::size_t index = sizeof(Bits); index-- > 0;)
            bits = bits << 8 | static_cast<unsigned char>(bytes[index]);
        return static_cast<Bits>(bits);
    }

    ByteCursor bytes_;
    bool hasShortCodes_;
};

} // namespace

std::string inAsciiForm(std::string file)
{
    const bool isBinary = std::string_view(file).substr(0, kSentinelSize).ends_with(kSentinelEnd);
    if (!isBinary)
        return file;
    return BinaryForm(file).inAscii();
}

} // namespace korra
