// The add-on's commands on named tables, as a script sees them.

#include "support/host_test.h"

#include <sstream>

using namespace tests;
using ::testing::Contains;
using ::testing::ElementsAre;

namespace {

class DraftingTablesTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        ASSERT_TRUE(kdrxLoadModule(L"drafting", false, false));
        printed();
    }

    /// What a command prints behind its inputs, line by line.
    static std::vector<std::string> run(const std::string& command,
                                        const std::vector<std::string>& inputs = {})
    {
        for (const std::string& input : inputs)
            korra::queueInput(input);
        EXPECT_TRUE(korra::runCommand(command));
        std::vector<std::string> lines;
        std::istringstream text(printed());
        for (std::string line; std::getline(text, line);) {
            if (!line.empty())
                lines.push_back(line);
        }
        return lines;
    }

    static std::string last(const std::string& command, const std::vector<std::string>& inputs)
    {
        const auto lines = run(command, inputs);
        return lines.empty() ? "" : lines.back();
    }
};

struct Line {
    const char* command;
    std::vector<std::string> inputs;
    const char* printed;
};

TEST_F(DraftingTablesTest, EachCommandPrintsNameAndResult)
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
        {"TSMAKE", {"Shapes", "lost.SHX", "", "0.7", "15"}, "textstyle Shapes 0"},
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

    EXPECT_THAT(run("LAYLIST"), ElementsAre("0", "My Walls"));
    EXPECT_THAT(run("LTLIST"), Contains("DASHED"));
    EXPECT_THAT(run("TSLIST"), Contains("Notes"));
    EXPECT_THAT(run("DSLIST"), Contains("House"));
}

TEST_F(DraftingTablesTest, DimensionStylesHaveTheHousesValues)
{
    last("DSMAKE", {"House", "", "0", "3"});
    KdDbDimStyleTable* table = nullptr;
    ASSERT_EQ(database().getSymbolTable(table, KdDb::kForRead), Kdapi::eOk);
    KdDbObjectId id;
    table->getAt(L"House", id);
    table->close();
    KdDbDimStyleTableRecord* style = nullptr;
    ASSERT_EQ(kddbOpenObject(style, id, KdDb::kForRead), Kdapi::eOk);
    EXPECT_THAT((std::vector<double>{style->dimtxt(), style->dimasz(), double(style->dimdec()),
                                     style->dimtfac(), style->dimexe(), style->dimgap()}),
                ElementsAre(5, 3, 2, 0.707, 2, 1));
    EXPECT_FALSE(style->dimtih());
    EXPECT_TRUE(style->dimtoh());
    style->close();
}

} // namespace
