#include <afxwin.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

TEST(CStringTest, PartsAreCutToTheText)
{
    const CString text(L"drafting");
    EXPECT_EQ(text.Left(5), L"draft");
    EXPECT_EQ(text.Left(50), L"drafting");
    EXPECT_EQ(text.Left(-1), L"");
    EXPECT_EQ(text.Right(3), L"ing");
    EXPECT_EQ(text.Right(50), L"drafting");
    EXPECT_EQ(text.Mid(5), L"ing");
    EXPECT_EQ(text.Mid(5, 2), L"in");
    EXPECT_EQ(text.Mid(-3, 2), L"dr");
    EXPECT_EQ(text.Mid(50), L"");
}

TEST(CStringTest, FindsFromAnIndexOn)
{
    const CString text(L"a,b,a");
    EXPECT_EQ(text.Find(L','), 1);
    EXPECT_EQ(text.Find(L',', 2), 3);
    EXPECT_EQ(text.Find(L"b,"), 2);
    EXPECT_EQ(text.Find(L"a", 5), -1);
    EXPECT_EQ(text.Find(L"a", 50), -1);
    EXPECT_EQ(text.Find(L"a", -1), -1);
    EXPECT_EQ(text.ReverseFind(L'a'), 4);
    EXPECT_EQ(text.ReverseFind(L'z'), -1);
}

TEST(CStringTest, ComparesWithTextsAndPointers)
{
    const CString text(L"Layer");
    EXPECT_TRUE(text == L"Layer");
    EXPECT_TRUE(L"Layer" == text);
    EXPECT_TRUE(text != CString(L"LAYER"));
    EXPECT_TRUE(text < CString(L"Layers"));
    EXPECT_LT(text.Compare(L"Layer2"), 0);
    EXPECT_GT(text.Compare(L"LAYER"), 0);
    EXPECT_EQ(text.CompareNoCase(L"lAYER"), 0);
    EXPECT_EQ(CString(static_cast<const wchar_t*>(nullptr)), L"");
    EXPECT_GT(text.Compare(nullptr), 0);
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
    ASSERT_EQ(names.GetSize(), 3);
    EXPECT_EQ(names.GetAt(0) + names[1] + names[2], L"AbcC");
    names.RemoveAt(0, 2);
    ASSERT_EQ(names.GetCount(), 1);
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
    CString key;
    CString value;
    for (POSITION next = map.GetStartPosition(); next;) {
        map.GetNextAssoc(next, key, value);
        walked.emplace(key.GetString(), value.GetString());
    }
    EXPECT_EQ(walked, (std::multimap<std::wstring, std::wstring>{{L"TAG", L"3"}, {L"tag", L"2"}}));

    value = L"untouched";
    EXPECT_FALSE(map.Lookup(L"Tag", value));
    EXPECT_EQ(value, L"untouched");
    EXPECT_TRUE(map.Lookup(L"TAG", value));
    EXPECT_EQ(value, L"3");
    EXPECT_TRUE(map.RemoveKey(L"tag"));
    EXPECT_FALSE(map.RemoveKey(L"tag"));
    EXPECT_EQ(map.GetCount(), 1);
}

} // namespace
