// The add-on's commands on named tables, as a script sees them.

#include "drafting_test.h"

namespace {

TEST_F(DraftingTest, EachCommandPrintsNameAndResult)
{
    struct {
        const char* command;
        std::vector<std::string> inputs;
        const char* printed;
    } const lines[] = {
        {"LAYMAKE", {"My Walls", "5", "DASHED", "25"}, "layer My Walls 1"},
        {"LAYMAKE", {"my walls", "5", "", "25"}, "layer my walls -1"},
        {"LAYSET", {"My Walls", "-3", "", "7"}, "layer My Walls 1"},
        {"LAYSET", {"Lost", "5", "", "25"}, "layer Lost -1"},
        {"LAYMAKE", {"Lost", "5.5"}, "layer none -5001"},
        {"LTLOAD", {" center "}, "linetype  center  1"},
        {"LTLOAD", {"Zigzag"}, "linetype Zigzag 0"},
        {"TSMAKE", {"Notes", "DejaVu Sans", "", "0.7", "15"}, "textstyle Notes 1"},
        {"TSMAKE", {"Notes", "DejaVu Sans", "", "0.7", "15"}, "textstyle Notes 0"},
        {"TSSET", {"Notes", "DejaVu Serif", "", "1", "0"}, "textstyle Notes 1"},
        {"TSSET", {"Notes", "DejaVu Serif", "", ""}, "textstyle none 5000"},
        {"DSMAKE", {"House", "Notes", "0", "3"}, "dimstyle House 1"},
        {"DSSET", {"House", "", "4", "0"}, "dimstyle House 1"},
        {"DSSET", {"\\esc"}, "dimstyle none -5002"},
    };

    for (const auto& [command, inputs, printed] : lines)
        EXPECT_EQ(last(command, inputs), printed);

    EXPECT_EQ(run("LAYLIST"), "\n0\nMy Walls");
}

TEST_F(DraftingTest, DimensionStylesHaveTheHousesValues)
{
    run("DSMAKE", {"House", "", "0", "3"});
    KdDbObjectId id;
    Open<KdDbDimStyleTable>(database().dimStyleTableId())->getAt(L"House", id);
    const Open<KdDbDimStyleTableRecord> style(id);
    EXPECT_THAT((std::vector<double>{style->dimtxt(), style->dimasz(), double(style->dimdec()),
                                     style->dimtfac(), style->dimexe(), style->dimgap(),
                                     double(style->dimtih()), double(style->dimtoh())}),
                ElementsAre(5, 3, 2, 0.707, 2, 1, false, true));
}

} // namespace
