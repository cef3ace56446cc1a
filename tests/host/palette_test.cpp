// Colours: the palette, red, green and blue, and both in files.

#include "dxf_samples.h"

#include "tables/palette.h"

using korra::drawingText;
using korra::TableKind;

namespace {

TEST(Palette, HasThePublishedColors)
{
    const std::pair<int, korra::Rgb> published[] = {
        {8, {128, 128, 128}},  {9, {192, 192, 192}}, {13, {165, 82, 82}},  {19, {38, 19, 19}},
        {21, {255, 159, 127}}, {92, {0, 165, 0}},    {140, {0, 191, 255}}, {250, {51, 51, 51}}};
    for (const auto& [index, color] : published)
        EXPECT_EQ(korra::paletteColor(index), color) << index;
}

TEST(Color, KeepsAnIndexAsItIsAndRedGreenAndBlueBesideTheirNearest)
{
    KdCmColor color;
    color.setRGB(255, 255, 255);
    EXPECT_EQ(color.colorIndex(), 7) << "the first of equal ones";
    color.setRGB(10, 250, 3);
    EXPECT_EQ(color.colorIndex(), 3);
    EXPECT_EQ(color.green(), 250);
    EXPECT_EQ(color.colorMethod(), KdCmColor::kByColor);
    color.setColorIndex(5);
    EXPECT_EQ(color.green(), 0);
    EXPECT_EQ(color.colorMethod(), KdCmColor::kByIndex);
}

class ColorInFiles : public HostTest {};

Open<KdDbLayerTableRecord> layer(KdDbDatabase& drawing, const wchar_t* name)
{
    return Open<KdDbLayerTableRecord>(drawing.contents().record(TableKind::layer, name));
}

TEST_F(ColorInFiles, RedGreenAndBlueGoBeforeTheIndexAndLoseTheNameOfTheirBook)
{
    auto drawing = dxf::readWhole(dxf::file(
        "0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 70 1; 0 LAYER; 2 A; 70 0; 62 -30; 420 16711680\n"
        "430 BOOK$RED; 6 Continuous; 0 ENDTAB; 0 ENDSEC; 0 EOF\n"));
    EXPECT_EQ(layer(*drawing, L"A")->color().colorIndex(), 1);
    layer(*drawing, L"A")->setIsLocked(true);
    EXPECT_THAT(drawingText(*drawing), AllOf(HasSubstr("-30\n"), HasSubstr("BOOK$RED")));
    layer(*drawing, L"A")->setColor(colorOf(1));
    EXPECT_THAT(drawingText(*drawing), Not(HasSubstr("BOOK$RED")));
}

} // namespace
