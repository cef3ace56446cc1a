// What a file's text is made of: code pages and escapes, numbers.

#include "form/encoding.h"
#include "form/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using korra::TextEncoding;

namespace tests {
namespace {

TEST(TextEncodingTest, DecodesAndEncodesItsCodePage)
{
    const struct {
        const char* codePage;
        const char* bytes;
        const wchar_t* text;
    } cases[] = {
        {"UTF-8", "\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80", L"ä中😀"},
        {"ANSI_1251", "\xCF\xF0\xE8\xE2\xE5\xF2", L"Привет"},
        {"ansi_1252", "\xC4\x80\x9C", L"Ä€œ"},
        {"ANSI_936", "\xD6\xD0\x81\x5C\x81\x5Ex", L"中乗乛x"}, // second bytes \ and ^
        {"ANSI_932", "\x93\xFA\x83\x5C", L"日ソ"},
        {"unheard-of", "\xE4", L"ä"},
    };

    for (const auto& [codePage, bytes, text] : cases) {
        EXPECT_EQ(TextEncoding(codePage).decode(bytes), text) << codePage;
        EXPECT_EQ(TextEncoding(codePage).encode(text), bytes) << codePage;
    }
}

TEST(TextEncodingTest, BytesThatAreNoTextAreReadAsLatinLetters)
{
    EXPECT_EQ(TextEncoding().decode("x\xFFy\xC3"), L"x\u00FFy\u00C3");
    EXPECT_EQ(TextEncoding().decode("\xED\xA0\x80x").back(), L'x'); // half of a pair in UTF-8
    EXPECT_EQ(TextEncoding("ANSI_936").decode("x\xD6"), L"x\u00D6");
    EXPECT_EQ(TextEncoding().decode("\\U+D83D"), L"\uFFFD");
}

TEST(TextEncodingTest, EscapesAreReadInEveryCodePage)
{
    const TextEncoding latin("ANSI_1252");
    EXPECT_EQ(latin.decode("\\U+0416\\U+4e2d"), L"Ж中");
    EXPECT_EQ(latin.decode("\\U+D83D\\U+DE00"), L"😀");
    EXPECT_EQ(latin.decode("\\M+193FA \\M+5D6D0"), L"日 中");
    EXPECT_EQ(latin.decode("a^Ib^ c"), L"a\tb^c");
    EXPECT_EQ(latin.decode("\\u+00e4^_ ^A\\U+D7FF\\U+E000"), L"ä\x1F \x1\xD7FF\xE000");
    for (const char* plain : {"\\U+12", "\\U+XYZW", "\\U+000G", "\\U+00/0", "\\U+0000", "\\M+0D6D0",
                              "\\M+6D6D0", "x^2", "^", "^@^`", "\\P\\~"})
        EXPECT_EQ(latin.decode(plain), std::wstring(plain, plain + std::string(plain).size()));
}

TEST(TextEncodingTest, WhatIsEncodedReadsBack)
{
    for (const char* codePage : {"UTF-8", "ANSI_1251", "ANSI_936"}) {
        const TextEncoding encoding(codePage);
        for (const wchar_t* text : {L"Ж漢😀ä", L"line\nend\r\t", L"2^J x^2 ^ ^^A", L"\x1F \x7F\x80",
                                    L"\xFFFF\x10000\x10FFFF"}) {
            const std::string bytes = encoding.encode(text);
            EXPECT_EQ(encoding.decode(bytes), text) << codePage;
            EXPECT_EQ(bytes.find_first_of("\r\n"), bytes.npos);
        }
    }
    EXPECT_EQ(TextEncoding("unheard-of").encode(L"\xFF\x100"), "\xFF\\U+0100");
    EXPECT_EQ(TextEncoding("ANSI_1252").encode(L"Ж😀"), "\\U+0416\\U+D83D\\U+DE00");
    EXPECT_EQ(TextEncoding().encode(L"x^2"), "x^2");
}

TEST(DrawingNumbersTest, WrittenNumbersReadBackEqualAndRoundDegreesAreWrittenRound)
{
    std::mt19937_64 random(4711);
    for (int round = 0; round < 20000; ++round) {
        const double value =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 160) - 120);
        EXPECT_EQ(korra::parseReal(korra::formatReal(value)), value);
    }
    EXPECT_EQ(korra::formatReal(0.1), "0.1");
    EXPECT_EQ(korra::formatReal(-0.0), "0");

    for (int degrees = -720; degrees <= 720; ++degrees)
        EXPECT_EQ(korra::formatDegrees(korra::degreesToRadians(degrees)), std::to_string(degrees));
    EXPECT_EQ(korra::formatDegrees(korra::degreesToRadians(22.5)), "22.5");
}

TEST(DrawingNumbersTest, OnlyWholeTextsAreNumbers)
{
    for (const char* text : {"", "1 2", "1x", "x1", "+", "+-1", "inf", "nan", "1e400", "0x10"})
        EXPECT_EQ(korra::parseReal(text), std::nullopt) << text;
    EXPECT_EQ(korra::parseReal("\t+1.5e2 "), 150.0);
    EXPECT_EQ(korra::parseReal("1e-400"), 0.0);
    for (const char* text : {"", "1.0", "99999999999999999999", "1e3"})
        EXPECT_EQ(korra::parseWhole(text), std::nullopt) << text;
    for (const char* text : {"", "G", "-1", "8000000000000000", "10000000000000000"})
        EXPECT_EQ(korra::parseHandle(text), std::nullopt) << text;
    EXPECT_EQ(korra::parseHandle("1aF"), 0x1AFu);
}

} // namespace
} // namespace tests
