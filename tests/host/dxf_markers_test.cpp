// Class markers: what is new gets those that the published format gives its kind, behind what the
// drawing's own begin with. Those of the single kinds stand in dxf_copies_test.cpp.

#include "dxf_samples.h"

#include "dxf/tag_list.h"

#include <regex>
#include <set>
#include <utility>

using korra::drawingText;
using korra::TagList;
using korra::TagPart;

namespace tests::dxf {
namespace {

/// A drawing with block records, a dictionary of everything and a line, whose markers begin "Xy".
const std::string kMarked = file(R"(0 SECTION; 2 TABLES
0 TABLE; 2 BLOCK_RECORD; 5 1; 330 0; 100 XySymbolTable; 70 2
0 BLOCK_RECORD; 5 2; 330 1; 100 XySymbolTableRecord; 100 XyBlockTableRecord; 2 *Model_Space; 340 0
0 BLOCK_RECORD; 5 3; 330 1; 100 XySymbolTableRecord; 100 XyBlockTableRecord; 2 *Paper_Space; 340 0
0 ENDTAB; 0 ENDSEC; 0 SECTION; 2 ENTITIES
0 LINE; 5 A; 330 2; 100 XyEntity; 8 0; 100 XyLine; 10 0.0; 20 0.0; 30 0.0; 11 1.0; 21 0.0; 31 0.0
0 ENDSEC; 0 SECTION; 2 OBJECTS; 0 DICTIONARY; 5 B; 330 0; 100 XyDictionary; 281 1
0 ENDSEC; 0 EOF)");

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

class ClassMarkers : public HostTest {};

TEST_F(ClassMarkers, OfWhatIsNewBeginAsTheOnesThatAreThere)
{
    const auto drawing = readToWorkOn(kMarked);
    addEntityToBlock(L"Part", new KdDbPoint);
    auto* const polyline = new KdDb3dPolyline;
    polyline->appendVertex(new KdDbVertex({1, 2, 3}, 0));
    addEntity(polyline);
    addEntity(new KdDb2dPolyline); // without vertices
    auto* const reference = new KdDbBlockReference({0, 0, 0}, blockId(L"Part"));
    Open<KdDbBlockReference>(addEntity(reference))->createExtensionDictionary();
    const std::string saved = drawingText(*drawing);
    EXPECT_EQ(drawingText(*readWhole(saved)), saved);
    const std::string entity = " 5 330 XyEntity 8 ";
    const std::vector<std::string> expected = {
        "POLYLINE" + entity + "Xy3dPolyline 66 10 20 30 70",
        "VERTEX" + entity + "XyVertex Xy3dPolylineVertex 10 20 30 70",
        "SEQEND 5 330 XyEntity 8",
        "INSERT 5 102 360 102 330 XyEntity 8 XyBlockReference 2 10 20 30",
        "BLOCK" + entity + "XyBlockBegin 2 70 3 1",
        "ENDBLK" + entity + "XyBlockEnd",
        "BLOCK_RECORD 5 330 XySymbolTableRecord XyBlockTableRecord 2",
        "TABLE 5 2 330 XySymbolTable 70",
        "TABLE 5 2 330 XySymbolTable 70 XyDimStyleTable",
        "DICTIONARY 5 330 XyDictionary 280 281",
        "LAYOUT 5 330 XyPlotSettings XyLayout 1 70 71 330",
        "VIEWPORT 5 330 XyEntity 67 8 XyViewport 10 20 30 40 41 68 69 12 22 42 45 51 90",
    };
    EXPECT_THAT(outlines(saved), IsSupersetOf(expected));
}

TEST_F(ClassMarkers, OfARegionAreThoseOfTheCurvesThatItIsSavedAs)
{
    const auto drawing = readToWorkOn(kMarked);
    KdDbLine chord({0, 0, 0}, {2, 0, 0});
    KdDbArc arc({1, 0, 0}, 1, 0, 3.141592653589793);
    KdArray<KdDbCurve*> curves;
    curves.append(&chord);
    curves.append(&arc);
    KdArray<KdDbRegion*> regions;
    ASSERT_EQ(KdDbRegion::createFromCurves(curves, regions), Kdapi::eOk);
    regions[0]->transformBy(KdGeMatrix3d::translation({5, 0, 0}));
    const KdDbObjectId id = addEntity(regions[0]);
    Open<KdDbRegion>(id)->transformBy(KdGeMatrix3d::translation({0, 7, 0}));
    const std::string saved = drawingText(*drawing);
    const auto again = readWhole(saved);
    EXPECT_EQ(find<KdDbLine>(*again, id.handle().value())->startPoint(), KdGePoint3d(5, 7, 0))
        << "the first has the region's handle";
    EXPECT_THAT(outlines(saved),
                IsSupersetOf({"LINE 5 330 XyEntity 8 XyLine 10 20 30 11 21 31",
                              "ARC 5 330 XyEntity 8 XyCircle 10 20 30 40 XyArc 50 51"}));
    EXPECT_EQ(drawingText(*again), saved);
    EXPECT_EQ(Open<KdDbRegion>(id)->transformBy(KdGeMatrix3d::scaling(KdGeScale3d(1, 2, 1))),
              Kdapi::eCannotScaleNonUniformly);
}

TEST_F(ClassMarkers, AreNotWrittenWhereTheDrawingHasNoneThatIsKnown)
{
    static const std::regex markers("100\n.*\n");
    for (const std::string& text :
         {std::regex_replace(kMarked, markers, ""),
          std::regex_replace(kMarked, markers, "100\nStrange\n"),
          withEntities("0 LINE; 5 A; 100 XyEntity; 8 0; 100 OtherLine; 10 0.0; 20 0.0")}) {
        const auto drawing = readToWorkOn(text);
        addEntity(new KdDbPoint({1, 2, 3}));
        addLayer(L"New");
        EXPECT_THAT(outlines(drawingText(*drawing)),
                    IsSupersetOf({"POINT 5 8 10 20 30", "TABLE 5 2 70"}));
    }
}

TEST_F(ClassMarkers, OwnersAndSheetsAreNamedAsOthersWantThem)
{
    const auto drawing = readToWorkOn(kMarked);
    const KdDbObjectId id = addEntityToBlock(L"*Paper_Space", new KdDbPoint({1, 2, 3}));
    EXPECT_THAT(drawingText(*drawing),
                HasSubstr(file("0 POINT; 5 " + traceForm(id) +
                               "; 330 3; 100 XyEntity; 67 1; 8 0; 100 XyPoint; 10 1")));
}

} // namespace
} // namespace tests::dxf
