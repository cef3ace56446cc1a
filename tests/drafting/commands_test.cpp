// The drafting add-on as a person or a script sees it: inputs in, lines out.

#include "drafting_test.h"

#include <sstream>

namespace {

constexpr double kHalfTurn = 3.141592653589793;

std::string hex(KdDbObjectId id)
{
    std::ostringstream text;
    text << std::uppercase << std::hex << id.handle().value();
    return text.str();
}

TEST_F(DraftingTest, DimsetTakesEachFormOfValueAndPrintsWhatHolds)
{
    const std::string handle = hex(addEntity(newDimension()));

    struct {
        const char* name;
        const char* value;
        const char* holds;
    } const cases[] = {{"DimDec", "5", "5 0"},        {"dimdec", "3.9", "3 0"},
                       {"dimscale", "2.50", "2.5 0"}, {"dimscale", "1e-3", "0.001 0"},
                       {"dimlfac", "-2.", "-2 0"},    {"dimse1", "ON", "on 0"},
                       {"dimse1", "off", "off 0"},    {"dimse2", "7", "on 0"},
                       {"dimtad", "on", "1 0"},       {"dimgap", "0.3333333", "0.333333 0"},
                       {"dimother", "1", "none 0"},   {"dimdec", "1000", "3 2"}};

    for (const auto& [name, value, holds] : cases) {
        EXPECT_EQ(last("DIMSET", {"20,10", name, value}),
                  "dimset " + handle + ' ' + name + ' ' + holds);
    }
}

TEST_F(DraftingTest, DimsetTellsWhyItCameToNothingAndPutsTheCommandEchoBack)
{
    addEntity(newDimension());
    addEntity(new KdDbLine({0, 100, 0}, {10, 100, 0}));

    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"\\miss"}, "-5001"},         {{""}, "5000"},
        {{"\\esc"}, "-5002"},          {{"5,100"}, "20"},
        {{"20,10", "\\esc"}, "-5002"}, {{"20,10", "dimdec", "many"}, "-5001"}};

    for (const auto& [inputs, status] : cases) {
        EXPECT_EQ(last("DIMSET", inputs), std::string("dimset none ") + status);
        EXPECT_EQ(variable(L"CMDECHO"), "1") << status;
    }
}

TEST_F(DraftingTest, DimsetFindsADimensionInsideABlock)
{
    const std::string handle = hex(addEntityToBlock(L"PART", newDimension()));
    addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"PART")));
    EXPECT_EQ(run("DIMSET", {"120,10", "dimdec", "1"}),
              "\nSelect a dimension: 120,10\nDimension variable: dimdec\n"
              "Value (number, on or off): 1\ndimset " +
                  handle + " dimdec 1 0");
}

TEST_F(DraftingTest, PickinfoSaysWhatWasPicked)
{
    const std::string line = hex(addEntityToBlock(L"PART", new KdDbLine({0, 0, 0}, {10, 0, 0})));
    const std::string reference =
        hex(addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"PART"))));
    EXPECT_EQ(run("PICKINFO", {"104,0"}),
              "\nSelect an object: 104,0\npicked KdDbLine " + line + "\nouter KdDbBlockReference " +
                  reference +
                  "\nviewport none\npoint 104 0 0\nxform 1 0 0 100\nxform 0 1 0 0\n"
                  "xform 0 0 1 0\nxform 0 0 0 1");
    EXPECT_EQ(run("PICKINFO", {"\\miss"}), "\nSelect an object: \\miss\npicked none -5001");

    const std::string dimension = hex(addEntity(newDimension()));
    EXPECT_THAT(run("PICKINFO", {"20,10"}), HasSubstr("\npicked KdDbDimension " + dimension + '\n'))
        << "every dimension is of one class";
}

TEST_F(DraftingTest, SegmentAddsTheCopyToTheCurrentSpace)
{
    addEntity(newPolyline({{0, 0}, {10, 0, 1.0}, {10, 10}}));
    EXPECT_THAT(last("SEGMENT", {"15,5"}), StartsWith("segment KdDbArc "));
    EXPECT_EQ(run("SEGMENT", {"500,500"}),
              "\nSelect an object to copy: 500,500\nsegment none -5001");
}

TEST_F(DraftingTest, CurveptsPrintsPointsOfACurveAsItIsShown)
{
    addEntityToBlock(L"PART", new KdDbLine({0, 0, 0}, {10, 0, 0}));
    addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"PART")));
    EXPECT_EQ(run("CURVEPTS", {"104,0", "4"}),
              "\nSelect a curve: 104,0\nStep: 4\npoints 3\n100 0 0\n104 0 0\n110 0 0");
    addEntity(newPolyline({{0, 50}, {10, 50}}));
    EXPECT_THAT(run("CURVEPTS", {"5,50", "1"}),
                EndsWith("\nThe polyline does not have enough points\npoints none 0"));
    EXPECT_EQ(last("CURVEPTS", {"104,0", "0"}), "points none 0");
    EXPECT_EQ(last("CURVEPTS", {"\\miss"}), "points none -5001");
    addEntity(new KdDbPoint({0, 80, 0}));
    EXPECT_EQ(last("CURVEPTS", {"0,80", "1"}), "points none 0");
}

TEST_F(DraftingTest, MkregionTakesThePlaceOfItsCurvesAndOutlineFollowsIt)
{
    const auto bottom = addEntity(new KdDbLine({0, 0, 0}, {20, 0, 0}));
    const auto arc = addEntity(new KdDbArc({10, 0, 0}, 10, 0, kHalfTurn));
    EXPECT_EQ(last("MKREGION", {"5,0", ""}), "region none 2") << "it does not close";
    EXPECT_EQ(last("MKREGION", {"5,0", "5,0"}), "region none 7");
    EXPECT_EQ(last("MKREGION", {"5,0", "\\esc"}), "region none -5002");
    EXPECT_FALSE(bottom.isErased());
    const std::string made = last("MKREGION", {"5,0", "10,10", ""});
    ASSERT_THAT(made, StartsWith("region "));
    EXPECT_TRUE(bottom.isErased());
    EXPECT_TRUE(arc.isErased());
    // A line and a hundred samples of the half circle; its last is where the first vertex is again.
    EXPECT_THAT(last("OUTLINE", {"10,10"}), MatchesRegex("outline [0-9A-F]+ 101"));
    EXPECT_THAT(run("PICKINFO", {"5,0"}), HasSubstr("picked KdDb"));

    addEntity(new KdDbEllipse({0, 60, 0}, KdGeVector3d::kZAxis, {9, 0, 0}, 1));
    EXPECT_THAT(last("OUTLINE", {"9,60"}), MatchesRegex("outline [0-9A-F]+ 91"));
    addEntity(new KdDbLine({0, 90, 0}, {20, 90, 0}));
    EXPECT_EQ(last("OUTLINE", {"5,90"}), "outline none 0");
}

TEST_F(DraftingTest, AttachGivesPointAndAngleOfTheCurveAsItIsShown)
{
    addEntityToBlock(L"PART", new KdDbLine({0, 0, 0}, {10, 0, 0}));
    addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"PART")));
    EXPECT_EQ(run("ATTACH", {"104,0", "102,3"}),
              "\nSelect a curve: 104,0\nPoint: 102,3\nattach 102 0 0 0");
    EXPECT_EQ(last("ATTACH", {"104,0", "102,-3"}), "attach 102 0 0 3.141593");
    EXPECT_EQ(last("ATTACH", {"104,0", ""}), "attach none 5000");
    addEntity(new KdDbPoint({0, 80, 0}));
    EXPECT_EQ(last("ATTACH", {"0,80", "1,1"}), "attach none 0");
}

TEST_F(DraftingTest, CrossTakesNestedEntitiesAsTheyAreShown)
{
    addEntityToBlock(L"PART", new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 1));
    auto* const reference = new KdDbBlockReference({100, 0, 0}, blockId(L"PART"));
    reference->setScaleFactors(KdGeScale3d(5, 10, 1));
    addEntity(reference);
    addEntity(new KdDbLine({103, -50, 0}, {103, 50, 0}));
    addEntity(new KdDbLine({90, 20, 0}, {120, 20, 0}));
    EXPECT_EQ(run("CROSS", {"103,40", "95,0"}), "\nSelect an entity: 103,40\n"
                                                "Select an entity: 95,0\n"
                                                "crossings 2\n103 -8 0\n103 8 0");
    EXPECT_EQ(last("CROSS", {"95,0", "95,20"}), "crossings 0");
    EXPECT_EQ(last("CROSS", {"103,40", "\\miss"}), "crossings none -5001");
    EXPECT_THAT(run("PICKINFO", {"95,0"}), HasSubstr("KdDbBlockReference")) << "a copy is left";
}

TEST_F(DraftingTest, UnloadingTakesTheCommandsAway)
{
    EXPECT_TRUE(kdrxUnloadModule(L"drafting.krx", false));
    EXPECT_FALSE(korra::runCommand("PICKINFO"));
    EXPECT_TRUE(kdrxLoadModule(L"drafting", false, false));
    EXPECT_TRUE(korra::runCommand("PICKINFO"));
}

} // namespace
