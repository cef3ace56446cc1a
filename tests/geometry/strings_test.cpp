#include "orvex/strings.h"

#include "support/room_test.h"

#include <set>

namespace {

TEST(StringsTest, ATextIsSplitAtTheWholeSeparatorAndThePiecesAreJoined)
{
    const auto split = [](const wchar_t* text, const wchar_t* separator, int keepEmpty) {
        CStringArray pieces;
        pieces.Add(L"");
        SplitString(text, separator, pieces, keepEmpty);
        return CombineString(L"][", pieces) + L']';
    };
    EXPECT_EQ(split(L",a,,B,", L"", 0) + split(L",a,,B,", L"", -1), L"][a][B]][][a][][B]");
    EXPECT_EQ(split(L"a<>b<c>x", L"<>", 0) + split(L"aaaxbX", L"aa", 1), L"][a][b<c>x]][][axbX]");
    EXPECT_EQ(split(L"axbX", L"x", 0) + split(L"", L"", 1), L"][a][bX]]");
    CStringArray pieces;
    EXPECT_EQ(CombineString(L"", pieces), L"");
    pieces.Add(L"a");
    pieces.Add(L"b");
    EXPECT_EQ(CombineString(L"", pieces), L"a,b");
}

TEST(StringsTest, RunsOfBlanksSeparateOnceAndPiecesAreTrimmed)
{
    const auto split = [](const CString& text) {
        CStringArray pieces;
        pieces.Add(L"");
        SplitterString(text, pieces);
        return CombineString(L"][", pieces);
    };
    EXPECT_EQ(split(L"\x3000 one  \t \ttwo\tthree\t four\n"), L"][one][two\tthree][four");
    EXPECT_EQ(split(L"") + split(L" \t "), L"][][");
    CString text(L' ', 200'000);
    for (int i = 0; i < text.GetLength(); i += 2)
        text.SetAt(i, L'x');
    EXPECT_EQ(split(text).GetLength(), 300'000) << "and that before anybody grows old";
}

TEST(StringsTest, LabelsVisitSingleCharactersAndPairsOnceAndBeginAgain)
{
    CString label;
    std::set<CString> seen;
    for (int i = 0; i < 52 + 2704; ++i) {
        EXPECT_EQ(getNewLabel(label, L""), label);
        EXPECT_EQ(label.GetLength(), i < 52 ? 1 : 2);
        EXPECT_TRUE(seen.insert(label).second) << platform::toUtf8(label.GetString());
    }
    EXPECT_EQ(label, L"zz");
    EXPECT_EQ(getNewLabel(label, L""), L"A");

    const auto next = [](CString text, const CString& alphabet) {
        return getNewLabel(text, alphabet) + L' ';
    };
    EXPECT_EQ(next(L"Z", L"") + next(L"I", L"I") + next(L"II", L"I"), L"a II I ");
    EXPECT_EQ(next(L"?", L"XYZ") + next(L"?Y", L"XYZ") + next(L"Y?", L"XYZ"), L"Y XZ YY ");
    EXPECT_EQ(next(L"", CString(L'x', 255)) + next(L"a", CString(L'x', 256)) + next(L"ABC", L""),
              L"x a ABC ");
}

TEST(StringsTest, AScaleIsWrittenWithoutTheZerosBehindItAndReadAgain)
{
    const auto written = [](double scale) {
        CString text(L"kept");
        EXPECT_TRUE(JudgeAndCalScale(scale, text));
        return text;
    };
    CString texts;
    for (const double scale :
         {1.0, 2.0, 100.0, 0.01, 0.3, 1.05, -2.0, 0.0, HUGE_VAL, -HUGE_VAL, std::nan("")})
        texts += written(scale) + L' ';
    EXPECT_EQ(texts, L"1:1 2:1 100:1 1:100 1:3.333333 1.05:1 1:-0.5 1:inf inf:1 1:-0 kept ");
    EXPECT_EQ(written(1e300).GetLength(), 303);
    for (double scale = 1e-6; scale < 1e6; scale *= 1.37) {
        double read = 0;
        EXPECT_TRUE(JudgeAndCalScale(written(scale), read));
        EXPECT_NEAR(read, scale, 1e-6 * scale);
        EXPECT_EQ(written(read), written(scale));
    }
}

TEST(StringsTest, AScaleIsReadFromTwoNumbersAboveZero)
{
    double scale = 7;
    for (const char* text :
         {"1:0", "0:1", "abc:1", ":1", "-1:2", "1:-2", "100", "9e-11:1", "1:9e-11"})
        EXPECT_FALSE(JudgeAndCalScale(CString(platform::fromUtf8(text).c_str()), scale)) << text;
    EXPECT_EQ(scale, 7);
    for (const char* text : {" 3 : 4", "3:4:5", "3mm:4km", "1e-10:1.3333333333333333e-10"}) {
        EXPECT_TRUE(JudgeAndCalScale(CString(platform::fromUtf8(text).c_str()), scale)) << text;
        EXPECT_DOUBLE_EQ(std::exchange(scale, 7), 0.75);
    }
}

} // namespace
