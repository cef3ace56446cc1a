#include "platform/text.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace platform;

TEST(Encoding, EveryPlaneComesThroughUtf8AndUtf16)
{
    const std::wstring text = L"A\u00E9\u7EBF\uFFFD\U0001F4D0\U0010FFFF";
    EXPECT_EQ(toUtf8(text), "A\xC3\xA9\xE7\xBA\xBF\xEF\xBF\xBD\xF0\x9F\x93\x90\xF4\x8F\xBF\xBF");
    EXPECT_EQ(fromUtf8(toUtf8(text)), text);
    EXPECT_EQ(toUtf16(text), u"A\u00E9\u7EBF\uFFFD\U0001F4D0\U0010FFFF");
    EXPECT_EQ(fromUtf16(toUtf16(text)), text);
}

TEST(Encoding, MalformedUtf8IsNeverDecodedAsACharacter)
{
    const std::tuple<std::string_view, std::wstring_view, const char*> cases[] = {
        {"\xC0\xAF", L"\xDCC0\xDCAF", "overlong in two bytes"},
        {"\xED\xA0\x80", L"\xDCED\xDCA0\xDC80", "a surrogate"},
        {"\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80", "beyond Unicode"},
        {"a\xE7\xBA", L"a\xDCE7\xDCBA", "cut short"},
        {"\xE7\xBAz", L"\xDCE7\xDCBAz", "a byte missing"},
    };

    for (const auto& [bytes, text, why] : cases) {
        EXPECT_EQ(fromUtf8(bytes), text) << why;
        EXPECT_EQ(toBytes(text), bytes) << why;
    }
}

TEST(Encoding, WhatIsNoCharacterIsReplacedInUtf8AndKeptInUtf16)
{
    EXPECT_EQ(toUtf8(L"\xDC80|\xD800"), "\xEF\xBF\xBD|\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(std::wstring{0x110000, L'x'}), "\xEF\xBF\xBDx");
    const std::u16string lone{0xDC00, 0xD800, u'x', 0xD800};
    EXPECT_EQ(fromUtf16(lone), (std::wstring{0xDC00, 0xD800, L'x', 0xD800}));
    EXPECT_EQ(toUtf16(fromUtf16(lone)), lone);
}

TEST(Characters, WhiteSpaceIsWhatWindowsTakesForIt)
{
    constexpr std::wstring_view kSpaces =
        L"\t\n\v\f\r \x85\xA0\x1680\x2000\x200A\x2028\x2029\x202F\x205F\x3000";
    for (const wchar_t space : kSpaces)
        EXPECT_TRUE(isSpace(space)) << std::hex << static_cast<int>(space);
    for (const wchar_t other : std::wstring_view(L"a0\x200B\xFEFF\x7EBF\0", 6))
        EXPECT_FALSE(isSpace(other)) << std::hex << static_cast<int>(other);
    EXPECT_EQ(trimmedLeft(L"\x3000\xA0 a b "), L"a b ");
    EXPECT_EQ(trimmedRight(L" a b\t\x3000"), L" a b");
    EXPECT_EQ(trimmedRight(L" \x3000"), L"");
}

TEST(Characters, ComparingWithoutCaseKnowsEveryScript)
{
    EXPECT_EQ(compareNoCase(L"ORVEXBASE.krx", L"Orvexbase.KRX"), 0);
    EXPECT_EQ(compareNoCase(L"СТИЛЬ É Σ", L"стиль é ς"), 0);
    EXPECT_LT(compareNoCase(L"ab", L"ABC"), 0);
    EXPECT_GT(compareNoCase(L"B", L"a"), 0);
    EXPECT_EQ(toUpper(L'я'), L'Я');
    EXPECT_EQ(toLower(L'Ä'), L'ä');
}

TEST(Numbers, AreReadUpToWhatDoesNotFit)
{
    const std::pair<const wchar_t*, double> cases[] = {
        {L"2.5", 2.5}, {L"\x3000\xA0 -12e2x", -1200},
        {L"3:1", 3},   {L"+.5", 0.5},
        {L"", 0},      {L"abc", 0},
        {L"1,5", 1},   {L"1e", 1},
        {L"- 1", 0},   {L"\uFF15", 0},
        {L"0x10", 16}, {L"1e400", HUGE_VAL},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(readNumber(text), value) << toUtf8(text);
}

} // namespace
