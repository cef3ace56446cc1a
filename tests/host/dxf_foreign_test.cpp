// What other programs write differently is understood, and given back as it was.

#include "dxf_samples.h"

#include "drawing/layouts.h"

#include <array>
#include <set>

using korra::ObjectAccess;

namespace tests::dxf {
namespace {

class ForeignDrawing : public HostTest {};

/// The drawing is opened and saved as it is. @return what its opener is told
std::vector<std::string> notesOnKept(const std::string& text)
{
    KdDbDatabase database(false);
    const korra::FileOutcome outcome = korra::readDrawingText(database, text, "sample.dxf");
    EXPECT_TRUE(outcome.done) << outcome.message;
    EXPECT_TRUE(korra::drawingText(database) == text);
    return outcome.notes;
}

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
    const auto database = readToWorkOn(withEntities(
        "0 LINE; 5 1A; 0 LINE; 5 1a; 0 LINE; 5 ; 0 LINE; 8 0; 0 LINE; 5 7FFFFFFFFFFFFFFF\n"
        "0 POLYLINE; 5 1B; 66 1; 70 8; 0 VERTEX; 5 1C; 0 SEQEND"));
    const KdDbObjectId added = addEntity(new KdDbLine);

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
    const std::string tooFew =
        file("0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 5 1; 70 1\n"
             "0 LAYER; 5 A; 2 0; 6 CONTINUOUS; 0 LAYER; 5 B; 2 Walls; 6 CONTINUOUS\n"
             "0 ENDTAB; 0 ENDSEC; 0 SECTION; 2 BLOCKS; 0 BLOCK; 5 C; 0 LINE; 5 D; 0 ENDBLK\n"
             "0 BLOCK; 5 E; 0 ENDBLK; 0 ENDSEC; 0 EOF\n");
    const std::string tooMany = replaced(tooFew, "\n 70\n1\n", "\n 70\n9\n");
    for (const auto& [text, count] : {std::pair(tooFew, "\n 70\n3\n"), {tooMany, "\n 70\n9\n"}}) {
        const auto database = readToWorkOn(text);
        EXPECT_EQ(korra::drawingText(*database), text);
        addLayer(L"Third");
        EXPECT_THAT(korra::drawingText(*database), HasSubstr(count));
    }
}

TEST_F(ForeignDrawing, MixesItsCodePageIntoUtf8)
{
    const std::string layers =
        "0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 5 1; 70 5\n"
        "0 LAYER; 5 A; 2 \xE9; 6 CONTINUOUS\n"
        "0 LAYER; 5 B; 2 \xE8; 6 CONTINUOUS\n"
        "0 LAYER; 5 C; 2 \xC3\xA4; 6 CONTINUOUS\n"
        "0 LAYER; 5 D; 2 \x81; 6 CONTINUOUS\n"
        "0 LAYER; 5 E; 2 \x8D; 6 CONTINUOUS; 0 ENDTAB; 0 ENDSEC\n"
        "0 SECTION; 2 ENTITIES; 0 TEXT; 5 1A; 8 \xE8; 10 1; 20 0; 30 0; 40 2; 1 \xE9t\xE9\n"
        "0 ENDSEC; 0 EOF\n";
    // The code page, and the first two names in it.
    const std::tuple<const char*, const wchar_t*, const wchar_t*> cases[] = {
        {"", L"\u00E9", L"\u00E8"}, {"9 $DWGCODEPAGE; 3 ANSI_1251\n", L"\u0439", L"\u0438"}};
    for (const auto& [codePage, first, second] : cases) {
        const std::string text = file("0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1021\n" +
                                      std::string(codePage) + "0 ENDSEC\n" + layers);
        const auto database = readWhole(text);
        EXPECT_EQ(korra::drawingText(*database), text);
        const auto layer = [&](const wchar_t* name) {
            return database->contents().record(korra::TableKind::layer, name).handle().value();
        };
        EXPECT_THAT((std::array{layer(first), layer(second), layer(L"\u00E4")}),
                    ElementsAre(0xA, 0xB, 0xC));
        EXPECT_EQ(find<KdDbText>(*database, 0x1A)->layerId().handle().value(), 0xBu);
        std::set<std::wstring> names;
        for (const std::uint64_t handle : {0xA, 0xB, 0xC, 0xD, 0xE})
            names.insert(find<KdDbLayerTableRecord>(*database, handle)->name());
        EXPECT_EQ(names.size(), 5u);

        changeObject<KdDbText>(*database, 0x1A, [](auto& changing) { changing.setHeight(3.0); });
        EXPECT_THAT(korra::drawingText(*database),
                    HasSubstr(file("8 \xE8; 10 1; 20 0; 30 0; 40 3; 1 \xE9t\xE9\n")));
        changeObject<KdDbText>(*database, 0x1A,
                               [](auto& changing) { changing.setTextString(L"\u00E9t"); });
        EXPECT_THAT(korra::drawingText(*database), HasSubstr("\n\xC3\xA9t\n"));
    }
}

TEST_F(ForeignDrawing, KeepsLayoutsThatLieInNoBlockOrInNoDictionary)
{
    const std::string whole = file(kModernSample);
    const std::string model =
        retagged(whole, {{"340 30", "340 0"}, {"71      0; 330 20", "71 0; 330 EE"}});
    const auto withModel = readWhole(model);
    EXPECT_EQ(korra::drawingText(*withModel), model);
    EXPECT_EQ(korra::setCurrentLayout(withModel->contents(), L"MODEL"), Kdapi::eOk);

    const std::string sheet = retagged(whole, {{"340 31", "340 0"},
                                               {"71      1; 330 21", "71 1; 330 EE"},
                                               {"3 Blatt 1; 350 31", "3 Layout1; 350 31"}});
    const std::string unentered = retagged(
        whole, {{"3 Blatt 1; 350 31", "3 Blatt 1; 350 61"}, {"3 Mine; 350 61", "3 Mine; 350 62"}});
    const std::string otherCase = retagged(whole, {{"3 ACAD_LAYOUT", "3 Acad_Layout"}});
    for (const std::string& text : {sheet, unentered, otherCase}) {
        const auto database = readWhole(text);
        EXPECT_EQ(korra::drawingText(*database), text);
        EXPECT_EQ(korra::layoutsOf(database->contents()).size(), text == sheet ? 3u : 2u);
    }
}

TEST_F(ForeignDrawing, MayHaveSomethingBehindItsEnd)
{
    const std::string text = withEntities("0 LINE; 5 A");
    for (const std::string& blank :
         {std::string(), std::string("\n \x1A"), std::string(99999, '\0')})
        EXPECT_THAT(notesOnKept(text + blank), IsEmpty());
    const char* note =
        "sample.dxf:13: what stands behind the end of the drawing is kept but not read";
    for (const std::string& more : {std::string("x"), '\x1A' + text, std::string(99999, ' ') + 'x'})
        EXPECT_THAT(notesOnKept(text + more), ElementsAre(note));
}

TEST_F(ForeignDrawing, HoldsEntitiesThatAreNotShown)
{
    EXPECT_THAT(notesOnKept(withEntities("0 VIEWPORT; 5 A; 69 1; 0 LINE; 5 B; 0 SEQEND; 5 C")),
                IsEmpty());
    EXPECT_THAT(notesOnKept(withEntities("0 REGION; 5 A; 70 1; 1 opaque")),
                ElementsAre("sample.dxf: 1 REGION is kept but not shown"));
    EXPECT_THAT(
        notesOnKept(file("0 SECTION; 2 BLOCKS; 0 BLOCK; 5 1; 2 PART; 0 HATCH; 5 2; 0 3DSOLID; 5 3\n"
                         "0 ENDBLK; 5 4; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 HATCH; 5 5\n"
                         "0 POLYLINE; 5 6; 66 1; 70 64; 0 VERTEX; 5 7; 0 SEQEND; 5 8\n"
                         "0 ENDSEC; 0 SECTION; 2 OBJECTS; 0 THING; 5 9; 0 ENDSEC; 0 EOF\n")),
        ElementsAre("sample.dxf: 2 HATCH, 1 3DSOLID, 1 POLYLINE are kept but not shown"));
}

} // namespace
} // namespace tests::dxf
