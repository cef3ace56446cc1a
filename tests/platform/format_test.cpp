#include "platform/format.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>

namespace {

using platform::format;

TEST(Format, TextIsWideUnlessTheDirectiveSaysNarrow)
{
    EXPECT_EQ(format(L"[%s|%ls|%S|%hs]", L"线", L"wide", "\xE7\xBA\xBF", "narrow"),
              L"[线|wide|线|narrow]");
    EXPECT_EQ(format(L"%c%lc%C%hc", L'线', L'b', 'c', 'd'), L"线bcd");
    EXPECT_EQ(
        format(L"%s %S", static_cast<const wchar_t*>(nullptr), static_cast<const char*>(nullptr)),
        L"(null) (null)");
}

TEST(Format, WidthAndPrecisionCountCharacters)
{
    EXPECT_EQ(format(L"[%5s][%-5s][%.1s][%*s]", L"线", L"线", L"线段", 3, L"x"),
              L"[    线][线    ][线][  x]");
    EXPECT_EQ(format(L"[%-*s][%*s][%.*s]", 3, L"x", -3, L"y", -1, L"whole"), L"[x  ][y  ][whole]");
}

TEST(Format, IntegersHaveTheSizesOfWindows)
{
    const long long big = (7LL << 32) + 5;
    EXPECT_EQ(format(L"%d %i %u", -3, 4, -1), L"-3 4 4294967295");
    EXPECT_EQ(format(L"%ld %lu", static_cast<long>(big), static_cast<long>(-1)), L"5 4294967295");
    EXPECT_EQ(format(L"%lld %I64d %zd %Id", big, big, big, big),
              L"30064771077 30064771077 30064771077 30064771077");
    EXPECT_EQ(format(L"%hd %hu %I32d", 70000, 70000, -1), L"4464 4464 -1");
    EXPECT_EQ(format(L"%x %X %#o %I64x", 255, 255, 8, LLONG_MIN), L"ff FF 010 8000000000000000");
    EXPECT_EQ(format(L"%p", reinterpret_cast<void*>(0xABC)), L"0000000000000ABC");
    EXPECT_EQ(format(L"[%+05d][%-6d][% d][%.3d]", 42, 42, 42, 7), L"[+0042][42    ][ 42][007]");
}

TEST(Format, RealsHaveAPointInEveryLocale)
{
    for (const char* name : {"C", "de_DE.UTF-8", "C.UTF-8"}) {
        std::setlocale(LC_ALL, name); // a locale that is not installed leaves the one before
        EXPECT_EQ(format(L"%f %.2f %08.3f %g %E", 0.5, 2.675, -3.14159, 1e-7, 12345.0),
                  L"0.500000 2.67 -003.142 1e-07 1.234500E+04")
            << name;
    }
    std::setlocale(LC_ALL, "C");
}

TEST(Format, SurvivesPatternsThatAreNotWellFormed)
{
    EXPECT_EQ(format(L"100%%, %y, %"), L"100%, y, ");
    EXPECT_EQ(format(L"%-5"), L"");
    EXPECT_EQ(format(L"%99999999999d", 1).size(), 65535u);
}

} // namespace
