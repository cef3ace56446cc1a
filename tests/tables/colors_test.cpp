#include "orvex/colors.h"
#include "orvex/system_variables.h"

#include "support/room_test.h"

namespace {

class ColorsTest : public HostTest {};

unsigned long rgbOf(int index)
{
    unsigned long rgb = 0xdeadbeef;
    EXPECT_EQ(Orvex::GetRgbValue(rgb, index), 1) << index;
    return rgb;
}

TEST_F(ColorsTest, PaletteIndexesAloneHaveAColorWithRedInTheLowestByte)
{
    EXPECT_EQ(rgbOf(1), 0x0000FFu);
    EXPECT_EQ(rgbOf(3), 0x00FF00u);
    EXPECT_EQ(rgbOf(5), 0xFF0000u);
    rgbOf(0);
    rgbOf(256);
    for (const int index : {-1, 257, 65536, -65535}) {
        unsigned long rgb = 0xdeadbeef;
        EXPECT_EQ(Orvex::GetRgbValue(rgb, index), 0) << index;
        EXPECT_EQ(rgb, 0xdeadbeefu);
    }
}

TEST_F(ColorsTest, EveryPaletteColorLeadsBackToAnIndexOfTheSameColor)
{
    for (int index = 1; index <= 255; ++index) {
        const int found = Orvex::GetColorIndexFromRGB(rgbOf(index));
        EXPECT_EQ(rgbOf(found), rgbOf(index)) << index << " became " << found;
        EXPECT_EQ(Orvex::GetColorIndexFromRGB(rgbOf(index) | 0xFF000000), found) << "high byte";
    }
}

TEST_F(ColorsTest, TheBackgroundIsThatOfTheCurrentView)
{
    KdColorSettings settings{};
    ASSERT_TRUE(kdedGetCurrentColors(&settings));
    const unsigned long model = rgbOf(static_cast<int>(settings.modelBackground));
    const unsigned long sheet = rgbOf(static_cast<int>(settings.sheetBackground));
    ASSERT_NE(model, sheet);

    EXPECT_EQ(Orvex::GetCurrentBkColor(&database()), model);
    ASSERT_EQ(QmSysVarMgr::SetSysIntValue(0, L"TILEMODE"), 1);
    EXPECT_EQ(Orvex::GetCurrentBkColor(&database()), sheet);
    addEntity(newWindow(2, {100, 100, 0}, 100, 100, 50));
    ASSERT_TRUE(korra::setVariable("CVPORT", "2"));
    EXPECT_EQ(Orvex::GetCurrentBkColor(&database()), model) << "inside a viewport";
}

TEST_F(ColorsTest, TheDialogAsksUntilItGetsAnIndex)
{
    // What is current and how it is shown; the answers, the result and the index.
    const std::tuple<unsigned short, const char*, std::vector<std::string>, int, int> cases[] = {
        {7, "<7>", {"300", "blue", "30"}, 1, 30},
        {7, "<7>", {"bylayer"}, 1, 256},
        {0, "<BYBLOCK>", {""}, 1, 0},
        {256, "<BYLAYER>", {""}, 1, 256},
        {7, "<7>", {"\\esc"}, 0, -1},
        {257, "", {}, 0, -1},
    };
    for (const auto& [current, shown, answers, result, index] : cases) {
        int chosen = -1;
        give(answers);
        EXPECT_EQ(Orvex::InvokeColorDlg(current, chosen), result) << current;
        EXPECT_EQ(chosen, index) << current;
        const std::string asked = printed();
        EXPECT_THAT(asked, HasSubstr(shown));
        EXPECT_EQ(asked.empty(), answers.empty());
        EXPECT_EQ(asked.find("Not a colour.") != asked.npos, answers.size() > 1);
    }
}

} // namespace
