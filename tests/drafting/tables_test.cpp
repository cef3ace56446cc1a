// The add-on's commands on named tables, as a script sees them.

#include "drafting_test.h"

#include "support/objects.h"

namespace {

struct Line {
    const char* command;
    std::vector<std::string> inputs;
    const char* printed;
};

TEST_F(DraftingTest, EachCommandPrintsNameAndResult)
{
    const Line lines[] = {
        {"LAYMAKE", {"My Walls", "5", "DASHED", "25"}, "layer My Walls 1"},
        {"LAYMAKE", {"my walls", "5", "", "25"}, "layer my walls -1"},
        {"LAYSET", {"My Walls", "-3", "", "7"}, "layer My Walls 1"},
        {"LAYSET", {"Lost", "5", "", "25"}, "layer Lost -1"},
        {"LAYMAKE", {"Lost", "5.5"}, "layer none -5001"},
        {"LAYMAKE", {"Lost", "\\esc"}, "layer none -5002"},
        {"LAYMAKE", {""}, "layer none 5000"},
        {"LTLOAD", {" center "}, "linetype  center  1"},
        {"LTLOAD", {"Zigzag"}, "linetype Zigzag 0"},
        {"LTLOAD", {"\\esc"}, "linetype none -5002"},
        {"TSMAKE", {"Notes", "DejaVu Sans", "", "0.7", "15"}, "textstyle Notes 1"},
        {"TSMAKE", {"Notes", "DejaVu Sans", "", "0.7", "15"}, "textstyle Notes 0"},
        {"TSSET", {"Notes", "DejaVu Serif", "", "1", "0"}, "textstyle Notes 1"},
        {"TSSET", {"Lost", "DejaVu Serif", "", "1", "0"}, "textstyle Lost 0"},
        {"TSSET", {"Notes", "DejaVu Serif", "", ""}, "textstyle none 5000"},
        {"DSMAKE", {"House", "Notes", "0", "3"}, "dimstyle House 1"},
        {"DSMAKE", {"House", "", "0", "0"}, "dimstyle House 0"},
        {"DSSET", {"House", "", "4", "0"}, "dimstyle House 1"},
        {"DSSET", {"Lost", "", "0", "0"}, "dimstyle Lost 0"},
        {"DSSET", {"\\esc"}, "dimstyle none -5002"},
    };
    for (const Line& line : lines)
        EXPECT_EQ(last(line.command, line.inputs), line.printed);

    EXPECT_EQ(run("LAYLIST"), "\n0\nMy Walls");
    EXPECT_THAT(run("LTLIST"), ::testing::HasSubstr("\nDASHED\n"));
    EXPECT_EQ(run("TSLIST"), "\nStandard\nNotes");
    EXPECT_EQ(run("DSLIST"), "\nStandard\nHouse");
}

TEST_F(DraftingTest, DimensionStylesHaveTheHousesValues)
{
    run("DSMAKE", {"House", "", "0", "3"});
    KdDbDimStyleTable* table = nullptr;
    ASSERT_EQ(database().getSymbolTable(table, KdDb::kForRead), Kdapi::eOk);
    KdDbObjectId id;
    table->getAt(L"House", id);
    table->close();
    const tests::Open<KdDbDimStyleTableRecord> style(id, KdDb::kForRead);
    EXPECT_THAT((std::vector<double>{style->dimtxt(), style->dimasz(), double(style->dimdec()),
                                     style->dimtfac(), style->dimexe(), style->dimgap()}),
                ::testing::ElementsAre(5, 3, 2, 0.707, 2, 1));
    EXPECT_FALSE(style->dimtih());
    EXPECT_TRUE(style->dimtoh());
}

} // namespace
