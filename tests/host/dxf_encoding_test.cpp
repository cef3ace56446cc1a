// Texts of drawing files: code pages and escapes.

#include "form/encoding.h"

#include <gtest/gtest.h>

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
        {"DOS850", "\x84", L"ä"},
        {"unheard-of", "\xE4", L"ä"},
    };

    for (const auto& each : cases) {
        const TextEncoding encoding(each.codePage);
        EXPECT_EQ(encoding.codePage(), each.codePage);
        EXPECT_EQ(encoding.decode(each.bytes), each.text) << each.codePage;
        EXPECT_EQ(encoding.encode(each.text), each.bytes) << each.codePage;
    }
}

TEST(TextEncodingTest, BytesThatAreNoTextBecomeReplacementCharacters)
{
    EXPECT_EQ(TextEncoding().decode("a\xFF"
                                    "b\xC3"),
              L"a\uFFFD"
              L"b\uFFFD");
    EXPECT_EQ(TextEncoding().decode("\xED\xA0\x80x").back(), L'x'); // half of a pair in UTF-8
    EXPECT_EQ(TextEncoding("ANSI_936").decode("x\xD6"), L"x\uFFFD");
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

} // namespace
} // namespace tests
