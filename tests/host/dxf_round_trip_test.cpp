// What reading and writing keep of a drawing file, and what a change changes of it.

#include "dxf_samples.h"

#include "form/numbers.h"
#include "objects/contents.h"
#include "support/drawing.h"
#include "support/host_test.h"

#include <regex>

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

/// The text without the handles that saving adds to objects that had none.
std::string withoutHandles(const std::string& text)
{
    static const std::regex handle("  5\n.*\n");
    return std::regex_replace(text, handle, "");
}

TEST_F(DrawingRoundTrip, KeepsAWholeDrawingByteForByte)
{
    const std::string modern = file(kModernSample);
    const std::string crLf = std::regex_replace(modern, std::regex("\n"), "\r\n");
    for (const std::string& text : {modern, crLf, "\xEF\xBB\xBF" + modern})
        EXPECT_EQ(drawingText(*readWhole(text)), text);
}

TEST_F(DrawingRoundTrip, KeepsAnEarlyDrawingButForTheHandlesItLacked)
{
    const std::string written = drawingText(*readWhole(earlySample()));
    EXPECT_EQ(withoutHandles(written), earlySample());
    EXPECT_EQ(drawingText(*readWhole(written)), written);
}

TEST_F(DrawingRoundTrip, MissingHandlesComeBehindTheGreatestInTheOrderOfTheFile)
{
    EXPECT_EQ(drawingText(*readWhole(withEntities("0 LINE; 8 0\n0 LINE; 8 0; 5 A\n0 LINE; 8 0"))),
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

/// The text of the modern sample after a change of the object with the handle.
template <class T, class Change>
std::string changed(std::uint64_t handle, Change change)
{
    const auto database = readWhole(file(kModernSample));
    changeObject<T>(*database, handle, change);
    return drawingText(*database);
}

TEST_F(DrawingRoundTrip, AChangedValueChangesItsOwnTextAlone)
{
    const std::string text = file(kModernSample);
    const KdGePoint3d end(12.0, 0.25, 0.0);
    EXPECT_EQ(changed<KdDbLine>(0x50, [&](auto& line) { line.setEndPoint(end); }),
              replaced(text, " 11\n12.0\n 21\n0.0\n", " 11\n12.0\n 21\n0.25\n"));

    KdCmColor green;
    green.setRGB(0, 255, 0);
    EXPECT_EQ(changed<KdDbLayerTableRecord>(0x11, [&](auto& layer) { layer.setColor(green); }),
              replaced(text, " 62\n     1\n420\n 16711680\n", " 62\n3\n420\n65280\n"));

    const std::string extended = changed<KdDbLine>(0x50, [](KdDbLine& line) {
        auto& data = ObjectAccess::extras(line).xData;
        std::ranges::find(data, 1040, &korra::TypedValue::code)->value = 0.75;
        data.push_back({1070, static_cast<short>(5)});
        ObjectAccess::willChange(line);
    });
    EXPECT_EQ(extended, replaced(replaced(text, "1040\n0.6250\n", "1040\n0.75\n"), "1071\n-70000\n",
                                 "1071\n-70000\n1070\n5\n"));
}

TEST_F(DrawingRoundTrip, AnExtendedValueGoesWithAllItsTags)
{
    const std::string text = changed<KdDbLine>(0x50, [](KdDbLine& line) {
        std::erase_if(ObjectAccess::extras(line).xData,
                      [](const auto& value) { return value.code == 1010; });
        ObjectAccess::willChange(line);
    });
    EXPECT_EQ(text, replaced(file(kModernSample), "1010\n1.00\n1020\n2.00\n1030\n3.00\n", ""));
}

TEST_F(DrawingRoundTrip, AFieldThatWasMissingComesBesideItsNeighbours)
{
    const std::string text = file(kModernSample);
    EXPECT_EQ(changed<KdDbLine>(0x50, [](auto& line) { line.setColor(colorOf(1)); }),
              replaced(text, "Граница\n 48\n", "Граница\n 62\n1\n 48\n"));
    const std::string attribute = changed<KdDbText>(0x59, [](KdDbText& changing) {
        changing.setTextString(L"новое");
        changing.setRotation(1.5707963267948966);
    });
    EXPECT_EQ(attribute, replaced(text, "  1\nзначение\n", "  1\nновое\n 50\n90\n"));
}

TEST_F(DrawingRoundTrip, ListsGrowAndShrink)
{
    const std::string text = file(kModernSample);
    const std::string grown = changed<KdDbPolyline>(
        0x51, [](auto& polyline) { polyline.addVertexAt(3, KdGePoint2d(1.0, 2.0), 0.25); });
    EXPECT_EQ(grown, replaced(replaced(text, " 90\n        3\n", " 90\n4\n"), " 20\n3.0\n210\n",
                              " 20\n3.0\n 10\n1\n 20\n2\n 42\n0.25\n210\n"));

    const std::string shrunk = changed<KdDbDictionary>(0xC, [](KdDbDictionary& dictionary) {
        ObjectAccess::entries(dictionary).pop_back();
        ObjectAccess::willChange(dictionary);
    });
    EXPECT_EQ(shrunk, replaced(text, "  3\nMine\n350\n61\n", ""));
}

TEST_F(DrawingRoundTrip, ErasedObjectsAreGoneWithWhatTheyOwn)
{
    const std::string text =
        changed<KdDbBlockReference>(0x58, [](auto& reference) { reference.erase(); });
    for (const char* gone : {"INSERT", "ATTRIB", "значение", "  5\n60\n", "  1\nnote\n"})
        EXPECT_EQ(text.find(gone), text.npos) << gone;
    const auto again = readWhole(text);
    EXPECT_EQ(find<KdDbObject>(*again, 0x58), nullptr);
    EXPECT_NE(find<KdDbObject>(*again, 0x57), nullptr);
}

TEST_F(DrawingRoundTrip, NewObjectsComeBehindTheOldOnes)
{
    const std::string text = file(kModernSample);
    const auto database = readWhole(text);
    kddbHostApplicationServices()->setWorkingDatabase(database.get());
    KdDbLine* line = new KdDbLine({1, 2, 3}, {4, 5, 6});
    line->setLayer(database->clayer());
    addEntityToBlock(L"Винт", line);

    const std::uint64_t handle = line->objectId().handle().value();
    const std::string seed = "$HANDSEED\n  5\n";
    const std::string added = file("0 LINE; 5 " + korra::formatHandle(handle) +
                                   "; 8 0; 10 1; 20 2; 30 3; 11 4; 21 5; 31 6");
    EXPECT_EQ(drawingText(*database),
              replaced(replaced(text, seed + "FFF", seed + korra::formatHandle(handle + 1)),
                       " 31\n1.0\n  0\nENDBLK\n", " 31\n1.0\n" + added + "  0\nENDBLK\n"));
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
    changeObject<KdDbLine>(*database, 0xA, [](auto& line) { line.createExtensionDictionary(); });
    const KdDbHandle dictionary = find<KdDbLine>(*database, 0xA)->extensionDictionary().handle();
    EXPECT_FALSE(dictionary.isNull());

    const std::string text = drawingText(*database);
    const auto again = readWhole(text);
    ASSERT_NE(find<KdDbLine>(*again, 0xA), nullptr);
    EXPECT_EQ(find<KdDbLine>(*again, 0xA)->extensionDictionary().handle(), dictionary);
    EXPECT_EQ(again->layoutDictionaryId().handle(), database->layoutDictionaryId().handle());
    EXPECT_EQ(drawingText(*again), text);
}

TEST_F(DrawingRoundTrip, HeaderVariablesKeepTheirText)
{
    const auto database = readWhole(earlySample());
    korra::DrawingHeader& header = database->contents().header;
    header.setPoint("$EXTMIN", {0.0, -2.0, 0.0});
    header.setInteger("$ORTHOMODE", 1, 70);
    const std::string text = drawingText(*database);
    EXPECT_NE(text.find("$EXTMIN\n 10\n0.000000\n 20\n-2\n 30\n0\n  9\n$ORTHOMODE\n 70\n1\n  0\n"),
              text.npos);
    EXPECT_NE(text.find("HEADER\n999\nabout the version\n  9\n"), text.npos);
}

} // namespace
} // namespace tests::dxf
