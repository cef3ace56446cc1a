// What drawing files say, as the database has it.

#include "dxf_samples.h"

#include "drawing/layouts.h"

#include <cmath>
#include <numbers>

using korra::ObjectAccess;

namespace tests::dxf {
namespace {

class DrawingReading : public HostTest {};

std::wstring nameOf(KdDbObjectId record)
{
    const auto* found = KdDbSymbolTableRecord::cast(ObjectAccess::object(record));
    return found ? found->name() : std::wstring(L"(none)");
}

std::vector<std::uint64_t> handlesOf(const std::vector<KdDbObjectId>& ids)
{
    std::vector<std::uint64_t> handles;
    for (const KdDbObjectId id : ids)
        handles.push_back(id.handle().value());
    return handles;
}

/// Handles of the entities of a block, in their order.
std::vector<std::uint64_t> entitiesOf(const KdDbDatabase& database, const wchar_t* block)
{
    return handlesOf(ObjectAccess::entities(*database.contents().block(block)).ids());
}

TEST_F(DrawingReading, CurvesHaveTheirGeometry)
{
    const auto database = readWhole(
        withEntities("0 ARC; 5 A1; 10 1; 20 2; 40 5; 50 90; 51 180; 210 0; 220 0; 230 -1\n"
                     "0 LWPOLYLINE; 5 A2; 90 2147483647; 70 1; 38 7\n"
                     "10 0; 20 0; 42 1; 10 4; 20 0; 40 .5\n"
                     "0 POLYLINE; 5 A3; 66 1; 70 9; 10 0; 20 0; 30 0\n"
                     "0 VERTEX; 10 2; 20 2; 30 8; 70 32; 0 VERTEX; 10 2; 20 2; 30 9; 70 32\n"
                     "0 SEQEND"));

    const auto& arc = *find<KdDbArc>(*database, 0xA1);
    EXPECT_DOUBLE_EQ(arc.startAngle(), std::numbers::pi / 2);
    EXPECT_DOUBLE_EQ(arc.endAngle(), std::numbers::pi);
    EXPECT_TRUE(arc.center().isEqualTo({-1, 2, 0})); // in the system of its normal 1, 2
    const auto& light = *find<KdDbPolyline>(*database, 0xA2);
    EXPECT_TRUE(light.isClosed());
    EXPECT_EQ(light.numVerts(), 2u); // the count that the file tells is not believed
    KdGePoint3d point;
    EXPECT_EQ(light.getPointAt(1, point), Kdapi::eOk);
    EXPECT_EQ(point, KdGePoint3d(4, 0, 7));
    double bulge = 0.0;
    EXPECT_EQ(light.getBulgeAt(0, bulge), Kdapi::eOk);
    EXPECT_EQ(bulge, 1.0);
    const auto& spatial = *find<KdDb3dPolyline>(*database, 0xA3);
    EXPECT_EQ(spatial.vertices()[0]->position(), KdGePoint3d(2, 2, 8));
    EXPECT_EQ(spatial.geometry()->length(), 2.0) << "there and back, as it is closed";
}

TEST_F(DrawingReading, TextsAndReferencesHaveTheirParts)
{
    const auto database = readWhole(file(kModernSample));
    const auto& text = *find<KdDbMText>(*database, 0x56);
    EXPECT_STREQ(text.contents(), L"первая вторая\\Pстрока");
    EXPECT_EQ(text.location(),
              KdGePoint3d(1, 1, 0)); // neither that before the marker nor the embedded
    const auto& reference = *find<KdDbBlockReference>(*database, 0x58);
    EXPECT_THAT(handlesOf({reference.blockTableRecord(), reference.extensionDictionary(),
                           find<KdDbAttribute>(*database, 0x59)->ownerId()}),
                ElementsAre(0x22, 0x60, 0x58));
    EXPECT_EQ(find<KdDbBlockTableRecord>(*database, 0x22)->origin(), KdGePoint3d(1, 0, 0));
}

TEST_F(DrawingReading, DimensionsHaveTheStyleThatIsThereAndAreOfAKindThatIsKnown)
{
    const auto database = readWhole(
        withEntities("0 DIMENSION; 5 A0; 3 ISO; 70 38\n0 DIMENSION; 5 A1; 70 33; 14 3; 24 4\n"
                     "0 DIMENSION; 5 A2"));
    const auto& unknown = *find<KdDbDimension>(*database, 0xA0);
    EXPECT_EQ(unknown.isA(), KdDbDimension::desc());
    EXPECT_EQ(unknown.dimensionStyle(), database->dimstyle());
    EXPECT_DOUBLE_EQ(find<KdDbAlignedDimension>(*database, 0xA1)->measurement(), 5);
    EXPECT_EQ(find<KdDbDimension>(*database, 0xA2)->isA(), KdDbRotatedDimension::desc());
}

TEST_F(DrawingReading, AnAngleBetweenTwoLinesIsTheOneInWhichTheArcLies)
{
    constexpr const char* kEighth = "13 -1; 23 0; 14 1; 24 0; 15 -1; 25 -1; 10 1; 20 1";

    struct {
        const char* lines; ///< their ends, codes 13, 14 and 15, 10
        const char* arc;
        double angle;
    } const cases[] = {
        {kEighth, "16 2; 26 1", std::atan(1)},
        {kEighth, "16 0; 26 3", 3 * std::atan(1)},
        {"13 0; 23 0; 14 1; 24 0; 15 0; 25 1; 10 1; 20 1", "16 1; 26 2", 0.0}, // parallel
        // Upright: in the plane of the normal x is -x and y is z; the arc's point lies in it.
        {"13 1; 23 2; 33 3; 14 4; 24 5; 34 6; 15 7; 25 8; 35 1; 10 1; 20 2; 30 3",
         "16 2; 26 2; 210 0; 220 1; 230 0", std::atan(2)},
    };

    for (const auto& [lines, arc, angle] : cases) {
        const auto database = readWhole(
            withEntities("0 DIMENSION; 5 A0; 70 162; " + std::string(lines) + "; " + arc));
        EXPECT_NEAR(find<KdDbAngularDimension>(*database, 0xA0)->measurement(), angle, 1e-12)
            << lines << ", " << arc;
    }
}

TEST_F(DrawingReading, EntitiesLieInTheBlockThatOwnerOrSectionSay)
{
    const auto database = readWhole(file(kModernSample));
    EXPECT_THAT(entitiesOf(*database, L"*Model_Space"),
                ElementsAre(0x50, 0x51, 0x52, 0x53, 0x56, 0x58));
    EXPECT_THAT(handlesOf(find<KdDbSortentsTable>(*database, 0x71)->fullDrawOrder()),
                ElementsAre(0x52, 0x51, 0x50, 0x53, 0x56, 0x58)); // as the sort handles say
    EXPECT_THAT(entitiesOf(*database, L"*Paper_Space"), ElementsAre(0x57));

    const auto early = readWhole(withEntities("0 LINE; 5 A; 330 9\n0 LINE; 5 B; 67 1"));
    EXPECT_THAT(entitiesOf(*early, L"*Model_Space"), ElementsAre(0xA));
    EXPECT_THAT(entitiesOf(*early, L"*Paper_Space"), Contains(0xB));
}

TEST_F(DrawingReading, LayoutsAndDictionariesAreThoseOfTheFile)
{
    const auto database = readWhole(file(kModernSample));
    const auto layouts = korra::layoutsOf(database->contents());
    ASSERT_EQ(layouts.size(), 2u);
    EXPECT_STREQ(layouts[1]->getLayoutName(), L"Blatt 1");
    EXPECT_THAT(handlesOf({database->namedObjectsDictionaryId(), database->layoutDictionaryId(),
                           find<KdDbBlockTableRecord>(*database, 0x21)->getLayoutId(),
                           layouts[1]->getBlockTableRecordId()}),
                ElementsAre(0xC, 0x1A, 0x31, 0x21));
    KdDbObjectId id;
    EXPECT_EQ(find<KdDbDictionary>(*database, 0x60)->getAt(L"note", id), Kdapi::eOk);
}

TEST_F(DrawingReading, ReferencesMayStandBeforeWhatTheyName)
{
    const auto database = readWhole(
        file("0 SECTION; 2 ENTITIES; 0 INSERT; 5 A; 8 wall; 2 part; 0 ENDSEC\n"
             "0 SECTION; 2 BLOCKS; 0 BLOCK; 2 OUTER; 0 INSERT; 5 B; 2 PART; 0 ENDBLK\n"
             "0 BLOCK; 2 PART; 0 ENDBLK; 0 ENDSEC\n"
             "0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 0 LAYER; 2 WALL; 62 3; 0 ENDTAB; 0 ENDSEC\n"
             "0 EOF"));
    for (const std::uint64_t handle : {0xA, 0xB})
        EXPECT_EQ(nameOf(find<KdDbBlockReference>(*database, handle)->blockTableRecord()), L"PART");
    EXPECT_EQ(nameOf(find<KdDbBlockReference>(*database, 0xA)->layerId()), L"WALL");
}

TEST_F(DrawingReading, MissingNamesAreMadeOrStoodInForAndKept)
{
    const std::string text = file(
        "0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 0 LAYER; 5 9; 2 Walls; 62 1; 6 lost; 0 ENDTAB; "
        "0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 TEXT; 5 A; 8 lost; 6 lost; 10 0; 20 0; 30 0; 40 1; 1 "
        "x; 7 lost\n"
        "0 INSERT; 5 B; 2 lost; 0 LINE; 5 C; 0 ENDSEC; 0 EOF");
    const auto database = readWhole(text);
    const auto& written = *find<KdDbText>(*database, 0xA);
    EXPECT_THAT((std::vector{nameOf(written.layerId()), nameOf(written.linetypeId()),
                             nameOf(find<KdDbLayerTableRecord>(*database, 9)->linetypeObjectId()),
                             nameOf(find<KdDbBlockReference>(*database, 0xB)->blockTableRecord()),
                             nameOf(find<KdDbLine>(*database, 0xC)->layerId())}),
                ElementsAre(L"lost", L"ByLayer", L"Continuous", L"(none)", L"0"));
    EXPECT_EQ(written.textStyle(), database->textstyle());

    changeObject<KdDbText>(*database, 0xA, [](auto& changing) { changing.setHeight(2); });
    EXPECT_THAT(
        korra::drawingText(*database),
        HasSubstr(file("0 TEXT; 5 A; 8 lost; 6 lost; 10 0; 20 0; 30 0; 40 2; 1 x; 7 lost\n")));
}

TEST_F(DrawingReading, TextsAreInTheCodePageThatTheHeaderTells)
{
    const struct {
        const char* header;
        const char* bytes;
        const wchar_t* text;
    } cases[] = {
        {"9 $ACADVER; 1 AC1018; 9 $DWGCODEPAGE; 3 ANSI_1251", "\xC4\xE0", L"Да"},
        {"9 $ACADVER; 1 AC1021; 9 $DWGCODEPAGE; 3 ANSI_1251", "\xC3\xA4", L"ä"},
        {"9 $OTHER; 70 1", "\xC3\xA4", L"ä"},
        {"9 $ACADVER; 1 AC1021", "a\\U+00E4 \\M+5D6D0", L"aä 中"},
    };

    for (const auto& [header, bytes, text] : cases) {
        const auto database = readWhole(file("0 SECTION; 2 HEADER; " + std::string(header) +
                                             "; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 TEXT; 5 A; 1 " +
                                             bytes + "; 0 ENDSEC; 0 EOF"));
        EXPECT_STREQ(find<KdDbText>(*database, 0xA)->textString(), text) << header;
    }
}

TEST_F(DrawingReading, OnlyAnEmptyDatabaseIsReadInto)
{
    const std::string text = withEntities("0 LINE; 5 A");
    KdDbDatabase empty(false); // and is so after a failure
    EXPECT_FALSE(korra::readDrawingText(empty, "garbage", "bad.dxf").done);
    EXPECT_TRUE(korra::readDrawingText(empty, text, "good.dxf").done);
    EXPECT_EQ(korra::readDrawingText(empty, text, "again.dxf").message,
              "again.dxf: cannot be read into a database that holds a drawing");
    EXPECT_NE(find<KdDbLine>(empty, 0xA), nullptr);
}

} // namespace
} // namespace tests::dxf
