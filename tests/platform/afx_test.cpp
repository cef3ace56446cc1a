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
    EXPECT_THAT((std::vector{text.Find(L','), text.Find(L',', 2), text.Find(L"b,")}),
                ElementsAre(1, 3, 2));
    EXPECT_THAT((std::vector{text.Find(L"a", 5), text.Find(L"a", 50), text.Find(L"a", -1)}),
                ElementsAre(-1, -1, -1));
    EXPECT_THAT((std::vector{text.ReverseFind(L'a'), text.ReverseFind(L'z')}), ElementsAre(4, -1));
}

TEST(CStringTest, ComparesWithTextsAndPointers)
{
    const CString text(L"Layer");
    EXPECT_TRUE(text == L"Layer" && L"Layer" == text && text != CString(L"LAYER"));
    EXPECT_TRUE(text < CString(L"Layers"));
    EXPECT_LT(text.Compare(L"Layer2"), 0);
    EXPECT_GT(text.Compare(L"LAYER"), 0);
    EXPECT_EQ(text.CompareNoCase(L"lAYER"), 0);
    EXPECT_GT(text.Compare(nullptr), 0);
    EXPECT_EQ(CString(static_cast<const wchar_t*>(nullptr)), L"");
}

TEST(CStringTest, EditsInPlace)
{
    CString text(L"\x3000 a.b.c \xA0");
    EXPECT_EQ(text.Trim(), L"a.b.c");
    EXPECT_EQ(text.Replace(L".", L".."), 2);
    EXPECT_EQ(text, L"a..b..c");
    EXPECT_EQ(text.Replace(L"", L"x"), 0);
    EXPECT_EQ(text.Delete(1, 2), 5);
    EXPECT_EQ(text.MakeUpper(), L"AB..C");
    EXPECT_EQ(text.MakeLower() + L'!' + L"?", L"ab..c!?");
    text.SetAt(0, L'x');
    text += CString(L"y", 1);
    EXPECT_EQ(L"<" + text + CString(L'>', 2), L"<xb..cy>>");
}

TEST(CStringTest, FormatTakesItselfAsAnArgument)
{
    CString text(L"arc");
    text.Format(L"%s %d", text.GetString(), 3);
    EXPECT_EQ(text, L"arc 3");
    text.AppendFormat(L" of %s", text.GetString());
    EXPECT_EQ(text, L"arc 3 of arc 3");
}

TEST(CStringArrayTest, KeepsTheOrderOfItsTexts)
{
    CStringArray names;
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_EQ(names.Add(L"a"), 0);
    EXPECT_EQ(names.Add(L"c"), 1);
    names.InsertAt(1, L"b");
    names.SetAt(0, L"A");
    names[2] += L"C";
    EXPECT_EQ(names.GetAt(0) + names[1] + names[2], L"AbcC");
    names.RemoveAt(0, 2);
    ASSERT_EQ(names.GetSize(), 1);
    EXPECT_EQ(names[0], L"cC");
}

TEST(CMapStringToStringTest, KeysHaveTheirCaseAndAreWalkedOnce)
{
    CMapStringToString map;
    EXPECT_EQ(map.GetStartPosition(), nullptr);
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

    EXPECT_TRUE(map.Lookup(L"TAG", value));
    EXPECT_FALSE(map.Lookup(L"Tag", value));
    EXPECT_EQ(value, L"3") << "untouched";
    EXPECT_TRUE(map.RemoveKey(L"tag"));
    EXPECT_FALSE(map.RemoveKey(L"tag"));
    EXPECT_EQ(map.GetCount(), 1);
}

} // namespace
