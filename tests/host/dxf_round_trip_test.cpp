// What reading and writing keep of a drawing file, and what a change changes of it.

#include "dxf_samples.h"

#include "db/contents.h"
#include "dxf/numbers.h"
#include "support/host_test.h"

#include "platform/text.h"

#include <sstream>

using korra::drawingText;
using korra::ObjectAccess;
using korra::TableKind;

namespace tests::dxf {
namespace {

class DrawingRoundTrip : public HostTest {};

std::string earlySample(std::string_view nameBytes)
{
    std::string text = file(kEarlySample);
    for (std::size_t place; (place = text.find("@NAME@")) != text.npos;)
        text.replace(place, 6, nameBytes);
    return text;
}

/// The text without the handles that saving adds to objects that had none.
std::string withoutHandles(const std::string& text)
{
    std::istringstream lines(text);
    std::string kept;
    std::string code;
    std::string value;
    while (std::getline(lines, code) && std::getline(lines, value)) {
        if (code != "  5" && code != "  5\r")
            kept += code + '\n' + value + '\n';
    }
    return kept;
}

TEST_F(DrawingRoundTrip, KeepsAWholeDrawingByteForByte)
{
    for (const std::string& text :
         {file(kModernSample), withCrLf(file(kModernSample)), "\xEF\xBB\xBF" + file(kModernSample)})
        EXPECT_EQ(drawingText(*readWhole(text)), text);
}

TEST_F(DrawingRoundTrip, KeepsAnEarlyDrawingButForTheHandlesItLacked)
{
    // The same letters in the code pages; in 936 a second byte is a backslash.
    for (const auto& [codePage, name] : {std::pair("ANSI_1251", "\xC3\xF0\xE0\xED\xE8\xF6\xE0"),
                                         std::pair("ANSI_1252", "Gr\xF6\xDF"
                                                                "e"),
                                         std::pair("ANSI_936", "\xD6\xD0\x81\x5C")}) {
        const std::string text = replaced(earlySample(name), "ANSI_1251", codePage);
        const std::string written = drawingText(*readWhole(text));
        EXPECT_EQ(withoutHandles(written), text) << codePage;
        EXPECT_EQ(drawingText(*readWhole(written)), written) << codePage;
    }
}

TEST_F(DrawingRoundTrip, HandlesOnceGivenStay)
{
    const auto first = readWhole(withEntities("0 LINE; 8 0\n0 LINE; 8 0; 5 A\n0 LINE; 8 0"));
    ASSERT_NE(find<KdDbLine>(*first, 0xB),
              nullptr); // behind the greatest, in the order of the file
    ASSERT_NE(find<KdDbLine>(*first, 0xC), nullptr);
    EXPECT_EQ(drawingText(*first),
              withEntities("0 LINE; 5 B; 8 0\n0 LINE; 8 0; 5 A\n0 LINE; 5 C; 8 0"));
}

TEST_F(DrawingRoundTrip, WhatIsOddIsWrittenOnceAndThenStays)
{
    const std::string modern = file(kModernSample);
    for (const std::string& odd : {
             withEntities("0 LINE; 5 0"), // a handle that is none
             replaced(modern, "5\n22\n330\n1\n  2\nВинт", "5\n22\n330\n1\n  2\nГайка"),
             replaced(modern, "5\n22\n330\n1\n  2\nВинт", "5\n22\n330\n1\n  2\n*Paper_Space"),
             replaced(modern, "1\n  2\n*Paper_Space", "1\n  2\n*Paper_Space7"),
             replaced(modern, "BLOCK_RECORD", "SOMETHING"), // the blocks have no records
         }) {
        const auto first = readWhole(odd);
        const std::string written = drawingText(*first);
        const auto second = readWhole(written);
        EXPECT_EQ(drawingText(*second), written);
        for (const auto& [handle, slot] : first->contents().byHandle) {
            const bool isFromFile = KdDbEntity::cast(slot->object) &&
                                    !ObjectAccess::extras(*slot->object).source.empty();
            EXPECT_TRUE(!isFromFile || find<KdDbEntity>(*second, handle)) << "lost " << handle;
        }
    }
}

TEST_F(DrawingRoundTrip, AChangedValueChangesItsOwnTextAlone)
{
    const std::string text = file(kModernSample);
    const auto database = readWhole(text);
    changeObject<KdDbLine>(*database, 0x50, [](KdDbLine& line) {
        line.setEndPoint({12.0, 0.25, 0.0});
    });
    EXPECT_EQ(drawingText(*database),
              replaced(text, " 11\n12.0\n 21\n0.0\n", " 11\n12.0\n 21\n0.25\n"));
}

TEST_F(DrawingRoundTrip, AFieldThatWasMissingComesBesideItsNeighbours)
{
    const std::string text = file(kModernSample);
    const auto database = readWhole(text);
    changeObject<KdDbLine>(*database, 0x50, [](KdDbLine& line) {
        KdCmColor red;
        red.setColorIndex(1);
        line.setColor(red);
    });
    changeObject<KdDbText>(*database, 0x59, [](KdDbText& attribute) {
        attribute.setTextString(L"новое");
        attribute.setRotation(1.5707963267948966);
    });
    const std::string colored = replaced(text, "Граница\n 48\n", "Граница\n 62\n1\n 48\n");
    EXPECT_EQ(drawingText(*database),
              replaced(colored, "  1\nзначение\n", "  1\nновое\n 50\n90\n"));
}

TEST_F(DrawingRoundTrip, AnOverrideChangesItsPairInTheExtendedDataAlone)
{
    const std::string text = file(kModernSample);
    const auto database = readWhole(text);
    changeObject<KdDbLine>(*database, 0x50, [](KdDbLine& line) {
        auto& data = ObjectAccess::extras(line).xData;
        for (korra::TypedValue& value : data) {
            if (value.code == 1040)
                value.value = 0.75;
        }
        korra::TypedValue added{1070, static_cast<short>(5)};
        data.push_back(added);
        ObjectAccess::markChanged(line);
    });
    EXPECT_EQ(drawingText(*database), replaced(replaced(text, "1040\n0.6250\n", "1040\n0.75\n"),
                                               "1071\n-70000\n", "1071\n-70000\n1070\n5\n"));
}

TEST_F(DrawingRoundTrip, ListsGrowAndShrink)
{
    const std::string text = file(kModernSample);
    const auto grown = readWhole(text);
    changeObject<KdDbPolyline>(*grown, 0x51, [](KdDbPolyline& polyline) {
        polyline.addVertexAt(3, KdGePoint2d(1.0, 2.0), 0.25);
    });
    const std::string longer =
        replaced(replaced(text, " 90\n        3\n", " 90\n4\n"), " 20\n3.0\n210\n",
                 " 20\n3.0\n 10\n1\n 20\n2\n 42\n0.25\n210\n");
    EXPECT_EQ(drawingText(*grown), longer);

    const auto shrunk = readWhole(text);
    changeObject<KdDbDictionary>(*shrunk, 0xC, [](KdDbDictionary& dictionary) {
        ObjectAccess::entries(dictionary).pop_back();
        ObjectAccess::markChanged(dictionary);
    });
    EXPECT_EQ(drawingText(*shrunk), replaced(text, "  3\nMine\n350\n61\n", ""));
}

TEST_F(DrawingRoundTrip, NewObjectsComeBehindTheOldOnes)
{
    const std::string text = file(kModernSample);
    const auto database = readWhole(text);
    kddbHostApplicationServices()->setWorkingDatabase(database.get());
    KdDbLine* line = new KdDbLine({1, 2, 3}, {4, 5, 6});
    line->setLayer(database->clayer());
    addEntityToBlock(L"Винт", line);

    const std::string before = " 31\n1.0\n";
    const std::string after = "  0\nENDBLK\n";
    const std::uint64_t handle = line->objectId().handle().value();
    EXPECT_EQ(drawingText(*database),
              replaced(replaced(text, "$HANDSEED\n  5\nFFF\n",
                                "$HANDSEED\n  5\n" + korra::formatHandle(handle + 1) + '\n'),
                       before + after,
                       before +
                           file("0 LINE; 5 " + korra::formatHandle(handle) +
                                "; 8 0; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6") +
                           after));
}

TEST_F(DrawingRoundTrip, ErasedObjectsAreGoneWithWhatTheyOwn)
{
    const auto database = readWhole(file(kModernSample));
    changeObject<KdDbBlockReference>(*database, 0x58,
                                     [](KdDbBlockReference& reference) { reference.erase(); });
    const std::string text = drawingText(*database);
    for (const char* gone : {"INSERT", "ATTRIB", "значение", "  5\n60\n", "  1\nnote\n"})
        EXPECT_EQ(text.find(gone), text.npos) << gone;
    const auto again = readWhole(text);
    EXPECT_EQ(find<KdDbObject>(*again, 0x58), nullptr);
    EXPECT_NE(find<KdDbObject>(*again, 0x57), nullptr);
}

TEST_F(DrawingRoundTrip, ANewDrawingReadsBackTheSame)
{
    KdDbDatabase drawing;
    kddbHostApplicationServices()->setWorkingDatabase(&drawing);
    addEntity(new KdDbLine({0, 0, 0}, {1.0 / 3.0, 1e-20, 12345678.9}));
    addEntity(new KdDbText({1, 2, 0}, L"Größe ^J\t漢字 😀", 2.5, 0.7));
    auto* bolt = new KdDbPolyline(2);
    bolt->addVertexAt(0, {0, 0}, 1.0);
    bolt->addVertexAt(1, {2, 0}, 0.0, 0.5, 0.5);
    addEntityToBlock(L"Bolt", bolt);
    addEntity(new KdDbBlockReference({7, 7, 0}, blockId(L"Bolt")));
    auto* dimension = new KdDbAlignedDimension({0, 0, 0}, {10, 0, 0}, {5, 5, 0});
    dimension->setDimensionStyle(drawing.dimstyle());
    addEntity(dimension);

    const std::string text = drawingText(drawing);
    const auto again = readWhole(text);
    EXPECT_EQ(drawingText(*again), text);
    EXPECT_EQ(again->contents().slots.size(), drawing.contents().slots.size());
    kddbHostApplicationServices()->setWorkingDatabase(nullptr);
}

TEST_F(DrawingRoundTrip, AnEarlyDrawingThatGetsDictionariesIsWrittenWhole)
{
    const auto database = readWhole(withEntities("0 LINE; 5 A; 8 0"));
    EXPECT_EQ(drawingText(*database), withEntities("0 LINE; 5 A; 8 0"));
    changeObject<KdDbLine>(*database, 0xA,
                           [](KdDbLine& line) { line.createExtensionDictionary(); });

    const std::string text = drawingText(*database);
    const auto again = readWhole(text);
    const auto* line = find<KdDbLine>(*again, 0xA);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->extensionDictionary().handle(),
              find<KdDbLine>(*database, 0xA)->extensionDictionary().handle());
    EXPECT_FALSE(line->extensionDictionary().isNull());
    EXPECT_EQ(again->layoutDictionaryId().handle(), database->layoutDictionaryId().handle());
    EXPECT_EQ(drawingText(*again), text);
}

TEST_F(DrawingRoundTrip, HeaderVariablesKeepTheirText)
{
    const auto database = readWhole(earlySample("a"));
    korra::DrawingHeader& header = database->contents().header;
    header.setPoint("$EXTMIN", {0.0, -2.0, 0.0});
    header.setInteger("$ORTHOMODE", 1);
    const std::string text = drawingText(*database);
    EXPECT_NE(text.find("$EXTMIN\n 10\n0.000000\n 20\n-2\n 30\n0\n  9\n$ORTHOMODE\n 70\n1\n  0\n"),
              text.npos);
    EXPECT_NE(text.find("HEADER\n999\nabout the version\n  9\n"), text.npos);
}

} // namespace
} // namespace tests::dxf
