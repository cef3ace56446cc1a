#include "orvex/entity_type.h"

#include "support/block_contents.h"
#include "support/dxf_notes.h"
#include "support/room_test.h"

namespace {

class EntityTypeTest : public HostTest {};

TEST_F(EntityTypeTest, EveryClassifiedKindHasItsNumber)
{
    const std::pair<std::string, int> kinds[] = {
        {"LINE", 1},
        {"LWPOLYLINE", 2},
        {"ARC", 3},
        {"CIRCLE", 4},
        {"ELLIPSE", 5},
        {"POLYLINE; 66 1; 70 0; 0 SEQEND", 6},
        {"POLYLINE; 66 1; 70 8; 0 SEQEND", 7},
        {"POLYLINE; 66 1; 70 16; 0 SEQEND", 11},
        {"POLYLINE; 66 1; 70 64; 0 SEQEND", 19},
        {"SPLINE", 8},
        {"POINT", 9},
        {"3DFACE", 10},
        {"3DSOLID", 12},
        {"REGION", 13},
        {"BODY", 14},
        {"INSERT; 2 PART", 15},
        {"ATTDEF", 17},
        {"TEXT", 16},
        {"HATCH", 20},
        {"DIMENSION; 70 0", 21},
        {"TRACE", 22},
        {"SOLID", 23},
        {"MTEXT", 24},
        {"MLINE", 101},
        {"XLINE", 102},
        {"RAY", 0},
        {"LEADER", 28},
        {"TOLERANCE", 29},
        {"SOMETHING", 0},
    };
    std::string notes = "0 SECTION; 2 BLOCKS; 0 BLOCK; 2 PART; 0 ENDBLK; 0 ENDSEC\n"
                        "0 SECTION; 2 ENTITIES\n";
    for (const auto& [entity, type] : kinds)
        notes += "0 " + entity + '\n';
    KdDbDatabase database(false);
    ASSERT_TRUE(
        korra::readDrawingText(database, tests::dxf::file(notes + "0 ENDSEC; 0 EOF\n"), "").done);
    const auto ids = support::entitiesOf(*Open<KdDbBlockTableRecord>(database.currentSpaceId()));
    ASSERT_EQ(ids->size(), std::size(kinds));
    for (std::size_t i = 0; i < ids->size(); ++i)
        EXPECT_EQ(getEntType(Open<KdDbObject>((*ids)[i]).get()), kinds[i].second) << kinds[i].first;

    EXPECT_EQ(getEntType(std::make_unique<KdDbAttribute>().get()), 18);
    EXPECT_EQ(getEntType(std::make_unique<KdDbVertex>().get()), 25);
    EXPECT_EQ(getEntType(std::make_unique<KdDbViewport>().get()), 201);
    EXPECT_EQ(getEntType(std::make_unique<KdDbLayerTableRecord>().get()), 0);
}

} // namespace
