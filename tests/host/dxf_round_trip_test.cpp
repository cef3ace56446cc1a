// What reading and writing keep of a drawing file, and what a change changes of it.

#include "dxf_samples.h"

#include "form/numbers.h"
#include "objects/contents.h"

#include <regex>
#include <tuple>

using korra::drawingText;
using korra::ObjectAccess;

namespace tests::dxf {
namespace {

class DrawingRoundTrip : public HostTest {};

/// The early sample; the name in it is Chinese, and a second byte of it a backslash.
std::string earlySample()
{
    static const std::regex name("@NAME@");
    return std::regex_replace(replaced(file(kEarlySample), "ANSI_1251", "ANSI_936"), name,
                              "\xD6\xD0\x81\x5C");
}

std::string withCrLf(const std::string& text)
{
    static const std::regex lineEnd("\n");
    return std::regex_replace(text, lineEnd, "\r\n");
}

TEST_F(DrawingRoundTrip, KeepsAWholeDrawingByteForByte)
{
    const std::string modern = file(kModernSample);
    const std::string tablesLast =
        file("0 SECTION; 2 BLOCKS; 0 BLOCK; 5 B; 2 Part; 0 LINE; 5 C; 330 A; 0 ENDBLK; 5 D\n"
             "0 BLOCK; 2 Old; 5 E; 0 ENDBLK; 0 ENDSEC\n"
             "0 SECTION; 2 TABLES; 0 TABLE; 2 OTHERS; 5 2; 70 1; 0 OTHER; 5 3; 0 ENDTAB\n"
             "0 TABLE; 2 BLOCK_RECORD; 5 1; 0 BLOCK_RECORD; 5 A; 2 PART\n"
             "0 BLOCK_RECORD; 5 E; 2 Old; 0 ENDTAB; 0 ENDSEC; 0 EOF");
    for (const std::string& text : {modern, withCrLf(modern), "\xEF\xBB\xBF" + modern, tablesLast})
        EXPECT_EQ(drawingText(*readWhole(text)), text);
}

TEST_F(DrawingRoundTrip, GivesObjectsOfAnEarlyDrawingTheHandlesTheyLack)
{
    static const std::regex handle("  5\n.*\n");
    const std::string written = drawingText(*readWhole(earlySample()));
    EXPECT_EQ(std::regex_replace(written, handle, ""), earlySample());
    EXPECT_EQ(drawingText(*readWhole(written)), written);

    // Behind the greatest, in the order of the file.
    EXPECT_EQ(drawingText(*readWhole(withEntities("0 LINE; 8 0\n0 LINE; 8 0; 5 A\n0 LINE; 8 0"))),
              withEntities("0 LINE; 5 B; 8 0\n0 LINE; 8 0; 5 A\n0 LINE; 5 C; 8 0"));
}

TEST_F(DrawingRoundTrip, WhatIsOddIsWrittenOnceAndThenStays)
{
    const std::string modern = file(kModernSample);
    for (const std::string& odd : {
             withEntities("0 LINE; 5 0"), // a handle that is none
             replaced(modern, file("330 1; 2 Винт"), file("330 1; 2 Гайка")),
             replaced(modern, "BLOCK_RECORD", "SOMETHING"), // the blocks have no records
         }) {
        const auto first = readWhole(odd);
        const std::string written = drawingText(*first);
        const auto second = readWhole(written);
        EXPECT_EQ(drawingText(*second), written);
        for (const korra::ObjectSlot* slot : first->contents().slots) {
            const std::uint64_t handle = slot->handle.value();
            const bool isFromFile =
                KdDbEntity::cast(slot->object) && !ObjectAccess::source(*slot->object).empty();
            EXPECT_TRUE(!isFromFile || find<KdDbEntity>(*second, handle)) << "lost " << handle;
        }
    }
}

/// The text of a drawing after a change: the same, whatever its lines end with.
template <class Change>
std::string changed(const std::string& text, Change change)
{
    const auto database = readWhole(text);
    const auto withOtherEnds = readWhole(withCrLf(text));
    change(*database);
    change(*withOtherEnds);
    const std::string written = drawingText(*database);
    EXPECT_EQ(drawingText(*withOtherEnds), withCrLf(written));
    return written;
}

/// Changes the object of a handle, and wants no other text of the modern sample to be changed.
template <class T, class Change>
void expectReplaced(std::uint64_t handle, const Retags& retags, Change change)
{
    const std::string sample = file(kModernSample);
    EXPECT_EQ(
        changed(sample, [&](const auto& drawing) { changeObject<T>(drawing, handle, change); }),
        retagged(sample, retags));
}

std::vector<korra::TypedValue>& extendedData(KdDbObject& object)
{
    ObjectAccess::willChange(object);
    return ObjectAccess::extras(object).xData;
}

TEST_F(DrawingRoundTrip, AChangeChangesTheTextOfItsFieldAlone)
{
    expectReplaced<KdDbLine>(0x50, {{"11 12.0; 21 0.0", "11 12.0; 21 0.25"}}, [](auto& line) {
        line.setEndPoint({12.0, 0.25, 0.0});
    });
    expectReplaced<KdDbLine>(0x50, {{"8 Граница; 48 2.50", "8 Граница; 62 1; 48 2.50"}},
                             [](auto& line) { line.setColor(colorOf(1)); });
    expectReplaced<KdDbText>(0x59, {{"1 значение", "1 новое; 50 90"}}, [](auto& text) {
        text.setTextString(L"новое");
        text.setRotation(1.5707963267948966);
    });
    expectReplaced<KdDbMText>(0x56, {{"40 2.5; 41 0.0", "40 3; 41 0.0"}},
                              [](auto& text) { text.setTextHeight(3.0); });
    expectReplaced<KdDbLine>(0x46, {{"31 1.0; 0 ENDBLK", "31 2; 0 ENDBLK"}}, [](auto& line) {
        const KdDbLine other({0, 0, 0}, {1, 1, 2});
        EXPECT_EQ(line.copyFrom(&other), Kdapi::eOk);
    });
    const std::string piece(250, 'a'); // as long as pieces are
    expectReplaced<KdDbMText>(0x56,
                              {{"3 первая ; 1 вторая\\Pстрока", "3 " + piece + "; 1 " + piece}},
                              [](auto& text) { text.setContents(std::wstring(500, 'a').c_str()); });
}

const std::string kRed = "62      1; 420  16711680"; // of a layer

TEST_F(DrawingRoundTrip, AColorKeepsOrLosesItsRedGreenAndBlue)
{
    using Layer = KdDbLayerTableRecord;
    expectReplaced<Layer>(0x11, {{kRed, "62 3; 420 65280"}}, [](auto& layer) {
        KdCmColor green;
        green.setRGB(0, 255, 0);
        layer.setColor(green);
    });
    expectReplaced<Layer>(0x11, {{kRed, "62 5"}}, [](auto& layer) { layer.setColor(colorOf(5)); });
    expectReplaced<Layer>(0x11, {{kRed, "62 -1; 420  16711680"}},
                          [](auto& layer) { layer.setIsOff(true); });
}

TEST_F(DrawingRoundTrip, ANegativeColorOfALayerIsANumberOfItsOwnWhetherTheLayerIsOffOrNot)
{
    // The index, whether the layer is off, how both are noted and whether they are written so.
    const std::tuple<std::uint16_t, bool, const char*, bool> cases[] = {
        {65533, false, "62 32765", true},
        {65535, false, "62 32767", true},
        {65535, true, "62 -32767", true},
        {65533, true, "62 -65533", false}};
    for (const auto& [index, off, noted, isWritten] : cases) {
        const auto database = readWhole(replaced(file(kModernSample), file(kRed), file(noted)));
        const auto* const read = find<KdDbLayerTableRecord>(*database, 0x11);
        EXPECT_TRUE(read->color().colorIndex() == index && read->isOff() == off) << noted;
        if (isWritten)
            expectReplaced<KdDbLayerTableRecord>(0x11, {{kRed, noted}}, [&](auto& layer) {
                layer.setColor(colorOf(index));
                layer.setIsOff(off);
            });
    }
}

TEST_F(DrawingRoundTrip, ListsGrowAndShrink)
{
    expectReplaced<KdDbPolyline>(
        0x51,
        {{"90         3", "90 4"}, {"20 3.0; 210 0.0", "20 3.0; 10 1; 20 2; 42 0.25; 210 0.0"}},
        [](auto& polyline) { polyline.addVertexAt(3, KdGePoint2d(1.0, 2.0), 0.25); });
    expectReplaced<KdDbDictionary>(0xC, {{"3 Mine; 350 61", ""}}, [](auto& dictionary) {
        ObjectAccess::willChange(dictionary);
        ObjectAccess::entries(dictionary).pop_back();
    });
    expectReplaced<KdDbLine>(
        0x50, {{"1040 0.6250", "1040 0.75"}, {"1071 -70000", "1071 -70000; 1070 5"}},
        [](auto& line) {
            auto& data = extendedData(line);
            std::ranges::find(data, 1040, &korra::TypedValue::code)->value = 0.75;
            data.push_back({1070, static_cast<short>(5)});
        });
    expectReplaced<KdDbLine>(0x50, {{"1004 0aFF; 1071 -70000", ""}},
                             [](auto& line) { extendedData(line).resize(10); });
}

TEST_F(DrawingRoundTrip, SortHandlesThatStayKeepTheirText)
{
    const std::string was = file("331 52; 5 050; 331 50; 5 54");
    const std::string before =
        replaced(file(kModernSample), file("331 50; 5 52; 331 52; 5 50"), was);
    const std::string text = changed(before, [](const KdDbDatabase& database) {
        changeObject<KdDbSortentsTable>(database, 0x71, [&](auto& table) {
            table.setRelativeDrawOrder(arrayOf({find<KdDbEntity>(database, 0x56)->objectId(),
                                                find<KdDbEntity>(database, 0x50)->objectId()}));
        });
    });
    const std::string is = file("331 52; 5 050; 331 53; 5 52; 331 56; 5 53; 331 50; 5 56");
    EXPECT_EQ(text, replaced(before, was, is));
}

TEST_F(DrawingRoundTrip, ErasedObjectsAreGoneWithWhatTheyOwn)
{
    const std::string text = changed(file(kModernSample), [](const KdDbDatabase& database) {
        changeObject<KdDbObject>(database, 0x58, [](auto& reference) { reference.erase(); });
    });
    for (const char* gone : {"INSERT", "ATTRIB", "  5\n60\n", "  1\nnote\n"})
        EXPECT_EQ(text.find(gone), text.npos) << gone;
    EXPECT_NE(find<KdDbObject>(*readWhole(text), 0x57), nullptr);
}

TEST_F(DrawingRoundTrip, ARenamedRecordIsNamedAnewByAllThatNameIt)
{
    const std::string before = file(kModernSample);
    const std::string text = changed(before, [](const KdDbDatabase& database) {
        for (const std::uint64_t handle : {0x11, 0x22})
            changeObject<KdDbSymbolTableRecord>(database, handle, [](auto& record) {
                EXPECT_EQ(record.setName(L"New"), Kdapi::eOk);
            });
    });
    EXPECT_EQ(text, std::regex_replace(before, std::regex("Граница|Винт"), "New"));
}

TEST_F(DrawingRoundTrip, NewObjectsComeBehindTheOldOnes)
{
    const std::string text = file(kModernSample);
    const auto database = readToWorkOn(text);
    auto* const line = new KdDbLine({1, 2, 3}, {4, 5, 6});
    line->setLayer(database->clayer());
    addEntityToBlock(L"Винт", line);

    const std::uint64_t handle = line->objectId().handle().value();
    EXPECT_GE(handle, 0xFFFu);
    const std::string seed = "9 $HANDSEED; 5 ";
    const std::string added =
        "0 LINE; 5 " + korra::formatHandle(handle) +
        "; 330 22; 100 Entity; 8 0; 100 Line; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6; ";
    EXPECT_EQ(
        drawingText(*database),
        replaced(replaced(text, file(seed + "FFF"), file(seed + korra::formatHandle(handle + 1))),
                 file("0 ENDBLK; 5 45"), file(added + "0 ENDBLK; 5 45")));
}

TEST_F(DrawingRoundTrip, AnEarlyDrawingGrowsByWhatIsAdded)
{
    const std::string early = file("0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1012; 0 ENDSEC\n"
                                   "0 SECTION; 2 ENTITIES; 0 LINE; 5 A; 8 0; 0 ENDSEC; 0 EOF");
    const std::string text = changed(early, [](const auto& database) {
        changeObject<KdDbLine>(database, 0xA, [](auto& line) { line.createExtensionDictionary(); });
        auto* const sheet = database.contents().block(L"*Paper_Space");
        auto* const point = new KdDbPoint({1, 2, 3});
        point->setLayer(database.clayer());
        EXPECT_EQ(Open<KdDbBlockTableRecord>(sheet->objectId())->appendKdDbEntity(point),
                  Kdapi::eOk);
        point->close();
    });
    const auto again = readWhole(text);
    const KdDbObjectId dictionary = find<KdDbLine>(*again, 0xA)->extensionDictionary();
    EXPECT_THAT(text, HasSubstr(file("0 LINE; 5 A; 102 {ACAD_XDICTIONARY; 360 " +
                                     traceForm(dictionary) + "; 102 }; 8 0")));
    EXPECT_THAT(text, HasSubstr(file("0 DICTIONARY; 5 " + traceForm(dictionary) + "; 330 A")));
    EXPECT_THAT(text, HasSubstr(file("0 POINT; 67 1")));
    EXPECT_FALSE(again->layoutDictionaryId().isNull());
    EXPECT_EQ(drawingText(*again), text);
}

TEST_F(DrawingRoundTrip, HeaderVariablesKeepTheirText)
{
    const std::string text = changed(earlySample(), [](const KdDbDatabase& database) {
        korra::DrawingHeader& header = database.contents().header;
        header.setReal("$LTSCALE", 2.5, 40);
        header.setPoint("$EXTMIN", {0.0, -2.0, 0.0});
        header.setInteger("$ORTHOMODE", 1, 70);
    });
    EXPECT_THAT(text, HasSubstr(file("9 $LTSCALE; 40   2.50 \n"
                                     "9 $EXTMIN; 10 0.000000; 20 -2; 30 0; 9 $ORTHOMODE; 70 1")));
    EXPECT_THAT(text, HasSubstr(file("2 HEADER; 999 about the version")));
}

} // namespace
} // namespace tests::dxf
