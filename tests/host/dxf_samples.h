#pragma once

#include "objects/contents.h"
#include "support/dxf_notes.h"
#include "support/room_test.h"

#include <memory>
#include <string>
#include <string_view>

/// Drawings in the exchange format, written by hand, and ways to read them.
namespace tests::dxf {

/// A drawing of an early version: no handles, no subclasses, a code page. @NAME@ stands for a text
/// in that code page.
inline constexpr std::string_view kEarlySample = R"(999 made by hand
0 SECTION; 2 HEADER
999 about the version
9 $ACADVER; 1 AC1009
9 $DWGCODEPAGE; 3 ANSI_1251
9 $LTSCALE; 40   2.50 
9 $EXTMIN; 10 0.000000; 20 -1.50; 0 ENDSEC
0 SECTION; 2 TABLES; 0 TABLE; 2 LTYPE; 70      1
0 LTYPE; 2 DASHED; 70      0; 3 _ _ _; 72     65; 73      2; 40 0.75; 49 0.50
49 -0.25; 0 ENDTAB
0 TABLE; 2 VIEW; 70      1
0 VIEW; 2 FRONT; 40 10.0; 0 ENDTAB
0 TABLE; 2 LAYER; 70      2
0 LAYER; 2 0; 70      0; 62      7; 6 CONTINUOUS
0 LAYER; 2 @NAME@; 70      4; 62     -3; 6 DASHED; 0 ENDTAB; 0 ENDSEC
0 SECTION; 2 BLOCKS
0 BLOCK; 8 0; 2 BOLT; 70      2; 10 1.0; 20 2.0; 3 BOLT
0 CIRCLE; 8 0; 10 0.0; 20 0.0; 40 2.50
0 ATTDEF; 8 0; 10 0.0; 20 0.0; 40 1.0; 1 M6; 3 size?; 2 SIZE; 70      0; 0 ENDBLK; 8 0; 0 ENDSEC
0 SECTION; 2 ENTITIES
0 LINE; 8 @NAME@; 10 0.0; 20 0.0; 11 1e1; 21 +5.000
0 POLYLINE; 8 0; 66      1; 10 0.0; 20 0.0; 30 4.0; 70      1
0 VERTEX; 8 0; 10 0.0; 20 0.0; 42 1.0
0 VERTEX; 8 0; 10 1.0; 20 0.0; 0 SEQEND; 8 0
999 between two entities
0 INSERT; 8 0; 66      1; 2 bolt; 10 7.0; 20 8.0; 41 2.0; 50 90.0
0 ATTRIB; 8 0; 10 7.0; 20 8.0; 40 1.0; 1 @NAME@; 2 SIZE; 70      0; 0 SEQEND; 8 0
0 SHAPE; 8 0; 2 ARROW; 10 nobody asks
0 TEXT; 67      1; 8 0; 10 3.0; 20 4.0; 40 2.0; 1   blanks kept  
0 ENDSEC; 0 EOF
)";

/// A drawing with handles, subclass markers, groups, extended data, a layout and unknown parts.
inline constexpr std::string_view kModernSample = R"(0 SECTION; 2 HEADER
9 $ACADVER; 1 AC1032
9 $HANDSEED; 5 FFF; 0 ENDSEC
0 SECTION; 2 CLASSES
0 CLASS; 1 SOMETHING; 90         0; 0 ENDSEC
0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 5 2; 330 0; 100 Table; 70      2
0 LAYER; 5 10; 330 2; 100 Record; 100 Layer; 2 0; 70      0; 62      7; 6 Continuous
370     -3
0 LAYER; 5 11; 102 {REACTORS; 330 4711; 102 }; 330 2; 100 Record; 100 Layer; 2 Граница
70      0; 62      1; 420  16711680; 6 Continuous; 0 ENDTAB
0 TABLE; 2 BLOCK_RECORD; 5 1; 100 Table; 70      3
0 BLOCK_RECORD; 5 20; 330 1; 100 Record; 100 Block; 2 *Model_Space; 102 {ACAD_XDICTIONARY; 360 70
102 }; 340 30; 70      6; 280      1
0 BLOCK_RECORD; 5 21; 330 1; 2 *Paper_Space; 340 31
0 BLOCK_RECORD; 5 22; 330 1; 2 Винт; 340 0; 70      4; 0 ENDTAB; 0 ENDSEC
0 SECTION; 2 BLOCKS
0 BLOCK; 5 40; 330 20; 8 0; 2 *Model_Space; 70      0; 10 0.0; 20 0.0; 30 0.0
3 *Model_Space; 1; 0 ENDBLK; 5 41; 8 0
0 BLOCK; 5 44; 330 22; 8 0; 2 Винт; 70      2; 10 1.0; 20 0.0; 30 0.0; 3 Винт; 1
0 LINE; 5 46; 330 22; 8 0; 10 0.0; 20 0.0; 30 0.0; 11 1.0; 21 1.0; 31 1.0; 0 ENDBLK; 5 45; 8 0
0 BLOCK; 5 42; 8 0; 2 *Paper_Space; 70      0; 10 0.0; 20 0.0; 30 0.0; 3 *Paper_Space
0 ENDBLK; 5 43; 8 0; 0 ENDSEC
0 SECTION; 2 ENTITIES
0 LINE; 5 50; 330 20; 100 Entity; 8 Граница; 48 2.50; 100 Line; 10 0.10; 20 0.2
30 0.0; 11 12.0; 21 0.0; 31 -0.0; 1001 ACAD; 1000 DSTYLE; 1002 {; 1070    147
1040 0.6250; 1070    271; 1070      3; 1002 }; 1001 OTHER; 1010 1.00; 1020 2.00
1030 3.00; 1004 0aFF; 1071 -70000
0 LWPOLYLINE; 5 51; 330 20; 100 Entity; 8 0; 100 Polyline; 90         3; 70      1
43 0.0; 10 0.0; 20 0.0; 91 7; 10 4.0; 20 0.0; 42 0.5; 10 4.0; 20 3.0; 210 0.0; 220 0.0
230 -1.0
0 HATCH; 5 52; 330 20; 100 Entity; 8 Граница; 100 Hatch; 10 1.0; 97 1; 330 51
0 POLYLINE; 5 53; 100 Entity; 8 0; 66      1; 70     16
0 VERTEX; 5 54; 10 0.0; 1001 MESH; 1070 1; 0 SEQEND; 5 55; 8 0
0 MTEXT; 5 56; 330 20; 100 Entity; 8 0; 10 9.0; 20 9.0; 100 MText; 10 1.0; 20 1.0; 30 0.0; 40 2.5
41 0.0; 71      5; 72      1; 3 первая ; 1 вторая\Pстрока; 73      1; 44 1.0
101 Embedded Object; 70      1; 10 1.0; 1 embedded
0 VIEWPORT; 5 57; 330 21; 100 Entity; 67      1; 8 0; 100 Viewport; 10 100.0; 20 50.0
30 0.0; 40 200.0; 41 100.0; 68      1; 69      1; 12 5.0; 22 6.0; 45 80.0; 51 45.0
0 INSERT; 5 58; 330 20; 102 {ACAD_XDICTIONARY; 360 60; 102 }; 100 Entity; 8 0
100 Reference; 66      1; 2 Винт; 10 5.0; 20 5.0; 30 0.0
0 ATTRIB; 5 59; 330 58; 100 Entity; 8 0; 100 Text; 10 5.0; 20 5.0; 30 0.0; 40 2.5
1 значение; 100 Attribute; 2 TAG; 70      0; 0 SEQEND; 5 5A; 330 58; 8 0; 0 ENDSEC
0 SECTION; 2 OBJECTS
0 DICTIONARY; 5 C; 330 0; 100 Dictionary; 281      1; 3 ACAD_LAYOUT; 350 1A; 3 Mine
350 61
0 DICTIONARY; 5 1A; 330 C; 100 Dictionary; 281      1; 3 Model; 350 30; 3 Blatt 1
350 31
0 LAYOUT; 5 30; 330 1A; 100 Settings; 1 page setup; 70   1024; 100 Layout; 1 Model
70      1; 71      0; 330 20
0 LAYOUT; 5 31; 330 1A; 100 Settings; 1; 70    688; 100 Layout; 1 Blatt 1; 70      1
71      1; 330 21
0 DICTIONARY; 5 60; 330 58; 100 Dictionary; 280      1; 281      1; 3 NOTE; 360 62
0 DICTIONARY; 5 70; 330 20; 3 ACAD_SORTENTS; 360 71
0 SORTENTSTABLE; 5 71; 330 70; 330 20; 331 50; 5 52; 331 52; 5 50
0 XRECORD; 5 61; 330 C; 100 XRecord; 280      1; 102 { not a group; 1 free; 70 99999
0 XRECORD; 5 62; 330 60; 1 note; 0 ENDSEC
0 SECTION; 2 THUMBNAILIMAGE; 90         4; 310 00112233; 0 ENDSEC
999 near the end
0 EOF
)";

/// A database with the drawing in it; a failure to read fails the test.
inline std::unique_ptr<KdDbDatabase> readWhole(const std::string& text)
{
    auto database = std::make_unique<KdDbDatabase>(false);
    const korra::FileOutcome outcome = korra::readDrawingText(*database, text, "sample.dxf");
    EXPECT_TRUE(outcome.done) << outcome.message;
    return database;
}

/// The same, as the drawing that new objects go to.
inline std::unique_ptr<KdDbDatabase> readToWorkOn(const std::string& text)
{
    auto database = readWhole(text);
    kddbHostApplicationServices()->setWorkingDatabase(database.get());
    return database;
}

/// The object of a handle; null when there is none of the class.
template <class T>
T* find(const KdDbDatabase& database, std::uint64_t handle)
{
    const korra::ObjectSlot* const slot = database.contents().byHandle.find(handle);
    return slot ? T::cast(slot->object) : nullptr;
}

/// Opens the object of a handle for writing while `change` runs.
template <class T, class Change>
void changeObject(const KdDbDatabase& database, std::uint64_t handle, Change change)
{
    ASSERT_NE(find<T>(database, handle), nullptr);
    change(*Open<T>(find<T>(database, handle)->objectId()));
}

/// What the save of a drawing is refused with; empty when it is not refused.
inline std::string refusedSave(const KdDbDatabase& database)
{
    try {
        korra::drawingText(database);
        return "";
    } catch (const korra::UnsavableDrawing& refusal) {
        return refusal.what();
    }
}

} // namespace tests::dxf
