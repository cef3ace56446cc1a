// What other programs write differently is understood, and given back as it was.

#include "dxf_samples.h"

#include "support/host_test.h"
#include "support/objects.h"

#include <set>

using korra::ObjectAccess;

namespace tests::dxf {
namespace {

class ForeignDrawing : public HostTest {
protected:
    /// Adds to another drawing what goes to the working one.
    KdDbObjectId addTo(KdDbDatabase& other, KdDbObjectId (*add)()) const
    {
        KdDbDatabase& here = database();
        kddbHostApplicationServices()->setWorkingDatabase(&other);
        const KdDbObjectId id = add();
        kddbHostApplicationServices()->setWorkingDatabase(&here);
        return id;
    }
};

std::string withStyle(const char* textStyle)
{
    return replaced(file("0 SECTION; 2 TABLES; 0 TABLE; 2 STYLE; 5 1; 70 1\n"
                         "0 STYLE; 5 A; 2 Standard; 0 STYLE; 5 B; 2 Add; 0 ENDTAB\n"
                         "0 TABLE; 2 DIMSTYLE; 5 2; 70 9; 0 DIMSTYLE; 105 C; 2 Mine; 70 0\n"
                         "340 IT; 341 ; 40 2.0; 0 ENDTAB; 0 ENDSEC; 0 EOF\n"),
                    "IT\n", std::string(textStyle) += '\n');
}

TEST_F(ForeignDrawing, NamesARecordInThePlaceOfItsHandle)
{
    const std::pair<const char*, unsigned> cases[] = {
        {"B", 0xB}, {"STANDARD", 0xA}, {"add", 0xB}, {"Nobody", 0xA}, {"C", 0xA}};
    for (const auto& [textStyle, handle] : cases) {
        const std::string text = withStyle(textStyle);
        const auto database = readWhole(text);
        auto* const style = find<KdDbDimStyleTableRecord>(*database, 0xC);
        EXPECT_EQ(style->dimtxsty().handle().value(), handle) << textStyle;
        EXPECT_EQ(korra::drawingText(*database), text);
        Open<KdDbDimStyleTableRecord>(style->objectId())->setDimscale(3.0);
        EXPECT_EQ(korra::drawingText(*database), replaced(text, "2.0", "3"));
    }
}

TEST_F(ForeignDrawing, GivesAnObjectOfItsOwnAHandleOfItsOwn)
{
    const auto database = readWhole(withEntities(
        "0 LINE; 5 1A; 0 LINE; 5 1a; 0 LINE; 5 ; 0 LINE; 8 0; 0 LINE; 5 7FFFFFFFFFFFFFFF\n"
        "0 POLYLINE; 5 1B; 66 1; 70 8; 0 VERTEX; 5 1C; 0 SEQEND"));
    const KdDbObjectId added = addTo(*database, [] { return addEntity(new KdDbLine); });

    const std::string saved = korra::drawingText(*database);
    const auto again = readWhole(saved);
    std::set<std::uint64_t> handles;
    for (const auto* entity :
         ObjectAccess::entities(*again->contents().block(L"*Model_Space")).each())
        handles.insert(entity->objectId().handle().value());
    EXPECT_EQ(handles.size(), 7u);
    EXPECT_TRUE(handles.contains(added.handle().value()));
    EXPECT_EQ(saved.find("\n  0\nSEQEND\n  0\n"), std::string::npos) << "it has a handle, too";
    EXPECT_EQ(korra::drawingText(*again), saved);
}

TEST_F(ForeignDrawing, EndsTheHeaderInItsMidst)
{
    const std::string text = file("0 SECTION; 2 FIRST; 0 ENDSEC\n"
                                  "0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1015; 0 ENDSEC\n"
                                  "9 $LTSCALE; 40 2.5; 0 ENDSEC; 0 EOF\n");
    const auto database = readWhole(text);
    EXPECT_EQ(database->contents().header.real("$LTSCALE", 1.0), 2.5);
    EXPECT_EQ(korra::drawingText(*database), text);
}

TEST_F(ForeignDrawing, LeavesBlocksWithoutANameAndCountsThatAreWrong)
{
    const std::string text =
        file("0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 5 1; 70 1\n"
             "0 LAYER; 5 A; 2 0; 6 CONTINUOUS; 0 LAYER; 5 B; 2 Walls; 6 CONTINUOUS\n"
             "0 ENDTAB; 0 ENDSEC; 0 SECTION; 2 BLOCKS; 0 BLOCK; 5 C; 0 LINE; 5 D; 0 ENDBLK\n"
             "0 BLOCK; 5 E; 0 ENDBLK; 0 ENDSEC; 0 EOF\n");
    const auto database = readWhole(text);
    EXPECT_EQ(korra::drawingText(*database), text);

    addTo(*database, [] { return addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Third"); });
    EXPECT_NE(korra::drawingText(*database).find("\n 70\n3\n"), std::string::npos);
}

} // namespace
} // namespace tests::dxf
