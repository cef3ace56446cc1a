// Colours: the palette, red, green and blue, and both in files.

#include "dxf_samples.h"

#include "support/host_test.h"
#include "support/objects.h"
#include "tables/palette.h"

using korra::drawingText;
using korra::nearestPaletteIndex;
using korra::paletteColor;
using korra::Rgb;
using korra::TableKind;
using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace tests {
namespace {

TEST(Palette, HasThePublishedColors)
{
    const std::vector<std::pair<int, Rgb>> published = {
        {1, {255, 0, 0}},      {7, {255, 255, 255}},  {8, {128, 128, 128}},   {9, {192, 192, 192}},
        {10, {255, 0, 0}},     {11, {255, 127, 127}}, {13, {165, 82, 82}},    {19, {38, 19, 19}},
        {21, {255, 159, 127}}, {23, {165, 103, 82}},  {30, {255, 127, 0}},    {92, {0, 165, 0}},
        {140, {0, 191, 255}},  {174, {0, 0, 127}},    {241, {255, 127, 159}}, {250, {51, 51, 51}},
        {255, {255, 255, 255}}};
    for (const auto& [index, color] : published)
        EXPECT_EQ(paletteColor(index), color) << index;
}

TEST(Palette, TakesTheNearestColorAndOfEqualOnesTheLowest)
{
    for (int index = 1; index <= 255; ++index) {
        const int nearest = nearestPaletteIndex(paletteColor(index));
        EXPECT_EQ(paletteColor(nearest), paletteColor(index)) << index;
        EXPECT_LE(nearest, index);
    }
    EXPECT_EQ(nearestPaletteIndex({255, 255, 255}), 7);
    EXPECT_EQ(nearestPaletteIndex({250, 4, 3}), 1);
}

TEST(Color, KeepsAnIndexAsItIsAndRedGreenAndBlueBesideTheirNearest)
{
    KdCmColor color;
    color.setColorIndex(65533);
    EXPECT_EQ(color.colorIndex(), 65533);
    EXPECT_EQ(color.red(), 0);
    color.setRGB(10, 250, 3);
    EXPECT_EQ(color.colorIndex(), 3);
    EXPECT_EQ(color.green(), 250);
    EXPECT_EQ(color.colorMethod(), KdCmColor::kByColor);
    color.setColorIndex(5);
    EXPECT_EQ(color.blue(), 255);
    EXPECT_EQ(color.green(), 0);
    EXPECT_EQ(color.colorMethod(), KdCmColor::kByIndex);
}

class ColorInFiles : public HostTest {};

Open<KdDbLayerTableRecord> layer(KdDbDatabase& drawing, const wchar_t* name)
{
    return Open<KdDbLayerTableRecord>(drawing.contents().record(TableKind::layer, name));
}

constexpr std::string_view kLayerSample = R"(0 SECTION; 2 TABLES
0 TABLE; 2 LAYER; 70 1
0 LAYER; 2 A; 70 0; 62 -30; 420 16711680; 430 BOOK$RED; 6 Continuous
0 ENDTAB
0 ENDSEC
0 EOF
)";

TEST_F(ColorInFiles, RedGreenAndBlueGoBeforeTheIndexAndStayWithAnotherChange)
{
    auto drawing = dxf::readWhole(dxf::file(kLayerSample));
    EXPECT_EQ(layer(*drawing, L"A")->color().colorIndex(), 1);
    EXPECT_TRUE(layer(*drawing, L"A")->isOff());
    layer(*drawing, L"A")->setIsLocked(true);
    EXPECT_THAT(drawingText(*drawing), AllOf(HasSubstr("-30\n"), HasSubstr("BOOK$RED")));
}

TEST_F(ColorInFiles, AnIndexTakesRedGreenAndBlueOutOfTheFile)
{
    auto drawing = dxf::readWhole(dxf::file(kLayerSample));
    KdCmColor red;
    red.setColorIndex(1);
    layer(*drawing, L"A")->setColor(red);
    layer(*drawing, L"A")->setIsOff(false);
    const std::string text = drawingText(*drawing);
    EXPECT_THAT(text, Not(AnyOf(HasSubstr("16711680"), HasSubstr("BOOK$RED"))));

    auto again = dxf::readWhole(text);
    EXPECT_EQ(layer(*again, L"A")->color(), red);
    EXPECT_FALSE(layer(*again, L"A")->isOff());
}

TEST_F(ColorInFiles, WhatIsSetComesBack)
{
    KdCmColor color;
    color.setRGB(1, 2, 3);
    auto* line = new KdDbLine;
    line->setColor(color);
    const KdDbObjectId id = addEntity(line);
    KdCmColor beyond;
    beyond.setColorIndex(65533);
    layer(database(), L"0")->setColor(beyond);

    auto again = dxf::readWhole(drawingText(database()));
    EXPECT_EQ(dxf::find<KdDbEntity>(*again, id.handle().value())->color(), color);
    EXPECT_EQ(layer(*again, L"0")->color().colorIndex(), 65533);
    EXPECT_FALSE(layer(*again, L"0")->isOff());
}

} // namespace
} // namespace tests
