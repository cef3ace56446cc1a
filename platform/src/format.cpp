#include "platform/format.h"

#include "platform/text.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace {

/// What an argument's length letters say about it.
enum class Size { standard, narrow, wide, bits64, pointer, longDouble };

/// One directive of a pattern: `%-8.3lf`.
struct Directive {
    std::string flags;
    int width = 0;
    int precision = -1; ///< -1: none given
    Size size = Size::standard;
    wchar_t conversion = 0; ///< 0 at the end of the pattern
};

/// Walks a pattern and takes the arguments as its directives name them.
class Formatter {
public:
    Formatter(const wchar_t* pattern, std::va_list arguments) : rest_(pattern)
    {
        va_copy(arguments_, arguments);
    }

    ~Formatter() { va_end(arguments_); }

    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    std::wstring run()
    {
        while (const wchar_t character = next()) {
            if (character == L'%')
                printDirective(readDirective());
            else
                text_ += character;
        }
        return std::move(text_);
    }

private:
    /// The next character of the pattern; 0, again and again, at its end.
    wchar_t next() { return *rest_ ? *rest_++ : L'\0'; }

    bool accept(std::wstring_view letters)
    {
        if (!std::wstring_view(rest_).starts_with(letters))
            return false;
        rest_ += letters.size();
        return true;
    }

    Directive readDirective();
    int readCount();
    Size readSize();

    void printDirective(const Directive& directive);
    std::int64_t takeInteger(Size size);
    void printInteger(const Directive& directive);
    void printPointer(const Directive& directive);
    void printReal(const Directive& directive);
    void printString(const Directive& directive, bool narrow);
    void printCharacter(const Directive& directive, bool narrow);

    /// Appends a text, filled with blanks to the directive's width.
    void printPadded(std::wstring_view text, const Directive& directive);

    template <class Number>
    void printNumber(const Directive& directive, const char* length, Number number);

    const wchar_t* rest_;
    std::va_list arguments_;
    std::wstring text_;
};

/// The bits of an unsigned argument of a size, as a mask.
unsigned long long usedBits(Size size)
{
    if (size == Size::bits64 || size == Size::pointer)
        return UINT64_MAX;
    return size == Size::narrow ? UINT16_MAX : UINT32_MAX;
}

bool isDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

Directive Formatter::readDirective()
{
    Directive directive;
    while (*rest_ && std::wstring_view(L"-+ #0").find(*rest_) != std::wstring_view::npos)
        directive.flags += static_cast<char>(*rest_++);
    directive.width = readCount();
    if (directive.width < 0) {
        directive.flags += '-';
        directive.width = -directive.width;
    }
    if (accept(L"."))
        directive.precision = std::max(readCount(), -1);
    directive.size = readSize();
    directive.conversion = next();
    return directive;
}

/// A width or precision: digits, or `*` for an argument. Bounded, so that no text grows unheard of.
int Formatter::readCount()
{
    constexpr int kLargest = 65535;
    if (accept(L"*"))
        return std::clamp(va_arg(arguments_, int), -kLargest, kLargest);
    int count = 0;
    while (isDigit(*rest_))
        count = std::min(count * 10 + static_cast<int>(*rest_++ - L'0'), kLargest);
    return count;
}

Size Formatter::readSize()
{
    if (accept(L"I64") || accept(L"ll") || accept(L"j"))
        return Size::bits64;
    if (accept(L"I32"))
        return Size::standard;
    if (accept(L"I") || accept(L"z") || accept(L"t"))
        return Size::pointer;
    if (accept(L"l") || accept(L"w"))
        return Size::wide;
    if (accept(L"L"))
        return Size::longDouble;
    if (accept(L"h"))
        return Size::narrow;
    return Size::standard;
}

void Formatter::printDirective(const Directive& directive)
{
    switch (directive.conversion) {
    case L'd':
    case L'i':
    case L'u':
    case L'x':
    case L'X':
    case L'o':
        return printInteger(directive);
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
    case L'a':
    case L'A':
        return printReal(directive);
    case L's':
        return printString(directive, directive.size == Size::narrow);
    case L'S':
        return printString(directive, directive.size != Size::wide);
    case L'c':
        return printCharacter(directive, directive.size == Size::narrow);
    case L'C':
        return printCharacter(directive, directive.size != Size::wide);
    case L'p':
        return printPointer(directive);
    case L'\0':
        return;
    default:
        text_ += directive.conversion;
    }
}

std::int64_t Formatter::takeInteger(Size size)
{
    if (size == Size::bits64 || size == Size::pointer)
        return va_arg(arguments_, long long);
    if (size == Size::wide)
        return static_cast<std::int32_t>(va_arg(arguments_, long));
    const int value = va_arg(arguments_, int);
    return size == Size::narrow ? static_cast<std::int16_t>(value) : value;
}

void Formatter::printInteger(const Directive& directive)
{
    const std::int64_t value = takeInteger(directive.size);
    if (directive.conversion == L'd' || directive.conversion == L'i')
        return printNumber(directive, "ll", static_cast<long long>(value));
    const auto bits = static_cast<unsigned long long>(value);
    printNumber(directive, "ll", bits & usedBits(directive.size));
}

void Formatter::printPointer(const Directive& directive)
{
    Directive digits = directive;
    digits.precision = 2 * static_cast<int>(sizeof(void*));
    digits.conversion = L'X';
    const auto address = reinterpret_cast<std::uintptr_t>(va_arg(arguments_, void*));
    printNumber(digits, "ll", static_cast<unsigned long long>(address));
}

void Formatter::printReal(const Directive& directive)
{
    if (directive.size == Size::longDouble)
        printNumber(directive, "L", va_arg(arguments_, long double));
    else
        printNumber(directive, "", va_arg(arguments_, double));
}

template <class Number>
void Formatter::printNumber(const Directive& directive, const char* length, Number number)
{
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", locale_t{});
    const std::string pattern =
        '%' + directive.flags + "*.*" + length + static_cast<char>(directive.conversion);

    const locale_t before = uselocale(plain);
    const int size =
        std::snprintf(nullptr, 0, pattern.c_str(), directive.width, directive.precision, number);
    std::string digits(static_cast<std::size_t>(std::max(size, 0)), '\0');
    std::snprintf(digits.data(), digits.size() + 1, pattern.c_str(), directive.width,
                  directive.precision, number);
    uselocale(before);
    text_.append(digits.begin(), digits.end());
}

void Formatter::printString(const Directive& directive, bool narrow)
{
    std::wstring text = L"(null)";
    if (narrow) {
        if (const char* given = va_arg(arguments_, const char*))
            text = platform::fromUtf8(given);
    } else if (const wchar_t* given = va_arg(arguments_, const wchar_t*)) {
        text = given;
    }
    if (directive.precision >= 0)
        text.resize(std::min(text.size(), static_cast<std::size_t>(directive.precision)));
    printPadded(text, directive);
}

void Formatter::printCharacter(const Directive& directive, bool narrow)
{
    const int code = va_arg(arguments_, int);
    const auto character = static_cast<wchar_t>(narrow ? static_cast<unsigned char>(code) : code);
    printPadded({&character, 1}, directive);
}

void Formatter::printPadded(std::wstring_view text, const Directive& directive)
{
    const auto width = static_cast<std::size_t>(directive.width);
    const std::size_t blanks = width > text.size() ? width - text.size() : 0;
    const bool left = directive.flags.find('-') != std::string::npos;
    text_.append(left ? 0 : blanks, L' ');
    text_ += text;
    text_.append(left ? blanks : 0, L' ');
}

} // namespace

std::wstring platform::formatList(const wchar_t* pattern, std::va_list arguments)
{
    return Formatter(pattern, arguments).run();
}

std::wstring platform::format(const wchar_t* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    std::wstring text = formatList(pattern, arguments);
    va_end(arguments);
    return text;
}
