// Current layer, styles, colour, line weight and dimension variables; fonts of text styles in
// files.

#include "dxf_samples.h"

#include "kd/gi.h"

#include <numbers>

using korra::drawingText;
using korra::TableKind;

namespace {

using TextStyle = Open<KdDbTextStyleTableRecord>;

class CurrentSettings : public HostTest {
protected:
    /// The drawing as another program would read it.
    std::unique_ptr<KdDbDatabase> reread()
    {
        const std::string text = drawingText(database());
        auto again = dxf::readWhole(text);
        EXPECT_EQ(drawingText(*again), text);
        EXPECT_EQ(again->contents().slots.size(), database().contents().slots.size());
        return again;
    }
};

TEST_F(CurrentSettings, SurviveAFile)
{
    EXPECT_EQ(database().celweight(), KdDb::kLnWtByLayer);
    const KdDbObjectId layer = addLayer(L"Стены");
    const KdDbObjectId text = addTextStyle(L"Notes");
    const KdDbObjectId dimension = addRecord<KdDbDimStyleTable, KdDbDimStyleTableRecord>(L"Fine");
    EXPECT_EQ(database().setClayer(layer), Kdapi::eOk);
    EXPECT_EQ(database().setTextstyle(text), Kdapi::eOk);
    EXPECT_EQ(database().setDimstyle(dimension), Kdapi::eOk);
    EXPECT_EQ(database().setCecolor(colorOf(3)), Kdapi::eOk);
    EXPECT_TRUE(korra::setVariable("MEASUREMENT", "1"));
    EXPECT_EQ(database().setCelweight(static_cast<KdDb::LineWeight>(35)), Kdapi::eOk);
    EXPECT_EQ(database().setCelweight(static_cast<KdDb::LineWeight>(36)), Kdapi::eInvalidInput);

    platform::failCall(1, platform::Fault::status);
    EXPECT_NE(database().setCecolor(colorOf(5)), Kdapi::eOk);
    platform::releaseCalls();

    const auto again = reread();
    EXPECT_THAT((std::vector{again->clayer().handle(), again->textstyle().handle(),
                             again->dimstyle().handle()}),
                ElementsAre(layer.handle(), text.handle(), dimension.handle()));
    EXPECT_EQ(again->cecolor(), colorOf(3));
    EXPECT_EQ(again->measurement(), KdDb::kMetric);
    EXPECT_EQ(again->celweight(), 35);
}

TEST_F(CurrentSettings, DimensionVariablesGoIntoARecordAndBackExactly)
{
    KdDbDimStyleTableRecord record;
    record.setDimscale(25.0);
    record.setDimdec(1);
    record.setDimtxsty(addTextStyle(L"Notes"));
    record.setDimclrt(colorOf(1));
    EXPECT_EQ(database().setDimstyleData(&record), Kdapi::eOk);
    EXPECT_EQ(database().dimstyle(),
              database().contents().record(TableKind::dimStyle, L"Standard"));

    KdDbDimStyleTableRecord current;
    EXPECT_EQ(reread()->getDimstyleData(&current), Kdapi::eOk);
    EXPECT_EQ(current.dimscale(), 25.0);
    EXPECT_EQ(database().getDimstyleData(&current), Kdapi::eOk);
    EXPECT_EQ(korra::ObjectAccess::values(current), korra::ObjectAccess::values(record));
    EXPECT_EQ(database().getDimstyleData(nullptr), Kdapi::eNullObjectPointer);
}

TEST_F(CurrentSettings, DimensionVariablesIncludeTheOverridesThatTheHeaderCarries)
{
    auto drawing = dxf::readWhole(dxf::file("0 SECTION; 2 HEADER; 9 $DIMSTYLE; 2 Standard; "
                                            "9 $DIMTXT; 40 3.5; 9 $DIMBLK; 1 _Tick; "
                                            "9 $DIMTXSTY; 7 STANDARD; 0 ENDSEC; 0 EOF\n"));
    KdDbDimStyleTableRecord current;
    EXPECT_EQ(drawing->getDimstyleData(&current), Kdapi::eOk);
    EXPECT_EQ(current.dimtxt(), 3.5);
    EXPECT_EQ(current.dimtxsty(), drawing->contents().record(TableKind::textStyle, L"Standard"));
    const std::string before = drawingText(*drawing);
    EXPECT_EQ(drawing->setDimstyleData(&current), Kdapi::eOk);
    EXPECT_EQ(drawingText(*drawing), before);
}

TEST_F(CurrentSettings, AStyleSetsThePlacesThatItsFitMeans)
{
    KdDbDimStyleTableRecord style;
    for (const auto& [fit, placing] : {std::pair(2, 2), {5, 3}}) {
        EXPECT_EQ(style.setDimfit(fit), Kdapi::eOk);
        EXPECT_EQ(style.dimatfit(), placing);
    }
    EXPECT_EQ(style.setDimfit(6), Kdapi::eInvalidInput);
    EXPECT_EQ(style.setDimasz(-1.0), Kdapi::eInvalidInput);
}

/// Typeface, bold, italic, character set, pitch and family.
using Font = std::tuple<std::wstring, bool, bool, int, int, int>;

Font fontOf(const KdDbTextStyleTableRecord& style)
{
    Font font{L"before", true, true, 1, 1, 1};
    auto& [typeface, bold, italic, characterSet, pitch, family] = font;
    style.font(typeface, bold, italic, characterSet, pitch, family);
    return font;
}

Kdapi::ErrorStatus setFont(KdDbTextStyleTableRecord& style, const Font& font)
{
    const auto& [typeface, bold, italic, characterSet, pitch, family] = font;
    return style.setFont(typeface.c_str(), bold, italic, characterSet, pitch, family);
}

TEST_F(CurrentSettings, FontsOfTextStylesSurviveAFileUnlessTheyAreNone)
{
    const TextStyle style(addTextStyle(L"A"));
    for (const Font& font : {Font(std::wstring(31, L'x'), false, true, 0, 15, 0),
                             Font(L"宋体", true, false, 255, 2, 0xF0)}) {
        EXPECT_EQ(setFont(*style, font), Kdapi::eOk);
        const auto again = reread();
        EXPECT_EQ(fontOf(*TextStyle(again->contents().record(TableKind::textStyle, L"A"))), font);
    }
    for (const Font& none :
         {Font(std::wstring(32, L'x'), false, false, 0, 0, 0), Font(L"A", false, false, 256, 0, 0),
          Font(L"A", false, false, 0, -1, 0), Font(L"A", false, false, 0, 0, 256)})
        EXPECT_EQ(setFont(*style, none), Kdapi::eInvalidInput);
    EXPECT_EQ(setFont(*style, Font()), Kdapi::eOk);
    EXPECT_EQ(fontOf(*style), Font()) << "of two fonts the second took the place of the first";
}

TEST_F(CurrentSettings, TakingAFontAwayLeavesTheOtherDataOfTheStyle)
{
    auto drawing = dxf::readWhole(dxf::file(
        "0 SECTION; 2 TABLES; 0 TABLE; 2 STYLE; 0 STYLE; 2 A; 50 15.0; 3 arial.ttf; 4\n"
        "1001 ACAD; 1000 Arial; 1071 34; 1070 5; 1001 OTHER; 1000 kept; 0 ENDTAB; 0 ENDSEC; 0 "
        "EOF"));
    const KdDbObjectId id = drawing->contents().record(TableKind::textStyle, L"A");
    KdGiTextStyle drawn;
    {
        const TextStyle style(id);
        EXPECT_EQ(fontOf(*style), Font(L"Arial", false, false, 0, 2, 0x20));
        EXPECT_EQ(fromKdDbTextStyle(drawn, id), Kdapi::eWasOpenForWrite);
        for (const char* time : {"the first time", "when there is none"})
            EXPECT_EQ(style->setFont(L"", false, false, 1, 2, 0), Kdapi::eOk) << time;
        EXPECT_EQ(fontOf(*style), Font(L"", false, false, 0, 0, 0));
    }
    const std::string text = drawingText(*drawing);
    EXPECT_THAT(text, AllOf(Not(HasSubstr("Arial")), HasSubstr("kept"), HasSubstr("1070\n5\n")));

    EXPECT_EQ(fromKdDbTextStyle(drawn, id), Kdapi::eOk);
    EXPECT_EQ(drawn.fileName(), L"arial.ttf");
    EXPECT_EQ(drawn.typeface(), L"");
    EXPECT_DOUBLE_EQ(drawn.obliquingAngle(), 15.0 * std::numbers::pi / 180.0);
    EXPECT_EQ(fromKdDbTextStyle(drawn, database().clayer()), Kdapi::eNotThatKindOfClass);
}

} // namespace
