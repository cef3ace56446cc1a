// Every field of an object is read, copied and written: a copy, which has no text of its own, is
// written with all that its original's text says, each field behind the class marker that it
// belongs to. The prefix of the markers is the drawing's own.

#include "dxf_samples.h"

#include <regex>

namespace tests::dxf {
namespace {

/// Records that the entities name.
constexpr std::string_view kTables = R"(0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1021; 0 ENDSEC
0 SECTION; 2 TABLES
0 TABLE; 2 LTYPE; 5 1
0 LTYPE; 5 11; 2 DASHED; 70 0; 3; 72 65; 73 0; 40 0.0; 0 ENDTAB
0 TABLE; 2 LAYER; 5 2
0 LAYER; 5 12; 2 Walls; 70 0; 62 7; 6 DASHED; 0 ENDTAB
0 TABLE; 2 STYLE; 5 3
0 STYLE; 5 13; 2 Notes; 70 0; 40 0.0; 41 1.0; 50 0.0; 71 0; 3 txt; 4; 0 ENDTAB
0 TABLE; 2 DIMSTYLE; 5 4
0 DIMSTYLE; 105 14; 2 House; 70 0; 0 ENDTAB
0 ENDSEC
0 SECTION; 2 BLOCKS
0 BLOCK; 5 21; 8 0; 2 Part; 70 0; 10 0.0; 20 0.0; 30 0.0; 0 ENDBLK; 5 22; 8 0
0 BLOCK; 5 23; 8 0; 2 *D1; 70 1; 10 0.0; 20 0.0; 30 0.0; 0 ENDBLK; 5 24; 8 0
0 ENDSEC
0 SECTION; 2 ENTITIES
)";

/// Entities with their parts, an empty line between two. No field has its default, so that each is
/// written; what many have stands in kShared.
constexpr std::string_view kEntities =
    R"(0 LINE; @E; 100 XyLine; 39 1; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6; 210 0; 220 1; 230 0; @X

0 CIRCLE; @E; 100 XyCircle; 39 1; 10 1; 20 2; 30 3; 40 4; 210 0; 220 1; 230 0; @X

0 ARC; @E; 100 XyCircle; 39 1; 10 1; 20 2; 30 3; 40 4; 210 0; 220 1; 230 0; 100 XyArc; 50 30; 51 90
@X

0 ELLIPSE; @E; 100 XyEllipse; 10 1; 20 2; 30 3; 11 4; 21 0; 31 0; 210 0; 220 1; 230 0
40 0.5; 41 1; 42 2; @X

0 SPLINE; @E; 100 XySpline; 210 0; 220 1; 230 0; 70 8; 71 1; 72 4; 73 2; 74 2
42 0.5; 43 0.6; 44 0.7; 12 1; 22 0; 32 0; 13 0; 23 1; 33 0; 40 0; 40 0; 40 1; 40 1; 41 1; 41 2
10 1; 20 2; 30 3; 10 4; 20 5; 30 6; 11 1; 21 2; 31 3; 11 4; 21 5; 31 6; @X

0 XLINE; @E; 100 XyXline; 10 1; 20 2; 30 3; 11 0; 21 0; 31 -1; @X

0 RAY; @E; 100 XyRay; 10 1; 20 2; 30 3; 11 0; 21 0; 31 -1; @X

0 LEADER; @E; 100 XyLeader; 3 Standard; 71 1; 72 0; 73 0; 74 1; 75 1; 40 2; 41 3; 76 2
10 1; 20 2; 30 3; 10 4; 20 5; 30 6; 211 0; 221 1; 231 0; 210 0; 220 0; 230 -1
212 1; 222 2; 232 3; 213 4; 223 5; 233 6; @X

0 SOLID; @E; 100 XyTrace; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6; 12 7; 22 8; 32 9; 13 1; 23 3; 33 5
39 1; 210 0; 220 1; 230 0; @X

0 TRACE; @E; 100 XyTrace; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6; 12 7; 22 8; 32 9; 13 1; 23 3; 33 5
39 1; 210 0; 220 1; 230 0; @X

0 3DFACE; @E; 100 XyFace; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6; 12 7; 22 8; 32 9; 13 1; 23 3; 33 5
70 5; @X

0 POINT; @E; 100 XyPoint; 10 1; 20 2; 30 3; 39 1; 210 0; 220 1; 230 0; @X

0 LWPOLYLINE; @E; 100 XyPolyline; 90 2; 70 1; 43 1; 38 2; 39 3
10 1; 20 2; 40 3; 41 4; 42 0.5; 10 5; 20 6; 210 0; 220 1; 230 0; @X

0 POLYLINE; @E; 100 Xy2dPolyline; 66 1; 10 0; 20 0; 30 2; 39 1; 70 1; 40 3; 41 4; 75 5
210 0; 220 1; 230 0; @X
0 VERTEX; 5 A1; 330 A0; 100 XyEntity; 8 Walls; 100 XyVertex; 100 Xy2dVertex
10 1; 20 2; 30 3; 40 4; 41 5; 42 0.5; 70 16; 50 45
0 SEQEND; 5 A2; 330 A0; 100 XyEntity; 8 0

0 TEXT; @E; @T; 100 XyText; 73 2; @X

0 ATTDEF; @E; @T; 100 XyAttributeDefinition; 74 2; 3 which?; 2 TAG; 70 8; 73 12; @X

0 MTEXT; @E; 100 XyMText; 10 1; 20 2; 30 3; 40 2.5; 41 30; 71 5; 72 3; 1 text; 7 Notes
210 0; 220 1; 230 0; 11 0; 21 0; 31 1; 73 2; 44 1.5; @X

0 INSERT; @E; 100 XyBlockReference; 66 1; 2 Part; 10 1; 20 2; 30 3; 41 4; 42 5; 43 6; 50 30
70 2; 71 3; 44 7; 45 8; 210 0; 220 1; 230 0; @X
0 ATTRIB; 5 A1; 330 A0; 100 XyEntity; 8 Walls; 100 XyText; 10 1; 20 2; 30 3; 40 2.5; 1 value
100 XyAttribute; 2 TAG; 70 8; 73 12
0 SEQEND; 5 A2; 330 A0; 100 XyEntity; 8 0

0 DIMENSION; @E; @D; 70 160; @M; 100 XyAlignedDimension; 13 1; 23 2; 33 3; 14 4; 24 5; 34 6
52 30; 50 60; 100 XyRotatedDimension; @X

0 DIMENSION; @E; @D; 70 161; @M; 100 XyAlignedDimension; 13 1; 23 2; 33 3; 14 4; 24 5; 34 6
52 30; @X

0 DIMENSION; @E; @D; 70 162; @M; 100 Xy2LineAngularDimension; 13 1; 23 2; 33 3; 14 4; 24 5; 34 6
15 7; 25 8; 35 1; 16 2; 26 2; 36 2; @X

0 DIMENSION; @E; @D; 70 163; @M; 100 XyDiametricDimension; 15 4; 25 5; 35 6; 40 2; @X

0 DIMENSION; @E; @D; 70 164; @M; 100 XyRadialDimension; 15 4; 25 5; 35 6; 40 2; @X

0 DIMENSION; @E; @D; 70 165; @M; 100 Xy3PointAngularDimension; 13 1; 23 2; 33 3; 14 4; 24 5; 34 6
15 7; 25 8; 35 1; @X

0 VIEWPORT; @E; 100 XyViewport; 10 1; 20 2; 30 3; 40 4; 41 5; 68 2; 69 3; 12 1; 22 2
16 0; 26 1; 36 1; 17 1; 27 2; 37 3; 42 35; 45 9; 51 30; 90 1; @X)";

/// Table records, each behind what it names.
constexpr std::string_view kRecords =
    R"(0 APPID; 5 A0; @R; 100 XyRegAppTableRecord; 2 Original; 70 64

0 LTYPE; 5 A0; @R; 100 XyLinetypeTableRecord; 2 Original; 70 64; 3 _ _; 72 65; 73 2; 40 0.75
49 0.5; 49 -0.25

0 TABLE; 2 LTYPE; 0 LTYPE; 2 Dots; 0 ENDTAB
0 LAYER; 5 A0; @R; 100 XyLayerTableRecord; 2 Original; 70 7; 62 -3; 6 Dots; 290 0; 370 25

0 STYLE; 5 A0; @R; 100 XyTextStyleTableRecord; 2 Original; 70 4; 40 2; 41 0.8; 50 15; 71 2; 42 3
3 txt; 4 big

0 UCS; 5 A0; @R; 100 XyUCSTableRecord; 2 Original; 70 64; 10 1; 20 2; 30 3; 11 0; 21 1; 31 0
12 0; 22 0; 32 1

0 TABLE; 2 UCS; 0 UCS; 5 A7; 2 Named; 0 ENDTAB
0 VPORT; 5 A0; @R; 100 XyViewportTableRecord; 2 Original; 70 64; 12 1; 22 2; 16 0; 26 1; 36 1
17 1; 27 2; 37 3; 40 4; 41 1.5; 42 35; 51 30; 110 1; 120 2; 130 3; 111 0; 121 1; 131 0
112 0; 122 0; 132 1; 345 A7

0 TABLE; 2 STYLE; 0 STYLE; 5 A7; 2 Notes; 0 ENDTAB; 0 TABLE; 2 BLOCK_RECORD
0 BLOCK_RECORD; 5 A8; 2 A; 0 BLOCK_RECORD; 5 A9; 2 B; 0 BLOCK_RECORD; 5 AA; 2 C
0 BLOCK_RECORD; 5 AB; 2 D; 0 ENDTAB
0 DIMSTYLE; 105 A0; @R; 100 XyDimStyleTableRecord; 2 Original; 70 64; 3 <> m; 4 <> i; 5 T; 6 L; 7 R
40 2; 41 3; 42 4; 43 5; 44 6; 45 7; 46 8; 47 9; 48 10; 140 1; 141 2; 142 3; 143 4; 144 5; 145 6
146 7; 147 8; 148 9; 71 1; 72 1; 73 0; 74 0; 75 1; 76 1; 77 2; 78 3; 79 1; 170 1; 171 3; 172 1
173 1; 174 1; 175 1; 176 1; 177 2; 178 3; 179 4; 270 3; 271 5; 272 6; 273 3; 274 4; 275 1; 276 2
277 3; 278 44; 279 1; 280 2; 281 1; 282 1; 283 2; 284 3; 285 4; 286 5; 287 2; 288 1; 289 1
340 A7; 341 A8; 342 A9; 343 AA; 344 AB; 371 25; 372 35)";

/// What many objects have: the fields of entities, texts, dimensions before and behind their flags,
/// extended data, and the begin of records.
constexpr std::pair<std::string_view, std::string_view> kShared[] = {
    {"@E", "5 A0; 330 20; 100 XyEntity; 8 Walls; 6 DASHED; 62 3; 420 65280\n370 25; 48 2; 60 1"},
    {"@T", "100 XyText; 39 1; 10 1; 20 2; 30 3; 40 2.5; 1 text; 50 30; 41 0.8; 51 15\n"
           "7 Notes; 71 2; 72 1; 11 4; 21 5; 31 6; 210 0; 220 1; 230 0"},
    {"@D", "100 XyDimension; 2 *D1; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6"},
    {"@M", "1 <>; 71 6; 42 7; 53 30; 51 15; 3 House; 210 0; 220 1; 230 0"},
    {"@X", "1001 ACAD; 1000 Ж; 1004 0AFF; 1010 1; 1020 2; 1030 3; 1040 0.5; 1071 -70000"},
    {"@R", "330 1; 100 XySymbolTableRecord"},
};

/// The objects that are parted by empty lines, with all that they have.
std::vector<std::string> each(std::string_view notes)
{
    std::vector<std::string> objects;
    while (!notes.empty()) {
        const std::size_t end = std::min(notes.find("\n\n"), notes.size());
        objects.emplace_back(notes.substr(0, end));
        for (const auto& [mark, fields] : kShared)
            if (const std::size_t place = objects.back().find(mark); place != notes.npos)
                objects.back().replace(place, mark.size(), fields);
        notes.remove_prefix(std::min(end + 2, notes.size()));
    }
    return objects;
}

/// The text without what a copy has of its own: handles, the block of a dimension's graphics and
/// the distance that was measured for them.
std::string withoutIdentity(const std::string& text)
{
    static const std::regex identity(
        "(  5|105|330)\n[0-9A-F]+\n|  2\n\\*D[0-9]+\n| 42\n[^\n]*\n(?= 53\n)");
    return std::regex_replace(text, identity, "");
}

/// What stands behind a text up to the end of its section or table.
std::string behind(const std::string& text, const std::string& original)
{
    const std::size_t place = text.find(original);
    EXPECT_NE(place, std::string::npos) << text;
    const std::size_t start = place + original.size();
    return text.substr(start, text.find("  0\nEND", start) - start);
}

class DrawingCopies : public HostTest {};

TEST_F(DrawingCopies, OfEntitiesAreWrittenWithAllThatTheirOriginalsSay)
{
    for (const std::string& notes : each(kEntities)) {
        const std::string original = file(notes);
        const auto drawing = readToWorkOn(file(kTables) + original + file("0 ENDSEC\n0 EOF\n"));
        addEntity(static_cast<KdDbEntity*>(find<KdDbEntity>(*drawing, 0xA0)->clone()));
        EXPECT_EQ(withoutIdentity(behind(korra::drawingText(*drawing), original)),
                  withoutIdentity(original));
    }
}

TEST_F(DrawingCopies, OfRecordsAreWrittenWithAllThatTheirOriginalsSay)
{
    for (const std::string& notes : each(kRecords)) {
        const std::size_t begin = notes.find_last_of('\n', notes.find(" A0;")) + 1;
        const std::string type = notes.substr(begin + 2, notes.find(';', begin) - begin - 2);
        const std::string original = file(notes.substr(begin));
        const auto drawing = readWhole(file("0 SECTION; 2 TABLES\n" + notes.substr(0, begin) +
                                            "0 TABLE; 2 " + type + "; 5 1; 70 1\n") +
                                       original + file("0 ENDTAB; 0 ENDSEC; 0 EOF\n"));
        const auto& record = *find<KdDbSymbolTableRecord>(*drawing, 0xA0);
        auto* copy = static_cast<KdDbSymbolTableRecord*>(record.clone());
        EXPECT_EQ(copy->setName(L"Copy"), Kdapi::eOk);
        KdDbObjectId id;
        EXPECT_EQ(Open<KdDbSymbolTable>(record.ownerId())->add(id, copy), Kdapi::eOk);
        copy->close();
        EXPECT_EQ(withoutIdentity(
                      replaced(behind(korra::drawingText(*drawing), original), "Copy", "Original")),
                  withoutIdentity(original));
    }
}

} // namespace
} // namespace tests::dxf
