// Class markers: new objects get those that the published format gives their kinds, behind what the
// drawing's own begin with, and each field stands behind its marker.

#include "dxf_samples.h"

#include "dxf/tag_list.h"
#include "support/drawing.h"
#include "support/host_test.h"

#include <regex>
#include <set>
#include <utility>

using korra::drawingText;
using korra::TagList;
using korra::TagPart;
using ::testing::HasSubstr;

namespace tests::dxf {
namespace {

/// A drawing with block records, a dictionary of everything and a line, whose markers begin so.
std::string drawingWith(const std::string& prefix)
{
    const std::string record =
        "; 330 1; 100 " + prefix + "SymbolTableRecord; 100 " + prefix + "BlockTableRecord; 2 *";
    return file(
        "0 SECTION; 2 TABLES; 0 TABLE; 2 BLOCK_RECORD; 5 1; 330 0; 100 " + prefix +
        "SymbolTable; 70 2; 0 BLOCK_RECORD; 5 2" + record +
        "Model_Space; 340 0; 0 BLOCK_RECORD; 5 3" + record +
        "Paper_Space; 340 0; 0 ENDTAB; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 LINE; 5 A; 330 2; "
        "100 " +
        prefix + "Entity; 8 0; 100 " + prefix +
        "Line; 10 0.0; 20 0.0; 30 0.0; 11 1.0; 21 0.0; 31 0.0; 0 ENDSEC; 0 SECTION; "
        "2 OBJECTS; 0 DICTIONARY; 5 B; 330 0; 100 " +
        prefix + "Dictionary; 281 1; 0 ENDSEC; 0 EOF");
}

/// What the objects of a drawing consist of: their types with the codes of their tags, in the place
/// of 100 the marker; each outline once.
std::set<std::string> outlines(const std::string& text)
{
    std::set<std::string> outlines;
    const TagList tags(text);
    std::string outline;
    for (std::size_t index = 0; index < tags.size(); ++index) {
        const bool isMarker = tags[index].part == TagPart::marker;
        if (tags[index].code == 0)
            outlines.insert(std::exchange(outline, std::string(tags[index].value)));
        else
            outline += ' ' + (isMarker ? std::string(tags[index].value)
                                       : std::to_string(tags[index].code));
    }
    return outlines;
}

class ClassMarkers : public HostTest {
protected:
    void TearDown() override
    {
        read_.reset();
        HostTest::TearDown();
    }

    KdDbDatabase& begin(const std::string& text)
    {
        read_ = readWhole(text);
        kddbHostApplicationServices()->setWorkingDatabase(read_.get());
        return *read_;
    }

    std::unique_ptr<KdDbDatabase> read_;
};

/// Adds an object of each kind.
void addEverything()
{
    addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    addEntity(new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 1));
    addEntity(new KdDbArc({0, 0, 0}, 1, 0, 1));
    addEntity(new KdDbPoint);
    auto* const light = new KdDbPolyline;
    light->addVertexAt(0, {0, 0}, 0.5);
    addEntity(light);
    addEntity(new KdDbText({0, 0, 0}, L"text", 1));
    addEntity(new KdDbMText);
    for (KdDbVertexCurve* const curve : {static_cast<KdDbVertexCurve*>(new KdDb2dPolyline),
                                         static_cast<KdDbVertexCurve*>(new KdDb3dPolyline)}) {
        curve->appendVertex(new KdDbVertex({1, 2, 3}, 0));
        addEntity(curve);
    }
    addEntityToBlock(L"Part", new KdDbAttributeDefinition({0, 0, 0}, L"", L"TAG", L"", 1));
    auto* const reference = new KdDbBlockReference({0, 0, 0}, blockId(L"Part"));
    KdDbObjectId ignored;
    reference->appendAttribute(ignored, new KdDbAttribute({0, 0, 0}, L"", L"TAG", 1));
    Open<KdDbBlockReference>(addEntity(reference))->createExtensionDictionary();
    addEntity(new KdDbRotatedDimension(1, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}));
    addEntity(new KdDbAlignedDimension({0, 0, 0}, {1, 0, 0}, {0, 1, 0}));
    addEntity(new KdDbRadialDimension({0, 0, 0}, {1, 0, 0}, 1));
    addEntity(new KdDbDiametricDimension({0, 0, 0}, {1, 0, 0}, 1));
    addEntity(new KdDbAngularDimension({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}));
    addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Layer");
    addRecord<KdDbLinetypeTable, KdDbLinetypeTableRecord>(L"Linetype");
    addRecord<KdDbTextStyleTable, KdDbTextStyleTableRecord>(L"Style");
    addRecord<KdDbDimStyleTable, KdDbDimStyleTableRecord>(L"Style");
    addRecord<KdDbRegAppTable, KdDbRegAppTableRecord>(L"App");
    addRecord<KdDbUCSTable, KdDbUCSTableRecord>(L"System");
    addRecord<KdDbViewportTable, KdDbViewportTableRecord>(L"View");
}

TEST_F(ClassMarkers, OfNewObjectsBeginAsTheOnesThatAreThereAndFieldsStandBehindTheirs)
{
    KdDbDatabase& drawing = begin(drawingWith("Xy"));
    addEverything();
    const std::string saved = drawingText(drawing);
    EXPECT_EQ(drawingText(*readWhole(saved)), saved);
    const std::string entity = " 5 330 XyEntity 8 ";
    const std::string attribute = entity + "XyText 10 20 30 40 1 ";
    const std::string dimension = "DIMENSION" + entity + "XyDimension 2 10 20 30 11 21 31 70 42 3 ";
    const std::string linear = dimension + "XyAlignedDimension 13 23 33 14 24 34";
    const std::string record = " 5 330 XySymbolTableRecord ";
    const std::vector<std::string> expected = {
        "LINE" + entity + "XyLine 10 20 30 11 21 31",
        "CIRCLE" + entity + "XyCircle 10 20 30 40",
        "ARC" + entity + "XyCircle 10 20 30 40 XyArc 50 51",
        "POINT" + entity + "XyPoint 10 20 30",
        "LWPOLYLINE" + entity + "XyPolyline 90 70 10 20 42",
        "TEXT" + attribute + "XyText",
        "MTEXT" + entity + "XyMText 10 20 30 40 1",
        "POLYLINE" + entity + "Xy2dPolyline 66 10 20 30",
        "POLYLINE" + entity + "Xy3dPolyline 66 10 20 30 70",
        "VERTEX" + entity + "XyVertex Xy2dVertex 10 20 30",
        "VERTEX" + entity + "XyVertex Xy3dPolylineVertex 10 20 30 70",
        "SEQEND 5 330 XyEntity 8",
        "ATTDEF" + attribute + "XyAttributeDefinition 3 2 70",
        "ATTRIB" + attribute + "XyAttribute 2 70",
        "INSERT 5 102 360 102 330 XyEntity 8 XyBlockReference 66 2 10 20 30",
        "VIEWPORT 5 330 XyEntity 67 8 XyViewport 10 20 30 40 41 68 69 12 22 42 45 51 90",
        linear,
        linear + " 50 XyRotatedDimension",
        dimension + "XyRadialDimension 15 25 35 40",
        dimension + "XyDiametricDimension 15 25 35 40",
        dimension + "Xy3PointAngularDimension 13 23 33 14 24 34 15 25 35",
        "BLOCK" + entity + "XyBlockBegin 2 70 3 1",
        "ENDBLK" + entity + "XyBlockEnd",
        "BLOCK_RECORD" + record + "XyBlockTableRecord 2",
        "TABLE 5 2 330 XySymbolTable 70",
        "TABLE 5 2 330 XySymbolTable 70 XyDimStyleTable",
        "LAYER" + record + "XyLayerTableRecord 2 70 62 6",
        "LTYPE" + record + "XyLinetypeTableRecord 2 70 3 72 40",
        "STYLE" + record + "XyTextStyleTableRecord 2 70 40 41 50 71 42 3 4",
        "DIMSTYLE 105 330 XySymbolTableRecord XyDimStyleTableRecord 2 70",
        "APPID" + record + "XyRegAppTableRecord 2 70",
        "UCS" + record + "XyUCSTableRecord 2 70 10 20 30 11 21 31 12 22 32",
        "VPORT" + record + "XyViewportTableRecord 2 70 12 22 16 26 36 17 27 37 40 41 42 51",
        "DICTIONARY 5 330 XyDictionary 280 281",
        "LAYOUT 5 330 XyPlotSettings XyLayout 1 70 71 330",
    };
    EXPECT_THAT(outlines(saved), ::testing::IsSupersetOf(expected));
}

TEST_F(ClassMarkers, AreNotWrittenWhereTheDrawingHasNoneThatIsKnown)
{
    static const std::regex markers("100\n.*\n");
    for (const std::string& text :
         {std::regex_replace(drawingWith("Xy"), markers, ""),
          std::regex_replace(drawingWith("Xy"), markers, "100\nStrange\n")}) {
        KdDbDatabase& drawing = begin(text);
        addEntity(new KdDbPoint({1, 2, 3}));
        EXPECT_THAT(outlines(drawingText(drawing)), ::testing::Contains("POINT 5 8 10 20 30"));
    }
}

TEST_F(ClassMarkers, OwnersAndSheetsAreNamedAsOthersWantThem)
{
    KdDbDatabase& drawing = begin(drawingWith("Xy"));
    auto* const point = new KdDbPoint({1, 2, 3});
    const KdDbObjectId id = addEntityToBlock(L"*Paper_Space", point);
    EXPECT_THAT(drawingText(drawing),
                HasSubstr(file("0 POINT; 5 " + traceForm(id) +
                               "; 330 3; 100 XyEntity; 67 1; 8 0; 100 XyPoint; 10 1")));
}

} // namespace
} // namespace tests::dxf
