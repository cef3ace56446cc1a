#include "gi/text_codes.h"

#include <algorithm>
#include <cwchar>

namespace korra {
namespace {

bool isDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

/// The character of a code behind "%%"; 0 where the code only switches a line over or under.
wchar_t codeCharacter(wchar_t code)
{
    switch (code) {
    case L'd':
    case L'D':
        return L'\u00B0';
    case L'p':
    case L'P':
        return L'\u00B1';
    case L'c':
    case L'C':
        return L'\u00D8';
    default:
        return code == L'%' ? L'%' : L'\0';
    }
}

bool isSwitch(wchar_t code)
{
    return std::wcschr(L"oOuUkK", code) != nullptr && code != L'\0';
}

/// Reads one code; `rest` begins with "%%". @return characters taken; 0 when it is no code
std::size_t readControlCode(std::wstring_view rest, std::wstring& shown)
{
    if (rest.size() < 3)
        return 0;
    if (rest.size() >= 5 && isDigit(rest[2]) && isDigit(rest[3]) && isDigit(rest[4])) {
        const int number = (rest[2] - L'0') * 100 + (rest[3] - L'0') * 10 + (rest[4] - L'0');
        if (number > 0)
            shown += static_cast<wchar_t>(number);
        return 5;
    }
    const wchar_t character = codeCharacter(rest[2]);
    if (character == L'\0' && !isSwitch(rest[2]))
        return 0;
    if (character != L'\0')
        shown += character;
    return 3;
}

} // namespace

std::wstring withoutControlCodes(std::wstring_view text)
{
    std::wstring shown;
    while (!text.empty()) {
        const std::size_t taken =
            text.starts_with(L"%%") ? readControlCode(text, shown) : std::size_t{0};
        if (taken == 0)
            shown += text.front();
        text.remove_prefix(std::max<std::size_t>(taken, 1));
    }
    return shown;
}

std::wstring withControlCodes(std::wstring_view text)
{
    constexpr std::wstring_view kCodes = L"dpc%";
    std::wstring coded;
    for (const wchar_t character : text) {
        const auto code = std::ranges::find(kCodes, character, codeCharacter);
        if (code == kCodes.end())
            coded += character;
        else
            coded.append(L"%%").push_back(*code);
    }
    return coded;
}

} // namespace korra
