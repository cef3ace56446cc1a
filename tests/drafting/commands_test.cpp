// The drafting add-on as a person or a script sees it: inputs in, lines out.

#include "support/host_test.h"

#include <sstream>

using namespace tests;

namespace {

std::string hex(KdDbObjectId id)
{
    std::ostringstream text;
    text << std::uppercase << std::hex << id.handle().value();
    return text.str();
}

KdDbObjectId addDimension()
{
    auto* dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
    dimension->setDimensionStyle(kddbHostApplicationServices()->workingDatabase()->dimstyle());
    return addEntity(dimension);
}

class DraftingTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        ASSERT_TRUE(kdrxLoadModule(L"drafting", false, false));
        printed();
    }

    /// Runs one command with its inputs.
    /// @return the result lines: those that begin with `word`
    static std::vector<std::string>
    run(const std::string& command, const std::vector<std::string>& inputs, const std::string& word)
    {
        for (const std::string& input : inputs)
            korra::queueInput(input);
        EXPECT_TRUE(korra::runCommand(command));
        std::vector<std::string> lines;
        std::istringstream text(printed());
        for (std::string line; std::getline(text, line);) {
            if (!line.empty() && line.starts_with(word))
                lines.push_back(line);
        }
        return lines;
    }

    static std::string runOne(const std::string& command, const std::vector<std::string>& inputs,
                              const std::string& word)
    {
        const auto lines = run(command, inputs, word);
        return lines.size() == 1 ? lines[0] : std::to_string(lines.size()) + " lines";
    }
};

TEST_F(DraftingTest, DimsetTakesEachFormOfValueAndPrintsWhatHolds)
{
    const std::string handle = hex(addDimension());

    struct {
        const char* name;
        const char* value;
        const char* holds;
    } const cases[] = {{"DimDec", "5", "5"},
                       {"dimdec", "3.9", "3"},
                       {"dimscale", "2.50", "2.5"},
                       {"dimscale", "1e-3", "0.001"},
                       {"dimscale", "1e-9", "0"},
                       {"dimlfac", "-2.", "-2"},
                       {"dimse1", "ON", "on"},
                       {"dimse1", "off", "off"},
                       {"dimse2", "7", "on"},
                       {"dimtad", "on", "1"},
                       {"dimgap", "0.3333333", "0.333333"}};

    for (const auto& [name, value, holds] : cases) {
        EXPECT_EQ(runOne("DIMSET", {"20,10", name, value}, "dimset"),
                  "dimset " + handle + ' ' + name + ' ' + holds + " 0");
    }
    EXPECT_EQ(runOne("DIMSET", {"20,10", "dimother", "1"}, "dimset"),
              "dimset " + handle + " dimother none 0");
    EXPECT_EQ(runOne("DIMSET", {"20,10", "dimdec", "1000"}, "dimset"),
              "dimset " + handle + " dimdec 3 2");
}

TEST_F(DraftingTest, DimsetTellsWhyItCameToNothing)
{
    addDimension();
    addEntity(new KdDbLine({0, 100, 0}, {10, 100, 0}));

    struct {
        std::vector<std::string> inputs;
        const char* status;
    } const cases[] = {{{"\\miss"}, "-5001"},         {{""}, "5000"},
                       {{"\\esc"}, "-5002"},          {{"5,100"}, "20"},
                       {{"20,10", "\\esc"}, "-5002"}, {{"20,10", "dimdec", "many"}, "-5001"}};

    for (const auto& [inputs, status] : cases)
        EXPECT_EQ(runOne("DIMSET", inputs, "dimset"), std::string("dimset none ") + status);
}

TEST_F(DraftingTest, DimsetFindsADimensionInsideABlock)
{
    auto* dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
    dimension->setDimensionStyle(database().dimstyle());
    const std::string handle = hex(addEntityToBlock(L"PART", dimension));
    addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"PART")));
    EXPECT_EQ(runOne("DIMSET", {"120,10", "dimdec", "1"}, "dimset"),
              "dimset " + handle + " dimdec 1 0");
}

TEST_F(DraftingTest, DimsetPutsTheCommandEchoBack)
{
    resbuf echo{};
    ASSERT_EQ(kdedGetVar(L"CMDECHO", &echo), RTNORM);
    ASSERT_EQ(echo.resval.rint, 1);
    addDimension();
    for (const char* pick : {"\\esc", "\\miss", "20,10"}) {
        run("DIMSET", {pick, "\\esc"}, "dimset");
        kdedGetVar(L"CMDECHO", &echo);
        EXPECT_EQ(echo.resval.rint, 1);
        korra::queueInput("\\esc");
    }
}

TEST_F(DraftingTest, PickinfoSaysWhatWasPicked)
{
    const std::string line = hex(addEntityToBlock(L"PART", new KdDbLine({0, 0, 0}, {10, 0, 0})));
    const std::string reference =
        hex(addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"PART"))));
    EXPECT_EQ(run("PICKINFO", {"104,0"}, ""),
              (std::vector<std::string>{"Select an object: 104,0", "picked KdDbLine " + line,
                                        "outer KdDbBlockReference " + reference, "viewport none",
                                        "point 104 0 0", "xform 1 0 0 100", "xform 0 1 0 0",
                                        "xform 0 0 1 0", "xform 0 0 0 1"}));
    EXPECT_EQ(runOne("PICKINFO", {"\\miss"}, "picked"), "picked none -5001");
}

TEST_F(DraftingTest, EveryDimensionIsOfOneClass)
{
    const std::string handle = hex(addDimension());
    EXPECT_EQ(runOne("PICKINFO", {"20,10"}, "picked"), "picked KdDbDimension " + handle);
}

TEST_F(DraftingTest, SegmentAddsTheCopyToTheCurrentSpace)
{
    auto* polyline = new KdDbPolyline;
    polyline->addVertexAt(0, {0, 0});
    polyline->addVertexAt(1, {10, 0}, 1.0);
    polyline->addVertexAt(2, {10, 10});
    const KdDbHandle source = addEntity(polyline).handle();
    std::ostringstream next;
    next << std::uppercase << std::hex << source.value() + 1;
    EXPECT_EQ(runOne("SEGMENT", {"15,5"}, "segment"), "segment KdDbArc " + next.str());
    EXPECT_EQ(runOne("SEGMENT", {"500,500"}, "segment"), "segment none -5001");
}

TEST_F(DraftingTest, UnloadingTakesTheCommandsAway)
{
    EXPECT_TRUE(kdrxUnloadModule(L"drafting.krx", false));
    EXPECT_FALSE(korra::runCommand("PICKINFO"));
    EXPECT_TRUE(kdrxLoadModule(L"drafting", false, false));
    EXPECT_TRUE(korra::runCommand("PICKINFO"));
}

} // namespace
