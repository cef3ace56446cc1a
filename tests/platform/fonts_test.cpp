// Installed fonts: which are told of, what they declare, and the description whose bytes count.

#include "platform/installed_families.h"

#include <afxwin.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

int CALLBACK collect(const LOGFONTW* font, const TEXTMETRICW* metrics, DWORD type, LPARAM lParam)
{
    EXPECT_EQ(font->lfItalic, metrics->tmItalic);
    EXPECT_EQ(font->lfCharSet, metrics->tmCharSet);
    EXPECT_EQ(type, TRUETYPE_FONTTYPE);
    reinterpret_cast<std::vector<LOGFONTW>*>(lParam)->push_back(*font);
    return 1;
}

std::vector<LOGFONTW> fonts(const wchar_t* family)
{
    std::vector<LOGFONTW> found;
    const HDC context = GetDC(nullptr);
    EXPECT_EQ(EnumFontFamiliesW(context, family, collect, reinterpret_cast<LPARAM>(&found)), 1);
    EXPECT_EQ(ReleaseDC(nullptr, context), 1);
    return found;
}

TEST(Fonts, EachFamilyIsToldOfOnceAndTellsItsStylesWhenNamed)
{
    std::map<std::wstring, LOGFONTW> byName;
    for (const LOGFONTW& font : fonts(nullptr))
        EXPECT_TRUE(byName.emplace(CString(font.lfFaceName).GetString(), font).second);
    const LOGFONTW& sans = byName.at(L"DejaVu Sans");
    EXPECT_TRUE(!sans.lfItalic && sans.lfWeight == 400) << "its upright regular style";

    const auto styles = fonts(L"dejavu sans mono");
    EXPECT_EQ(styles.size(), 4U);
    EXPECT_EQ(std::ranges::count_if(styles, &LOGFONTW::lfItalic), 2);
    EXPECT_EQ(styles.front().lfPitchAndFamily, FIXED_PITCH);
    EXPECT_TRUE(fonts(L"No Such Family").empty());
}

TEST(Fonts, CodePagesDeclareTheCharacterSet)
{
    const std::pair<std::uint32_t, int> cases[] = {{0, ANSI_CHARSET},
                                                   {0x0000000F, ANSI_CHARSET},
                                                   {0x00040001, GB2312_CHARSET},
                                                   {0x00080000, HANGUL_CHARSET}};
    for (const auto& [codePages, characterSet] : cases)
        EXPECT_EQ(platform::characterSetOf(codePages), characterSet) << codePages;
}

TEST(Fonts, AFaceNameIsUtf16AndFitsOrIsEmpty)
{
    LOGFONTW font{};
    EXPECT_EQ(wcscpy_s(font.lfFaceName, L"宋体"), 0);
    const char16_t expected[] = u"宋体";
    EXPECT_EQ(std::memcmp(font.lfFaceName, expected, sizeof(expected)), 0);
    const std::wstring longest(31, L'x');
    EXPECT_EQ(wcscpy_s(font.lfFaceName, longest.c_str()), 0);
    EXPECT_EQ(CString(font.lfFaceName), longest.c_str());
    EXPECT_NE(wcscpy_s(font.lfFaceName, (longest + L'x').c_str()), 0);
    EXPECT_TRUE(CString(font.lfFaceName).IsEmpty());
}

} // namespace
