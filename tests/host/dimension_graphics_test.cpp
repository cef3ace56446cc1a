// What a dimension's block shows, measured on what is drawn.

#include "dimension_test.h"
#include "dxf_samples.h"
#include "support/ge_samples.h"

#include <cmath>

using korra::ObjectAccess;

namespace {

constexpr std::string_view kLength = "10 0; 20 10; 13 0; 23 0; 14 40; 24 0; ";

/// A drawing with a dimension, its number without decimals, and what is noted before it.
std::unique_ptr<KdDbDatabase> withDimension(const std::string& notes,
                                            const std::string& before = "")
{
    auto drawing = dxf::readWhole(dxf::file(
        before + "0 SECTION; 2 ENTITIES; 0 DIMENSION; 5 A; 8 0\n" + notes + "; 0 ENDSEC; 0 EOF\n"));
    dxf::changeObject<KdDbDimension>(*drawing, 0xA, [](auto& each) { each.setDimdec(0); });
    return drawing;
}

Shown shownIn(const KdDbDatabase& drawing)
{
    return Shown(*dxf::find<KdDbDimension>(drawing, 0xA));
}

class DimensionGraphicsTest : public DimensionTest {
protected:
    template <class Change>
    void change(Change change)
    {
        change(*Open<KdDbDimension>(id_));
    }

    std::wstring text() const
    {
        const Shown drawn = shown();
        return drawn.texts.empty() ? L"" : drawn.texts[0].text;
    }

    void expectTextAt(double x, double y) const
    {
        EXPECT_LT(shown().textCenter().distanceTo({x, y, 0}), 1e-9)
            << shown().textCenter().x << ", " << shown().textCenter().y;
    }
};

TEST_F(DimensionGraphicsTest, ADimensionAndItsCopyHaveBlocksOfTheirOwnWithFreeNames)
{
    const KdDbObjectId block = dimension().dimBlockId();
    for (int number = 1; number < 40; ++number)
        addEntityToBlock((L"*D" + std::to_wstring(number)).c_str(), new KdDbPoint);
    auto* copy = static_cast<KdDbDimension*>(dimension().clone());
    ASSERT_EQ(copy->transformBy(KdGeMatrix3d::translation({0, 100, 0})), Kdapi::eOk);
    addEntity(copy);
    const auto* own = ObjectAccess::live<KdDbBlockTableRecord>(copy->dimBlockId());
    EXPECT_GE(std::stoi(own->name().substr(2)), 40);
    EXPECT_NEAR(Shown(*copy).textCenter().y, 110.0, 1e-9);

    const auto parts = [&] {
        return ObjectAccess::entities(*ObjectAccess::live<KdDbBlockTableRecord>(block))
            .ids()
            .size();
    };
    const std::size_t before = parts();
    change([](auto& opened) { opened.setDimdec(1); });
    EXPECT_EQ(dimension().dimBlockId(), block);
    EXPECT_LE(parts(), before) << "what was there is gone";
    expectTextAt(20, 10);
}

TEST_F(DimensionGraphicsTest, NumberFollowsFactorAndText)
{
    change([](auto& opened) { opened.setDimlfac(-2.0); });
    EXPECT_EQ(text(), L"80.0000");
    change([](auto& opened) { opened.setDimensionText(L"about <> mm"); });
    EXPECT_EQ(text(), L"about 80.0000 mm");
    change([](auto& opened) { opened.setDimensionText(L" "); });
    EXPECT_EQ(text(), L"");
}

TEST_F(DimensionGraphicsTest, ExtensionAndDimensionLinesAreSuppressedOneByOne)
{
    // The variable, extension lines left on either side, and whether each half of the line is.
    const std::tuple<const wchar_t*, int, int, bool, bool> cases[] = {
        {L"dimse1", 0, 1, true, true},
        {L"dimse2", 1, 0, true, true},
        {L"dimsd1", 1, 1, false, true},
        {L"dimsd2", 1, 1, true, false}};
    for (const auto& [variable, left, right, firstHalf, secondHalf] : cases) {
        restyle({{variable, 1}, {L"dimclre", 2}, {L"dimexe", 0.5}});
        EXPECT_EQ(shown().ends(2, {0, 10.5, 0}), left);
        EXPECT_EQ(shown().ends(2, {40, 10.5, 0}), right);
        EXPECT_EQ(shown().onLine(0, 19) > 15.0, firstHalf);
        EXPECT_EQ(shown().onLine(21, 40) > 15.0, secondHalf);
    }
    restyle({{L"dimsd1", 1}, {L"dimsd2", 1}});
    EXPECT_EQ(shown().onLine(-99, 99), 0.0);
}

TEST_F(DimensionGraphicsTest, TextStandsWhereTheStyleSays)
{
    const double width = shown().textWidth();
    const double raise = 0.09 + 0.18 / 2;            // the gap and half the height
    const double distance = 0.18 + 0.09 + width / 2; // an arrow, the gap and half the text
    const double broken = 40 - width - 2 * 0.09;

    struct {
        Changes style;
        double x, y, angle, line;
    } const cases[] = {
        {{}, 20, 10, 0, broken},
        {{{L"dimtad", 1}}, 20, 10 + raise, 0, 40},
        {{{L"dimtad", 4}}, 20, 10 - raise, 0, 40},
        {{{L"dimtvp", 2.0}}, 20, 10 + 2 * 0.18, 0, 40},
        {{{L"dimjust", 1}}, distance, 10, 0, broken},
        {{{L"dimjust", 2}}, 40 - distance, 10, 0, broken},
        {{{L"dimjust", 3}}, 0, 10 + distance, kPi / 2, 40},
        {{{L"dimjust", 4}, {L"dimtad", 1}}, 40 - raise, 10 + distance, kPi / 2, 40},
    };

    for (const auto& each : cases) {
        SCOPED_TRACE("case " + std::to_string(&each - cases));
        restyle(each.style);
        expectTextAt(each.x, each.y);
        EXPECT_NEAR(shown().textAngle(), each.angle, 1e-9);
        EXPECT_NEAR(shown().onLine(0, 40), each.line, 1e-9);
    }

    measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, -10, 0}));
    restyle({{L"dimtad", 1}});
    expectTextAt(20, -10 + raise);
    restyle({{L"dimtad", 2}}); // outside is the far side of the line
    expectTextAt(20, -10 - raise);
}

TEST_F(DimensionGraphicsTest, TextIsHorizontalOrAlongTheLine)
{
    // Measured either way round the text reads from below or from the right.
    const KdGePoint3d near(0, 0, 0);
    const KdGePoint3d far(30, 40, 0);
    for (const auto& [from, to] : {std::pair(near, far), std::pair(far, near)}) {
        measure(new KdDbAlignedDimension(from, to, {-8, 6, 0}));
        EXPECT_NEAR(shown().textAngle(), 0.0, 1e-12);
        restyle({{L"dimtih", 0}});
        EXPECT_NEAR(shown().textAngle(), std::atan2(40, 30), 1e-9);
        restyle({});
    }
    measure(new KdDbRotatedDimension(kPi / 2, {0, 0, 0}, {0, 0.3, 0}, {10, 0, 0}));
    restyle({{L"dimtih", 0}});
    EXPECT_NEAR(shown().textAngle(), 0.0, 1e-12) << "outside";
    restyle({{L"dimtoh", 0}});
    EXPECT_NEAR(shown().textAngle(), kPi / 2, 1e-9) << "outside";
}

TEST_F(DimensionGraphicsTest, GapKeepsTheLineFromTheTextAndBelowZeroFramesIt)
{
    restyle({{L"dimgap", 1.09}});
    EXPECT_NEAR(shown().onLine(0, 40), 40 - shown().textWidth() - 2 * 1.09, 1e-9);

    measure(new KdDbAlignedDimension({0, 0, 0}, {30, 40, 0}, {-8, 6, 0}));
    restyle({{L"dimgap", -0.3}, {L"dimtih", 0}, {L"dimclrd", 1}});
    const Shown framed = shown();
    const KdGeVector3d right = (framed.corner(1) - framed.corner(0)).normal() * 0.3;
    const KdGeVector3d up = (framed.corner(3) - framed.corner(0)).normal() * 0.3;
    for (const KdGePoint3d& corner : {framed.corner(0) - right - up, framed.corner(1) + right - up,
                                      framed.corner(2) + right + up, framed.corner(3) - right + up})
        EXPECT_EQ(framed.ends(1, corner), 2);
}

TEST_F(DimensionGraphicsTest, SizesFollowTheScaleUnlessTheTextStyleHasAHeight)
{
    for (const auto& [scale, factor] : {std::pair(0.0, 1.0), std::pair(0.5, 0.5)}) {
        restyle({{L"dimscale", scale}, {L"dimexo", 0.3}, {L"dimexe", 0.7}, {L"dimclre", 2}});
        EXPECT_NEAR(shown().texts.at(0).height, 0.18 * factor, 1e-12);
        EXPECT_EQ(shown().ends(2, {0, 0.3 * factor, 0}), 1) << scale;
        EXPECT_EQ(shown().ends(2, {40, 10 + 0.7 * factor, 0}), 1) << scale;
    }
    restyle({{L"dimexo", 10.0}, {L"dimclre", 2}});
    EXPECT_EQ(shown().lines(2), 0) << "the points lie nearer to the line than the offset";

    const auto noted =
        withDimension(std::string(kLength) + "3 X",
                      "0 SECTION; 2 TABLES; 0 TABLE; 2 STYLE; 0 STYLE; 5 7A; 2 ROMAN; 40 0.7\n"
                      "0 ENDTAB; 0 TABLE; 2 DIMSTYLE; 0 DIMSTYLE; 105 7B; 2 X; 340 7A\n"
                      "140 0.1; 40 5; 0 ENDTAB; 0 ENDSEC\n");
    EXPECT_NEAR(shownIn(*noted).texts.at(0).height, 0.7, 1e-12);
}

TEST_F(DimensionGraphicsTest, LinesEndInArrowsOrTicks)
{
    restyle({{L"dimclrd", 1}, {L"dimasz", 0.6}, {L"dimdle", 0.5}});
    const Shown arrows = shown();
    EXPECT_EQ(arrows.lines(1), 2 + 2 * 3);
    EXPECT_EQ(arrows.ends(1, {0, 10, 0}), 3); // the line and two sides
    EXPECT_EQ(arrows.ends(1, {40 - 0.6, 9.9, 0}), 2);

    restyle({{L"dimclrd", 1}, {L"dimtsz", 0.25}, {L"dimscale", 2.0}, {L"dimdle", 0.5}});
    const Shown ticks = shown();
    const double half = 0.5 / std::sqrt(2.0);
    EXPECT_EQ(ticks.lines(1), 2 + 2);
    EXPECT_EQ(ticks.ends(1, {half, 10 + half, 0}), 1);
    EXPECT_EQ(ticks.ends(1, {40 - half, 10 - half, 0}), 1);
    EXPECT_EQ(ticks.ends(1, {-1, 10, 0}), 1) << "DIMDLE";
}

TEST_F(DimensionGraphicsTest, PartsHaveTheLayerOfTheDimensionAndTheTextAColorOfItsOwn)
{
    const auto layer = addLayer(L"Sizes");
    database().setClayer(addLayer(L"Current"));
    change([&](auto& opened) { opened.setLayer(layer); });
    restyle({{L"dimclrt", 3}});
    const Shown parts = shown();
    EXPECT_EQ(parts.texts.at(0).traits.color, colorOf(3));
    EXPECT_EQ(parts.texts.at(0).traits.layer, layer);
    for (const auto& segment : parts.segments)
        EXPECT_EQ(segment.traits.layer, layer);
}

TEST_F(DimensionGraphicsTest, WhatDoesNotFitGoesOutside)
{
    struct {
        int decimals, fit, textIn, lineIn, noStubs; ///< DIMATFIT, DIMTIX, DIMTOFL, DIMSOXD
        bool textInside, arrowsInside, lineInside;
    } const cases[] = {
        {0, 3, 0, 0, 0, true, true, true},    {1, 3, 0, 0, 0, true, false, false},
        {1, 3, 0, 1, 0, true, false, true},   {1, 2, 0, 0, 0, false, true, true},
        {1, 0, 0, 0, 0, false, false, false}, {1, 0, 0, 1, 1, false, false, true},
        {1, 0, 1, 0, 1, true, false, false},  {1, 1, 0, 0, 1, true, false, false},
        {6, 3, 0, 0, 0, false, true, true},   {6, 2, 0, 0, 1, false, true, true},
        {6, 1, 0, 1, 0, false, false, true},  {6, 3, 1, 0, 0, true, false, false},
    };

    measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {0.8, 0, 0}, {0, 10, 0}));
    for (const auto& each : cases) {
        SCOPED_TRACE("case " + std::to_string(&each - cases));
        restyle({{L"dimdec", each.decimals},
                 {L"dimatfit", each.fit},
                 {L"dimtix", each.textIn},
                 {L"dimtofl", each.lineIn},
                 {L"dimsoxd", each.noStubs},
                 {L"dimclrd", 1}});
        const Shown parts = shown();
        const double stub = each.arrowsInside ? 0.18 : 0.36;
        const double reach = parts.textWidth() / 2 + 0.09;
        EXPECT_NEAR(parts.textCenter().x, each.textInside ? 0.4 : 0.8 + stub + reach, 1e-9);
        const double back = each.arrowsInside ? 0.18 : -0.18;
        EXPECT_EQ(parts.ends(1, {back, 10 + 0.03, 0}), 2);
        EXPECT_EQ(parts.ends(1, {0.8 - back, 10 - 0.03, 0}), 2);

        const double broken = each.textInside ? std::min(0.8, 2 * reach) : 0.0;
        const double left = each.arrowsInside || each.noStubs ? 0.0 : 0.36;
        const double right =
            each.textInside ? std::max(0.0, left + 0.4 - std::max(0.4, reach)) : stub;
        EXPECT_NEAR(parts.onLine(0, 0.8), each.lineInside ? 0.8 - broken : 0.0, 1e-9);
        EXPECT_NEAR(parts.onLine(-9, 0), each.textInside ? right : left, 1e-9);
        EXPECT_NEAR(parts.onLine(0.8, 9), right, 1e-9);
    }
}

TEST_F(DimensionGraphicsTest, RadiusAndDiameterCarryTheirSign)
{
    measure(new KdDbRadialDimension({0, 0, 0}, {3, 4, 0}, 0.0));
    restyle({{L"dimclrd", 1}, {L"dimasz", 0.6}});
    EXPECT_EQ(text(), L"R5.0000");
    EXPECT_EQ(shown().lines(1), 2 + 3);
    EXPECT_EQ(shown().ends(1, {0, 0, 0}), 1) << "from the centre, without an arrow";
    EXPECT_EQ(shown().ends(1, {3, 4, 0}), 3);

    measure(new KdDbDiametricDimension({3, 4, 0}, {-3, -4, 0}, 0.0));
    EXPECT_EQ(text(), L"\u00D810.0000");
    expectTextAt(0, 0);
    EXPECT_EQ(shown().ends(1, {3, 4, 0}), 3);
    EXPECT_EQ(shown().ends(1, {-3, -4, 0}), 3);
}

TEST_F(DimensionGraphicsTest, SmallCirclesHaveTheTextOutsideAndTheirCentreMarked)
{
    const auto expectMark = [&](double size, int line, bool isMarked) {
        restyle({{L"dimcen", size}, {L"dimtofl", line}, {L"dimclrd", 1}});
        EXPECT_EQ(shown().ends(1, {1 + std::abs(size), 2, 0}) == 1, isMarked) << size;
        EXPECT_EQ(shown().ends(1, {1, 2 - std::abs(size), 0}) == 1, isMarked) << size;
    };
    measure(new KdDbDiametricDimension({1.1, 2, 0}, {0.9, 2, 0}, 0.0));
    expectMark(-0.2, 0, true);
    expectMark(0.0, 0, false);
    for (const double leader : {0.0, 2.0}) {
        measure(new KdDbRadialDimension({1, 2, 0}, {1.1, 2, 0}, leader));
        expectTextAt(1.1 + std::max(0.36, leader) + 0.09 + shown().textWidth() / 2, 2);
    }
    expectMark(0.07, 0, true);
    expectMark(0.07, 1, false); // the line goes through it
    change([](auto& opened) { opened.transformBy(KdGeMatrix3d::scaling(1.5)); });
    expectTextAt(1.5 * (1.1 + 2.0) + 0.09 + shown().textWidth() / 2, 3);
}

TEST_F(DimensionGraphicsTest, AnglesAreMeasuredWhereTheArcIs)
{
    const KdGePoint3d right(10, 0, 0);
    const KdGePoint3d up(0, 10, 0);
    const double radius = std::sqrt(50.0);
    for (const auto& [first, second] : {std::pair(right, up), std::pair(up, right)}) {
        measure(new KdDbAngularDimension({0, 0, 0}, first, second, {5, 5, 0}));
        restyle({{L"dimadec", 2}, {L"dimtih", 0}});
        EXPECT_EQ(text(), L"90.00\u00B0");
        expectTextAt(5, 5);
        const Shown arc = shown();
        EXPECT_NEAR(arc.arcLength(), radius * kPi / 2 - arc.textWidth() - 2 * 0.09, 1e-9);
        for (const auto& curve : arc.curves) {
            const KdGePoint3d point = curve->startPoint();
            EXPECT_NEAR(point.distanceTo({0, 0, 0}), radius, 1e-9);
            EXPECT_TRUE(point.x > -1e-9 && point.y > -1e-9);
        }
    }
    measure(new KdDbAngularDimension({0, 0, 0}, right, up, {-5, 5, 0}));
    EXPECT_NEAR(dimension().measurement(), 1.5 * kPi, 1e-12);
}

TEST_F(DimensionGraphicsTest, TextThatTheUserHasPlacedStaysThereAndTheLineFollows)
{
    struct {
        int flags;
        double x, y;           ///< of the text in the file
        double placeX, placeY; ///< where it is shown
    } const cases[] = {{160, 30, 10, 30, 10}, {160, 30, 14, 30, 14}, {160, 46, 10, 46, 10},
                       {160, -6, 10, -6, 10}, {160, 46, 14, 46, 14}, {224, 30, 14, 30, 14},
                       {32, 30, 10, 20, 10}};

    for (const auto& each : cases) {
        SCOPED_TRACE("case " + std::to_string(&each - cases));
        const auto noted =
            withDimension(std::string(kLength) + "70 " + std::to_string(each.flags) + "; 11 " +
                          std::to_string(each.x) + "; 21 " + std::to_string(each.y));
        const Shown parts = shownIn(*noted);
        EXPECT_LT(parts.textCenter().distanceTo({each.placeX, each.placeY, 0}), 1e-9);

        // Text in the line interrupts it, and the line goes on to text that stands outside.
        const bool isInLine = each.placeY == 10;
        const double reach = parts.textWidth() / 2;
        const double low = each.placeX - reach - 0.09;
        const double high = each.placeX + reach + 0.09;
        const double end = isInLine ? low : each.placeX + reach;
        const double taken = isInLine ? std::min(high, 40.0) - std::max(low, 0.0) : 0.0;
        EXPECT_NEAR(parts.onLine(0, 40), 40 - std::max(taken, 0.0), 1e-9);
        EXPECT_NEAR(parts.onLine(40, 99), std::max(end - 40, 0.0), 1e-9);
        EXPECT_NEAR(parts.onLine(-99, 0), std::max(-high, 0.0), 1e-9);
    }
}

TEST_F(DimensionGraphicsTest, ArcsRunOnToTextThatTheUserHasPlaced)
{
    // At 40 degrees before the start of an arc from 0 to 90 degrees with a radius of 50.
    const auto noted = withDimension("70 165; 10 30; 20 40; 13 10; 23 0; 14 0; 24 10; 15 0; 25 0\n"
                                     "11 38.302222; 21 -32.139380");
    dxf::changeObject<KdDbDimension>(*noted, 0xA, [](auto& each) { each.setDimtih(false); });
    const Shown arc = shownIn(*noted);
    const double taken = arc.textWidth() / 2 + 0.09;
    EXPECT_NEAR(arc.arcLength(), 50 * (90 + 40) * kPi / 180 - taken, 0.1);
}

TEST_F(DimensionGraphicsTest, TransformMovesTheGraphicsAlong)
{
    const KdGeMatrix3d matrix = KdGeMatrix3d::translation({5, 6, 7}) *
                                KdGeMatrix3d::rotation(0.4, KdGeVector3d(1, 2, 2)) *
                                KdGeMatrix3d::scaling(KdGeScale3d(1, -1, 1));
    for (KdDbDimension* each : std::initializer_list<KdDbDimension*>{
             new KdDbRotatedDimension(0.3, {0, 0, 0}, {40, 5, 0}, {0, 10, 0}),
             new KdDbAlignedDimension({0, 0, 0}, {30, 40, 0}, {-8, 6, 0}),
             new KdDbRadialDimension({0, 0, 0}, {3, 4, 0}, 0.0),
             new KdDbAngularDimension({0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {5, 5, 0})}) {
        measure(each);
        restyle({{L"dimtih", 0}});
        const Shown before = shown();
        change([&](auto& opened) { EXPECT_EQ(opened.transformBy(matrix), Kdapi::eOk); });
        const Shown after = shown();
        EXPECT_EQ(after.texts.at(0).text, before.texts.at(0).text);
        EXPECT_LT(after.textCenter().distanceTo(matrix * before.textCenter()), 1e-9);
        ASSERT_EQ(after.segments.size(), before.segments.size());
        for (std::size_t i = 0; i < after.segments.size(); ++i)
            EXPECT_LT(after.segments[i].end.distanceTo(matrix * before.segments[i].end), 1e-9) << i;
    }
}

TEST_F(DimensionGraphicsTest, RecomputingNeedsAWriterAndKeepsWhatCannotBeMade)
{
    {
        const Open<KdDbDimension> reader(id_, KdDb::kForRead);
        EXPECT_EQ(reader->recomputeDimBlock(true), Kdapi::eNotOpenForWrite);
    }
    KdDbRotatedDimension free;
    EXPECT_EQ(free.recomputeDimBlock(true), Kdapi::eNotInDatabase);

    const auto ordinate = withDimension(
        "70 6; 2 *D7", "0 SECTION; 2 BLOCKS; 0 BLOCK; 8 0; 2 *D7; 10 0; 20 0; 0 LINE\n"
                       "8 0; 10 0; 20 0; 11 1; 21 0; 0 ENDBLK; 8 0; 0 ENDSEC\n");
    dxf::changeObject<KdDbDimension>(*ordinate, 0xA, [](auto& writer) {
        EXPECT_EQ(writer.recomputeDimBlock(true), Kdapi::eNotApplicable);
    });
    EXPECT_EQ(shownIn(*ordinate).segments.size(), 1u);
}

} // namespace
