#include "platform/text.h"

#include <windows.h>

#include <algorithm>
#include <clocale>
#include <compare>
#include <cstdlib>
#include <cwctype>

namespace {
/// The C library's Unicode tables, whatever locale the process runs in.
locale_t unicodeLocale()
{
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    return locale;
}

locale_t plainLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
    return locale;
}
} // namespace

bool platform::isSpace(wchar_t character)
{
    constexpr std::wstring_view kSingleSpaces = L" \x85\xA0\x1680\x2028\x2029\x202F\x205F\x3000";
    return (character >= L'\t' && character <= L'\r') ||
           (character >= L'\x2000' && character <= L'\x200A') ||
           kSingleSpaces.find(character) != std::wstring_view::npos;
}

std::wstring_view platform::trimmedLeft(std::wstring_view text)
{
    text.remove_prefix(static_cast<std::size_t>(
        std::find_if_not(text.begin(), text.end(), isSpace) - text.begin()));
    return text;
}

std::wstring_view platform::trimmedRight(std::wstring_view text)
{
    text.remove_suffix(static_cast<std::size_t>(
        std::find_if_not(text.rbegin(), text.rend(), isSpace) - text.rbegin()));
    return text;
}

wchar_t platform::toUpper(wchar_t character)
{
    return static_cast<wchar_t>(towupper_l(static_cast<wint_t>(character), unicodeLocale()));
}

wchar_t platform::toLower(wchar_t character)
{
    return static_cast<wchar_t>(towlower_l(static_cast<wint_t>(character), unicodeLocale()));
}

wchar_t platform::foldCase(wchar_t character)
{
    // Upper case first: it brings together what has two small forms, as the Greek sigma.
    return toLower(toUpper(character));
}

int platform::compareNoCase(std::wstring_view left, std::wstring_view right)
{
    const auto order = std::lexicographical_compare_three_way(
        left.begin(), left.end(), right.begin(), right.end(),
        [](wchar_t a, wchar_t b) { return foldCase(a) <=> foldCase(b); });
    return order < 0 ? -1 : order > 0;
}

double platform::readNumber(std::wstring_view text)
{
    text = trimmedLeft(text);
    const auto end = std::find_if(text.begin(), text.end(), [](wchar_t character) {
        return character <= 0 || character > 0x7F;
    });
    const std::string narrow(text.begin(), end);
    return strtod_l(narrow.c_str(), nullptr, plainLocale());
}

double _wtof(const wchar_t* text)
{
    return platform::readNumber(text);
}
