// Current layer, styles, colour, line weight and dimension variables; records of layers and styles
// in files.

#include "dxf_samples.h"

#include "kd/gi.h"
#include "support/host_test.h"

#include <numbers>

using korra::drawingText;
using korra::TableKind;

namespace tests {
namespace {

class CurrentSettings : public HostTest {
protected:
    template <class Table, class Record>
    KdDbObjectId add(const wchar_t* name)
    {
        Table* table = nullptr;
        EXPECT_EQ(database().getSymbolTable(table, KdDb::kForWrite), Kdapi::eOk);
        auto* record = new Record;
        EXPECT_EQ(record->setName(name), Kdapi::eOk);
        KdDbObjectId id;
        EXPECT_EQ(table->add(id, record), Kdapi::eOk);
        record->close();
        table->close();
        return id;
    }

    template <class Record>
    static Record* record(KdDbObjectId id, KdDb::OpenMode mode = KdDb::kForWrite)
    {
        Record* opened = nullptr;
        EXPECT_EQ(kddbOpenObject(opened, id, mode), Kdapi::eOk);
        return opened;
    }

    /// The drawing as another program would read it.
    std::unique_ptr<KdDbDatabase> reread() { return dxf::readWhole(drawingText(database())); }
};

TEST_F(CurrentSettings, NameRecordsOfThisDrawingOnly)
{
    const KdDbObjectId layer = add<KdDbLayerTable, KdDbLayerTableRecord>(L"Стены");
    const KdDbObjectId text = add<KdDbTextStyleTable, KdDbTextStyleTableRecord>(L"Notes");
    const KdDbObjectId dimension = add<KdDbDimStyleTable, KdDbDimStyleTableRecord>(L"Fine");
    EXPECT_EQ(database().setClayer(layer), Kdapi::eOk);
    EXPECT_EQ(database().setTextstyle(text), Kdapi::eOk);
    EXPECT_EQ(database().setDimstyle(dimension), Kdapi::eOk);
    EXPECT_EQ(database().clayer(), layer);
    EXPECT_EQ(database().textstyle(), text);
    EXPECT_EQ(database().dimstyle(), dimension);

    EXPECT_EQ(database().setClayer({}), Kdapi::eNullObjectId);
    EXPECT_EQ(database().setClayer(text), Kdapi::eNotThatKindOfClass);
    KdDbDatabase other;
    EXPECT_EQ(other.setClayer(layer), Kdapi::eWrongDatabase);
    EXPECT_EQ(database().clayer(), layer);
    EXPECT_EQ(reread()->clayer().handle().value(), layer.handle().value());
}

TEST_F(CurrentSettings, ColorAndLineWeightOfNewEntities)
{
    EXPECT_EQ(database().cecolor(), KdCmColor());
    EXPECT_EQ(database().celweight(), KdDb::kLnWtByLayer);
    KdCmColor green;
    green.setColorIndex(3);
    EXPECT_EQ(database().setCecolor(green), Kdapi::eOk);
    EXPECT_EQ(database().setCelweight(static_cast<KdDb::LineWeight>(35)), Kdapi::eOk);
    EXPECT_EQ(database().setCelweight(static_cast<KdDb::LineWeight>(36)), Kdapi::eInvalidInput);
    const auto again = reread();
    EXPECT_EQ(again->cecolor(), green);
    EXPECT_EQ(again->celweight(), 35);
}

TEST_F(CurrentSettings, DimensionVariablesGoIntoARecordAndBackExactly)
{
    auto* record = new KdDbDimStyleTableRecord;
    const KdDbObjectId text = add<KdDbTextStyleTable, KdDbTextStyleTableRecord>(L"Notes");
    record->setDimscale(25.0);
    record->setDimdec(1);
    record->setDimtxsty(text);
    KdCmColor red;
    red.setColorIndex(1);
    record->setDimclrt(red);
    EXPECT_EQ(database().setDimstyleData(record), Kdapi::eOk);
    EXPECT_EQ(database().dimstyle(),
              database().contents().record(TableKind::dimStyle, L"Standard"));

    KdDbDimStyleTableRecord current;
    EXPECT_EQ(reread()->getDimstyleData(&current), Kdapi::eOk);
    EXPECT_EQ(current.dimscale(), 25.0);
    EXPECT_EQ(current.dimdec(), 1);
    EXPECT_EQ(current.dimclrt(), red);
    EXPECT_EQ(database().getDimstyleData(&current), Kdapi::eOk);
    EXPECT_EQ(current.dimtxsty(), text);

    const KdDbDimStyleTableRecord standard;
    EXPECT_EQ(database().setDimstyleData(&standard), Kdapi::eOk);
    EXPECT_EQ(database().setDimstyleData(&current), Kdapi::eOk);
    KdDbDimStyleTableRecord restored;
    database().getDimstyleData(&restored);
    EXPECT_EQ(korra::ObjectAccess::values(restored), korra::ObjectAccess::values(current));
    EXPECT_EQ(database().getDimstyleData(nullptr), Kdapi::eNullObjectPointer);
    delete record;
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
    EXPECT_EQ(style.setDimfit(2), Kdapi::eOk);
    EXPECT_EQ(style.dimfit(), 2);
    EXPECT_EQ(style.dimatfit(), 2);
    EXPECT_EQ(style.setDimfit(5), Kdapi::eOk);
    EXPECT_EQ(style.dimatfit(), 3);
    EXPECT_EQ(style.setDimfit(6), Kdapi::eInvalidInput);
    EXPECT_EQ(style.setDimtxsty({}), Kdapi::eNullObjectId);
    EXPECT_EQ(style.setDimasz(-1.0), Kdapi::eInvalidInput);
}

TEST_F(CurrentSettings, LayersSurviveAFile)
{
    const KdDbObjectId id = add<KdDbLayerTable, KdDbLayerTableRecord>(L"A");
    auto* layer = record<KdDbLayerTableRecord>(id);
    EXPECT_EQ(layer->color().colorIndex(), 7);
    EXPECT_EQ(layer->linetypeObjectId(), database().continuousLinetype());
    layer->setVPDFLT(true);
    layer->setIsOff(true);
    layer->setIsPlottable(false);
    EXPECT_EQ(layer->setLineWeight(static_cast<KdDb::LineWeight>(211)), Kdapi::eOk);
    EXPECT_EQ(layer->setLineWeight(static_cast<KdDb::LineWeight>(7)), Kdapi::eInvalidInput);
    layer->close();

    const auto again = reread();
    layer = record<KdDbLayerTableRecord>(again->contents().record(TableKind::layer, L"A"));
    EXPECT_TRUE(layer->VPDFLT());
    EXPECT_FALSE(layer->isFrozen());
    EXPECT_TRUE(layer->isOff());
    EXPECT_FALSE(layer->isPlottable());
    EXPECT_EQ(layer->lineWeight(), 211);
    EXPECT_EQ(layer->color().colorIndex(), 7);
    layer->close();
}

struct StyleFont {
    std::wstring typeface;
    bool bold = false;
    bool italic = false;
    int characterSet = 0;
    int pitch = 0;
    int family = 0;

    explicit StyleFont(const KdDbTextStyleTableRecord& style)
    {
        style.font(typeface, bold, italic, characterSet, pitch, family);
    }
};

TEST_F(CurrentSettings, FontsOfTextStylesSurviveAFile)
{
    const KdDbObjectId id = add<KdDbTextStyleTable, KdDbTextStyleTableRecord>(L"A");
    auto* style = record<KdDbTextStyleTableRecord>(id);
    style->setBigFontFileName(L"big.shx");
    EXPECT_EQ(style->setFont(L"宋体", true, false, 134, 2, 0x20), Kdapi::eOk);
    EXPECT_EQ(style->setFont(std::wstring(32, L'x').c_str(), false, false, 0, 2, 0),
              Kdapi::eInvalidInput);
    EXPECT_EQ(style->setFont(nullptr, false, false, 0, 2, 0), Kdapi::eInvalidInput);
    style->close();

    const auto again = reread();
    style = record<KdDbTextStyleTableRecord>(again->contents().record(TableKind::textStyle, L"A"));
    EXPECT_EQ(style->bigFontFileName(), L"big.shx");
    const StyleFont font(*style);
    EXPECT_EQ(font.typeface, L"宋体");
    EXPECT_TRUE(font.bold);
    EXPECT_FALSE(font.italic);
    EXPECT_EQ(font.characterSet, 134);
    EXPECT_EQ(font.pitch, 2);
    EXPECT_EQ(font.family, 0x20);
    style->close();
}

TEST_F(CurrentSettings, TakingAFontAwayLeavesTheOtherDataOfTheStyle)
{
    auto drawing = dxf::readWhole(dxf::file(R"(0 SECTION; 2 TABLES
0 TABLE; 2 STYLE; 70 1
0 STYLE; 2 A; 70 0; 40 0.0; 41 1.0; 50 15.0; 71 0; 42 2.5; 3 arial.ttf; 4
1001 ACAD; 1000 Arial; 1071 34; 1070 5; 1001 OTHER; 1000 kept
0 ENDTAB
0 ENDSEC
0 EOF
)"));
    auto* style =
        record<KdDbTextStyleTableRecord>(drawing->contents().record(TableKind::textStyle, L"A"));
    EXPECT_EQ(StyleFont(*style).typeface, L"Arial");
    EXPECT_EQ(StyleFont(*style).family, 0x20);
    KdGiTextStyle drawn;
    EXPECT_EQ(fromKdDbTextStyle(drawn, style->objectId()), Kdapi::eWasOpenForWrite);
    EXPECT_EQ(style->setFont(L"", false, false, 1, 2, 0), Kdapi::eOk);
    const KdDbObjectId id = style->objectId();
    style->close();
    const std::string text = drawingText(*drawing);
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr("Arial")));
    EXPECT_THAT(text, ::testing::HasSubstr("kept"));
    EXPECT_THAT(text, ::testing::HasSubstr("1070\n5\n"));

    EXPECT_EQ(fromKdDbTextStyle(drawn, id), Kdapi::eOk);
    EXPECT_EQ(drawn.fileName(), L"arial.ttf");
    EXPECT_EQ(drawn.typeface(), L"");
    EXPECT_DOUBLE_EQ(drawn.obliquingAngle(), 15.0 * std::numbers::pi / 180.0);
    EXPECT_EQ(fromKdDbTextStyle(drawn, database().clayer()), Kdapi::eNotThatKindOfClass);
}

} // namespace
} // namespace tests
