#include <afxwin.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

using ::testing::ElementsAre;

namespace {

TEST(CStringTest, PartsAreCutToTheText)
{
    const CString text(L"drafting");
    EXPECT_THAT((std::vector{text.Left(5), text.Left(50), text.Left(-1)}),
                ElementsAre(L"draft", L"drafting", L""));
    EXPECT_THAT((std::vector{text.Right(3), text.Right(50)}), ElementsAre(L"ing", L"drafting"));
    EXPECT_THAT((std::vector{text.Mid(5), text.Mid(5, 2), text.Mid(-3, 2), text.Mid(50)}),
                ElementsAre(L"ing", L"in", L"dr", L""));
}

TEST(CStringTest, FindsFromAnIndexOn)
{
    const CString text(L"a,b,a");
    EXPECT_THAT((std::vector{text.Find(L','), text.Find(L',', 2), text.Find(L"b,"),
                             text.Find(L"a", 5), text.Find(L"a", 50), text.Find(L"a", -1)}),
                ElementsAre(1, 3, 2, -1, -1, -1));
    EXPECT_THAT((std::vector{text.ReverseFind(L'a'), text.ReverseFind(L'z')}), ElementsAre(4, -1));
}

TEST(CStringTest, ComparesWithTextsAndPointers)
{
    const CString text(L"Layer");
    EXPECT_TRUE(text == L"Layer" && L"Layer" == text && text != CString(L"LAYER"));
    EXPECT_TRUE(text < CString(L"Layers") && text.Compare(L"LAYER") > 0);
    EXPECT_EQ(text.CompareNoCase(L"lAYER"), 0);
    EXPECT_GT(text.Compare(nullptr), 0);
    EXPECT_EQ(CString(static_cast<const wchar_t*>(nullptr)), L"");
}

TEST(CStringTest, EditsInPlace)
{
    CString text(L"\x3000 a.b.c \xA0");
    EXPECT_EQ(text.Trim(), L"a.b.c");
    EXPECT_EQ(text.Replace(L".", L".."), 2);
    EXPECT_EQ(text.Replace(L"", L"x"), 0);
    EXPECT_EQ(text.Delete(1, 2), 5);
    EXPECT_EQ(text.MakeUpper(), L"AB..C");
    EXPECT_EQ(text.MakeLower() + L'!' + L"?", L"ab..c!?");
    text.SetAt(0, L'x');
    EXPECT_EQ(L"<" + text + CString(L'>', 2), L"<xb..c>>");
    text.Format(L"%s %d", text.GetString(), 3);
    text.AppendFormat(L" of %s", text.GetString());
    EXPECT_EQ(text, L"xb..c 3 of xb..c 3") << "a text may be its own argument";
}

TEST(CStringArrayTest, KeepsTheOrderOfItsTexts)
{
    CStringArray names;
    names.Add(L"a");
    EXPECT_EQ(names.Add(L"c"), 1);
    names.InsertAt(1, L"b");
    names[2] += L"C";
    EXPECT_EQ(names.GetAt(0) + names[1] + names[2], L"abcC");
    names.RemoveAt(0, 2);
    EXPECT_EQ(names.GetSize(), 1);
}

TEST(CMapStringToStringTest, KeysHaveTheirCaseAndAreWalkedOnce)
{
    CMapStringToString map;
    map.SetAt(L"TAG", L"1");
    map[L"tag"] = L"2";
    map.SetAt(L"TAG", L"3");

    std::multimap<std::wstring, std::wstring> walked;
    CString key, value;
    for (POSITION next = map.GetStartPosition(); next;) {
        map.GetNextAssoc(next, key, value);
        walked.emplace(key.GetString(), value.GetString());
    }
    EXPECT_EQ(walked, (std::multimap<std::wstring, std::wstring>{{L"TAG", L"3"}, {L"tag", L"2"}}));
    EXPECT_TRUE(map.Lookup(L"TAG", value) && map.RemoveKey(L"tag"));
    EXPECT_FALSE(map.Lookup(L"tag", value) || map.RemoveKey(L"tag"));
    EXPECT_EQ(value, L"3") << "untouched";
}

} // namespace
