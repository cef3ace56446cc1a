// What a dimension's block shows, measured on what is drawn.

#include "dimension_test.h"
#include "dxf_samples.h"
#include "support/drawing.h"
#include "support/ge_samples.h"

#include <algorithm>
#include <cmath>

using namespace tests;
using korra::ObjectAccess;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// Gives a dimension a block of graphics, as a file does.
class BlockGiver final : public korra::PassingVisitor {
public:
    explicit BlockGiver(KdDbObjectId block) : block_(block) {}

    void name(int, KdDbObjectId& value, korra::TableKind table, korra::Reference) override
    {
        if (table == korra::TableKind::block)
            value = block_;
    }

private:
    KdDbObjectId block_;
};

std::vector<RecordingSink::Segment> withColor(const RecordingSink& sink, std::uint16_t index)
{
    std::vector<RecordingSink::Segment> result;
    for (const auto& segment : sink.segments) {
        if (segment.traits.color.colorIndex() == index)
            result.push_back(segment);
    }
    return result;
}

/// How many of the segments end at a point.
std::ptrdiff_t endsAt(const std::vector<RecordingSink::Segment>& segments, const KdGePoint3d& point)
{
    return std::ranges::count_if(segments, [&](const auto& segment) {
        return segment.start.distanceTo(point) < 1e-9 || segment.end.distanceTo(point) < 1e-9;
    });
}

/// Total length of what is drawn on the line y = 10, from x = `from` to x = `to`.
double onDimensionLine(const RecordingSink& sink, double from, double to)
{
    double sum = 0.0;
    for (const auto& segment : sink.segments) {
        if (segment.start.y != 10.0 || segment.end.y != 10.0)
            continue;
        const auto [low, high] = std::minmax(segment.start.x, segment.end.x);
        sum += std::max(0.0, std::min(high, to) - std::max(low, from));
    }
    return sum;
}

double totalLength(const RecordingSink& sink)
{
    double sum = 0.0;
    for (const auto& curve : sink.curves)
        sum += curve->length();
    return sum;
}

KdGePoint3d middle(const KdGePoint3d& a, const KdGePoint3d& b)
{
    return a + (b - a) / 2.0;
}

KdGePoint3d textCenter(const RecordingSink& sink)
{
    const auto corners = sink.texts.at(0).corners();
    return middle(corners[0], corners[2]);
}

double textWidth(const RecordingSink& sink)
{
    const auto corners = sink.texts.at(0).corners();
    return corners[0].distanceTo(corners[1]);
}

class DimensionGraphicsTest : public DimensionTest {
protected:
    template <class Change>
    void change(Change change)
    {
        const Open<KdDbDimension> opened(id_);
        change(*opened);
    }

    /// Sets a variable of the dimension alone.
    template <class Value>
    void set(Kdapi::ErrorStatus (KdDbDimension::*setter)(Value), Value value)
    {
        EXPECT_EQ(((*Open<KdDbDimension>(id_)).*setter)(value), Kdapi::eOk);
    }

    std::wstring text() const
    {
        const RecordingSink sink = shown();
        return sink.texts.empty() ? L"" : sink.texts[0].text;
    }

    KdGePoint3d textCenter() const { return ::textCenter(shown()); }

    double textAngle() const
    {
        const auto corners = shown().texts.at(0).corners();
        return std::atan2(corners[1].y - corners[0].y, corners[1].x - corners[0].x);
    }

    double onDimensionLine(double from, double to) const
    {
        return ::onDimensionLine(shown(), from, to);
    }

    /// True when an upright line is drawn at x, as extension lines are.
    bool hasUpright(double x) const
    {
        return std::ranges::any_of(shown().segments, [&](const auto& segment) {
            return segment.start.x == x && segment.end.x == x &&
                   std::abs(segment.end.y - segment.start.y) > 5.0;
        });
    }
};

TEST_F(DimensionGraphicsTest, ClosingMakesABlockOfItsOwn)
{
    const auto* block = ObjectAccess::live<KdDbBlockTableRecord>(dimension().dimBlockId());
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->name().substr(0, 2), L"*D");
    EXPECT_TRUE(hasUpright(0.0) && hasUpright(40.0));
    EXPECT_LT(textCenter().distanceTo({20, 10, 0}), 1e-9);

    const KdDbObjectId before = dimension().dimBlockId();
    set(&KdDbDimension::setDimdec, 1);
    EXPECT_EQ(dimension().dimBlockId(), before);

    // A drawing may have blocks of the very next names.
    std::vector<KdDbObjectId> taken = {before};
    for (int number = 10; number < 40; ++number) {
        const std::wstring name = L"*D" + std::to_wstring(number);
        addEntityToBlock(name.c_str(), new KdDbPoint);
        taken.push_back(blockId(name.c_str()));
    }
    measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {9, 0, 0}, {0, 10, 0}));
    EXPECT_THAT(taken, Not(Contains(dimension().dimBlockId())));
    const KdDbObjectId own = dimension().dimBlockId();
    const std::wstring name = ObjectAccess::live<KdDbBlockTableRecord>(own)->name();
    EXPECT_EQ(blockId(name.c_str()), own);
}

TEST_F(DimensionGraphicsTest, NumberFollowsDecimalsAndFactor)
{
    EXPECT_EQ(text(), L"40.0000");
    set(&KdDbDimension::setDimdec, 2);
    set(&KdDbDimension::setDimlfac, 0.123456);
    EXPECT_EQ(text(), L"4.94");
    set(&KdDbDimension::setDimlfac, -2.0);
    EXPECT_EQ(text(), L"80.00");
    change([](auto& opened) { opened.setDimensionText(L"about <> mm"); });
    EXPECT_EQ(text(), L"about 80.00 mm");
    change([](auto& opened) { opened.setDimensionText(L" "); });
    EXPECT_TRUE(shown().texts.empty());
}

TEST_F(DimensionGraphicsTest, ExtensionAndDimensionLinesAreSuppressedOneByOne)
{
    set(&KdDbDimension::setDimse1, true);
    EXPECT_FALSE(hasUpright(0.0));
    EXPECT_TRUE(hasUpright(40.0));
    set(&KdDbDimension::setDimse2, true);
    EXPECT_FALSE(hasUpright(40.0));

    EXPECT_GT(onDimensionLine(0, 19), 15.0);
    set(&KdDbDimension::setDimsd1, true);
    EXPECT_EQ(onDimensionLine(0, 19), 0.0);
    EXPECT_GT(onDimensionLine(21, 40), 15.0);
    set(&KdDbDimension::setDimsd2, true);
    EXPECT_EQ(onDimensionLine(0, 40), 0.0);
}

TEST_F(DimensionGraphicsTest, TextStandsWhereTheStyleSays)
{
    const double raised = 0.09 + 0.18 / 2;
    set(&KdDbDimension::setDimtad, 1);
    EXPECT_NEAR(textCenter().y, 10.0 + raised, 1e-9);
    EXPECT_NEAR(onDimensionLine(0, 40), 40.0, 1e-9); // unbroken
    set(&KdDbDimension::setDimtad, 4);
    EXPECT_NEAR(textCenter().y, 10.0 - raised, 1e-9);
    set(&KdDbDimension::setDimtad, 0);
    set(&KdDbDimension::setDimtvp, 2.0);
    EXPECT_NEAR(textCenter().y, 10.0 + 2.0 * 0.18, 1e-9);
    EXPECT_NEAR(onDimensionLine(0, 40), 40.0, 1e-9);
    set(&KdDbDimension::setDimtvp, 0.0);
    set(&KdDbDimension::setDimjust, 1);
    const double halfWidth = textWidth(shown()) / 2;
    EXPECT_NEAR(textCenter().x, 0.18 + 0.09 + halfWidth, 1e-9);
    set(&KdDbDimension::setDimjust, 2);
    EXPECT_NEAR(textCenter().x, 40 - 0.18 - 0.09 - halfWidth, 1e-9);
    for (const auto& [justify, x] : {std::pair(3, 0.0), std::pair(4, 40.0)}) {
        set(&KdDbDimension::setDimjust, justify);
        EXPECT_NEAR(textAngle(), kPi / 2, 1e-9);
        EXPECT_LT(textCenter().distanceTo({x, 10 + 0.18 + 0.09 + halfWidth, 0}), 1e-9);
        set(&KdDbDimension::setDimtad, 1);
        EXPECT_NEAR(textCenter().x, x - raised, 1e-9);
        set(&KdDbDimension::setDimtad, 0);
    }

    // Outside is the far side of the line.
    measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, -10, 0}));
    set(&KdDbDimension::setDimtad, 2);
    EXPECT_LT(textCenter().y, -10.0);
    set(&KdDbDimension::setDimtad, 1);
    EXPECT_GT(textCenter().y, -10.0);
}

TEST_F(DimensionGraphicsTest, TextIsHorizontalOrAlongTheLine)
{
    // Measured either way round the text reads from below or from the right.
    const KdGePoint3d ends[] = {{0, 0, 0}, {30, 40, 0}};
    for (const std::size_t first : {0u, 1u}) {
        measure(new KdDbAlignedDimension(ends[first], ends[1 - first], {-8, 6, 0}));
        EXPECT_EQ(text(), L"50.0000");
        EXPECT_NEAR(textAngle(), 0.0, 1e-12);
        set(&KdDbDimension::setDimtih, false);
        EXPECT_NEAR(textAngle(), std::atan2(40, 30), 1e-9) << "from end " << first;
    }

    measure(new KdDbRotatedDimension(kPi / 2, {0, 0, 0}, {0, 0.3, 0}, {10, 0, 0}));
    EXPECT_NEAR(textAngle(), 0.0, 1e-12) << "outside";
    set(&KdDbDimension::setDimtoh, false);
    EXPECT_NEAR(textAngle(), kPi / 2, 1e-9) << "outside";
    EXPECT_GT(textCenter().y, 0.3);
}

TEST_F(DimensionGraphicsTest, GapKeepsTheLineFromTheTextAndBelowZeroFramesIt)
{
    for (const double gap : {0.09, 1.09}) {
        restyle({{L"dimgap", gap}});
        EXPECT_NEAR(onDimensionLine(0, 40), 40 - textWidth(shown()) - 2 * gap, 1e-9);
    }
    measure(new KdDbAlignedDimension({0, 0, 0}, {30, 40, 0}, {-8, 6, 0}));
    restyle({{L"dimgap", -0.3}, {L"dimtih", 0}, {L"dimclrd", 1}});
    const auto corners = shown().texts.at(0).corners();
    const KdGeVector3d right = (corners[1] - corners[0]).normal() * 0.3;
    const KdGeVector3d up = (corners[3] - corners[0]).normal() * 0.3;
    const auto lines = withColor(shown(), 1);
    for (const KdGePoint3d& corner : {corners[0] - right - up, corners[1] + right - up,
                                      corners[2] + right + up, corners[3] - right + up})
        EXPECT_EQ(endsAt(lines, corner), 2);
}

TEST_F(DimensionGraphicsTest, SizesFollowTheScaleWhichCountsAboveZero)
{
    for (const auto& [scale, factor] :
         {std::pair(0.0, 1.0), std::pair(0.5, 0.5), std::pair(5.0, 5.0)}) {
        restyle({{L"dimscale", scale}, {L"dimexo", 0.3}, {L"dimexe", 0.7}, {L"dimclre", 2}});
        EXPECT_NEAR(shown().texts.at(0).height, 0.18 * factor, 1e-12);
        const auto lines = withColor(shown(), 2);
        EXPECT_EQ(lines.size(), 2u);
        for (const double x : {0.0, 40.0}) {
            EXPECT_EQ(endsAt(lines, {x, 0.3 * factor, 0}), 1) << scale;
            EXPECT_EQ(endsAt(lines, {x, 10 + 0.7 * factor, 0}), 1) << scale;
        }
    }
    // None are drawn to points that lie nearer to the line than the offset.
    restyle({{L"dimexo", 10.0}, {L"dimclre", 2}});
    EXPECT_TRUE(withColor(shown(), 2).empty());
}

TEST_F(DimensionGraphicsTest, ATextStyleOfOneHeightDecidesOnIt)
{
    for (const auto& [fixed, height] : {std::pair("0", 0.5), std::pair("0.7", 0.7)}) {
        const auto drawing = dxf::readWhole(dxf::file(
            std::string("0 SECTION; 2 TABLES; 0 TABLE; 2 STYLE; 0 STYLE; 5 7A; 2 ROMAN; 40 ") +
            fixed +
            "; 0 ENDTAB; 0 TABLE; 2 DIMSTYLE; 0 DIMSTYLE; 105 7B; 2 X; 340 7A; 140 0.1\n"
            "40 5; 0 ENDTAB; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 DIMENSION; 5 A; 8 0; 3 X; 70 32\n"
            "10 0; 20 10; 11 0; 21 0; 13 0; 23 0; 14 40; 24 0; 0 ENDSEC; 0 EOF\n"));
        dxf::changeObject<KdDbDimension>(*drawing, 0xA, [](auto& each) { each.setDimdec(0); });
        const auto text = drawn(*dxf::find<KdDbDimension>(*drawing, 0xA)).texts.at(0);
        EXPECT_NEAR(text.height, height, 1e-12);
        EXPECT_EQ(text.style, dxf::find<KdDbObject>(*drawing, 0x7A)->objectId());
    }
}

TEST_F(DimensionGraphicsTest, LinesEndInArrowsOrTicks)
{
    const KdGePoint3d tips[] = {{0, 10, 0}, {40, 10, 0}};
    const Changes red = {{L"dimclrd", 1}, {L"dimasz", 0.6}, {L"dimdle", 0.5}};
    restyle(red);
    auto lines = withColor(shown(), 1);
    EXPECT_EQ(lines.size(), 2u + 2 * 3);
    for (const KdGePoint3d& tip : tips) {
        EXPECT_EQ(endsAt(lines, tip), 3); // the line and two sides
        const KdGePoint3d back = tip + KdGeVector3d(tip.x > 0 ? -0.6 : 0.6, 0, 0);
        for (const double side : {0.1, -0.1})
            EXPECT_EQ(endsAt(lines, back + KdGeVector3d(0, side, 0)), 2);
    }

    restyle({{L"dimclrd", 1}, {L"dimtsz", 0.25}, {L"dimscale", 2.0}, {L"dimdle", 0.5}});
    lines = withColor(shown(), 1);
    EXPECT_EQ(lines.size(), 2u + 2);
    for (const KdGePoint3d& tip : tips) {
        const double half = 0.5 / std::sqrt(2.0);
        EXPECT_EQ(endsAt(lines, tip + KdGeVector3d(half, half, 0)), 1);
        EXPECT_EQ(endsAt(lines, tip - KdGeVector3d(half, half, 0)), 1);
        EXPECT_EQ(endsAt(lines, tip + KdGeVector3d(tip.x > 0 ? 1 : -1, 0, 0)), 1) << "DIMDLE";
    }

    restyle({{L"dimclrd", 1}, {L"dimasz", 0.0}});
    EXPECT_EQ(withColor(shown(), 1).size(), 2u);
}

TEST_F(DimensionGraphicsTest, PartsHaveTheColorsOfTheStyleAndTheLayerOfTheDimension)
{
    const auto layer = addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Sizes");
    EXPECT_EQ(database().setClayer(addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Current")),
              Kdapi::eOk);
    change([&](auto& opened) { opened.setLayer(layer); });
    restyle({{L"dimclrd", 1}, {L"dimclre", 2}, {L"dimclrt", 3}});
    const RecordingSink sink = shown();
    EXPECT_EQ(sink.texts.at(0).traits.color, colorOf(3));
    EXPECT_EQ(sink.texts.at(0).traits.layer, layer);
    for (const auto& segment : sink.segments) {
        const bool isExtension = segment.start.x == segment.end.x && segment.end.y > 10.1;
        EXPECT_EQ(segment.traits.color, colorOf(isExtension ? 2 : 1));
        EXPECT_EQ(segment.traits.layer, layer);
    }
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
        const RecordingSink sink = shown();
        const double stub = each.arrowsInside ? 0.18 : 0.36;
        const double reach = textWidth(sink) / 2 + 0.09;
        EXPECT_NEAR(::textCenter(sink).x, each.textInside ? 0.4 : 0.8 + stub + reach, 1e-9);
        const double back = each.arrowsInside ? 0.18 : -0.18;
        EXPECT_EQ(endsAt(withColor(sink, 1), {back, 10 + 0.03, 0}), 2);
        EXPECT_EQ(endsAt(withColor(sink, 1), {0.8 - back, 10 - 0.03, 0}), 2);

        const double broken = each.textInside ? std::min(0.8, 2 * reach) : 0.0;
        const double left = each.arrowsInside || each.noStubs ? 0.0 : 0.36;
        const double right =
            each.textInside ? std::max(0.0, left + 0.4 - std::max(0.4, reach)) : stub;
        EXPECT_NEAR(::onDimensionLine(sink, 0, 0.8), each.lineInside ? 0.8 - broken : 0.0, 1e-9);
        EXPECT_NEAR(::onDimensionLine(sink, -9, 0), each.textInside ? right : left, 1e-9);
        EXPECT_NEAR(::onDimensionLine(sink, 0.8, 9), right, 1e-9);
    }
}

TEST_F(DimensionGraphicsTest, RadiusAndDiameterCarryTheirSign)
{
    measure(new KdDbRadialDimension({0, 0, 0}, {3, 4, 0}, 0.0));
    restyle({{L"dimclrd", 1}, {L"dimasz", 0.6}});
    EXPECT_EQ(text(), L"R5.0000");
    const auto lines = withColor(shown(), 1);
    EXPECT_EQ(endsAt(lines, {0, 0, 0}), 1) << "from the centre, without an arrow";
    EXPECT_EQ(endsAt(lines, {3, 4, 0}), 3);
    EXPECT_EQ(lines.size(), 2u + 3);
    measure(new KdDbDiametricDimension({3, 4, 0}, {-3, -4, 0}, 0.0));
    EXPECT_EQ(text(), L"\u00D810.0000");
    EXPECT_LT(textCenter().distanceTo({0, 0, 0}), 1e-9);
    EXPECT_EQ(endsAt(withColor(shown(), 1), {3, 4, 0}) * endsAt(withColor(shown(), 1), {-3, -4, 0}),
              3 * 3);
}

TEST_F(DimensionGraphicsTest, SmallCirclesHaveTheTextOutsideAndTheirCentreMarked)
{
    for (const double leader : {0.0, 2.0}) {
        measure(new KdDbRadialDimension({1, 2, 0}, {1.1, 2, 0}, leader));
        restyle({});
        const double x = 1.1 + std::max(0.36, leader) + 0.09 + textWidth(shown()) / 2;
        EXPECT_LT(textCenter().distanceTo({x, 2, 0}), 1e-9);
    }
    change([](auto& opened) { opened.transformBy(KdGeMatrix3d::scaling(1.5)); });
    EXPECT_NEAR(textCenter().x, 1.5 * (1.1 + 2.0) + 0.09 + textWidth(shown()) / 2, 1e-9);

    // DIMCEN, DIMTOFL, and half the width of the mark.
    const std::tuple<double, int, double> marks[] = {
        {0.07, 0, 0.07}, {-0.2, 0, 0.2}, {0.0, 0, 0.0}, {0.07, 1, 0.0}};
    for (const auto& [size, line, half] : marks)
        for (const bool isDiameter : {false, true}) {
            if (isDiameter)
                measure(new KdDbDiametricDimension({1.1, 2, 0}, {0.9, 2, 0}, 0.0));
            else
                measure(new KdDbRadialDimension({1, 2, 0}, {1.1, 2, 0}, 0.0));
            restyle({{L"dimcen", size}, {L"dimtofl", line}});
            const RecordingSink sink = shown();
            for (const KdGeVector3d& end : {KdGeVector3d(1, 0, 0), KdGeVector3d(-1, 0, 0),
                                            KdGeVector3d(0, 1, 0), KdGeVector3d(0, -1, 0)}) {
                const double distance = half > 0 ? half : std::max(0.07, std::abs(size));
                EXPECT_EQ(endsAt(sink.segments, KdGePoint3d(1, 2, 0) + end * distance),
                          half > 0 ? 1 : 0)
                    << size;
            }
        }
}

TEST_F(DimensionGraphicsTest, AnglesAreMeasuredWhereTheArcIs)
{
    const KdGePoint3d right(10, 0, 0);
    const KdGePoint3d up(0, 10, 0);
    const double radius = std::sqrt(50.0);
    for (const bool clockwise : {false, true}) {
        measure(new KdDbAngularDimension({0, 0, 0}, clockwise ? up : right, clockwise ? right : up,
                                         {5, 5, 0}));
        restyle({{L"dimadec", 2}, {L"dimtih", 0}});
        EXPECT_EQ(text(), L"90.00\u00B0");
        EXPECT_LT(textCenter().distanceTo({5, 5, 0}), 1e-9);
        const RecordingSink sink = shown();
        EXPECT_NEAR(totalLength(sink), radius * kPi / 2 - textWidth(sink) - 2 * 0.09, 1e-9);
        for (const auto& curve : sink.curves) {
            const KdGePoint3d point =
                curve->evalPoint((curve->startParam() + curve->endParam()) / 2);
            EXPECT_NEAR(point.distanceTo({0, 0, 0}), radius, 1e-9);
            EXPECT_TRUE(point.x > 0 && point.y > 0);
        }
    }
    measure(new KdDbAngularDimension({0, 0, 0}, right, up, {-5, 5, 0}));
    EXPECT_NEAR(dimension().measurement(), 1.5 * kPi, 1e-12);
}

TEST_F(DimensionGraphicsTest, TextThatTheUserHasPlacedStaysThereAndTheLineFollows)
{
    // Flags of the kind, where the text is, and the length of the line on either side of its end.
    const double gap = 0.09;

    struct {
        const char* flags;
        double x, y;
        bool isMoved;
    } const cases[] = {{"160", 30, 10, true}, {"160", 30, 14, true}, {"160", 46, 10, true},
                       {"160", -6, 10, true}, {"160", 46, 14, true}, {"32", 30, 10, false},
                       {"224", 30, 14, true}};

    for (const auto& [flags, x, y, isMoved] : cases) {
        SCOPED_TRACE("text at " + std::to_string(x) + ", " + std::to_string(y));
        const auto number = [](double value) { return std::to_string(static_cast<int>(value)); };
        const auto drawing = dxf::readWhole(
            dxf::withEntities("0 DIMENSION; 5 A; 8 0; 10 0; 20 10; 11 " + number(x) + "; 21 " +
                              number(y) + "; 70 " + flags + "; 13 0; 23 0; 14 40; 24 0; 50 0"));
        dxf::changeObject<KdDbDimension>(*drawing, 0xA, [](auto& each) { each.setDimdec(0); });
        const RecordingSink sink = drawn(*dxf::find<KdDbDimension>(*drawing, 0xA));
        const double place = isMoved ? x : 20.0;
        EXPECT_LT(::textCenter(sink).distanceTo({place, isMoved ? y : 10.0, 0}), 1e-9);
        const double reach = textWidth(sink) / 2;
        const bool isInside = place > 0 && place < 40;
        const bool isBroken = y == 10 || !isMoved;
        EXPECT_NEAR(::onDimensionLine(sink, 0, 40),
                    isInside && isBroken ? 40 - 2 * (reach + gap) : 40, 1e-9);
        const double beyond = isBroken ? -reach - gap : reach;
        EXPECT_NEAR(::onDimensionLine(sink, 40, 99), place > 40 ? place - 40 + beyond : 0, 1e-9);
        EXPECT_NEAR(::onDimensionLine(sink, -99, 0), place < 0 ? -place + beyond : 0, 1e-9);
        EXPECT_THAT(korra::drawingText(*drawing), HasSubstr(std::string(" 70\n") + flags + "\n"));
    }
}

TEST_F(DimensionGraphicsTest, ArcsRunOnToTextThatTheUserHasPlaced)
{
    // The text stands at an angle on the circle of a dimension from 0 to 90 degrees.
    for (const auto& [degrees, extra] :
         {std::pair(45, 0.0), std::pair(120, 30.0), std::pair(-40, 40.0)}) {
        const double angle = degrees * kPi / 180;
        const auto drawing = dxf::readWhole(dxf::withEntities(
            "0 DIMENSION; 5 A; 8 0; 10 30; 20 40; 11 " + std::to_string(50 * std::cos(angle)) +
            "; 21 " + std::to_string(50 * std::sin(angle)) +
            "; 70 165; 13 10; 23 0; 14 0; 24 10; 15 0; 25 0"));
        dxf::changeObject<KdDbDimension>(*drawing, 0xA, [](auto& each) { each.setDimtih(false); });
        const RecordingSink sink = drawn(*dxf::find<KdDbDimension>(*drawing, 0xA));
        const double taken = (textWidth(sink) + 2 * 0.09) / (extra > 0 ? 2 : 1);
        EXPECT_NEAR(totalLength(sink), 50 * (90 + extra) * kPi / 180 - taken, 0.1) << degrees;
    }
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
        set(&KdDbDimension::setDimtih, false);
        const double measured = dimension().measurement();
        const RecordingSink before = shown();
        change([&](auto& opened) { EXPECT_EQ(opened.transformBy(matrix), Kdapi::eOk); });
        EXPECT_NEAR(dimension().measurement(), measured, 1e-9);
        const RecordingSink after = shown();
        EXPECT_LT(::textCenter(after).distanceTo(matrix * ::textCenter(before)), 1e-9);
        ASSERT_EQ(after.segments.size(), before.segments.size());
        for (std::size_t i = 0; i < after.segments.size(); ++i) {
            const auto& [start, end, traits] = before.segments[i];
            EXPECT_LT(after.segments[i].start.distanceTo(matrix * start), 1e-9) << i;
            EXPECT_LT(after.segments[i].end.distanceTo(matrix * end), 1e-9) << i;
        }
    }
}

TEST_F(DimensionGraphicsTest, CopiesGetGraphicsOfTheirOwn)
{
    auto* copy = static_cast<KdDbDimension*>(dimension().clone());
    ASSERT_EQ(copy->transformBy(KdGeMatrix3d::translation({0, 100, 0})), Kdapi::eOk);
    const auto baseline = [&] { return drawn(*copy).texts.at(0).frame.translation().y; };
    EXPECT_NEAR(baseline(), 100 + 10 - 0.09, 1e-9);
    addEntity(copy);
    EXPECT_NE(copy->dimBlockId(), dimension().dimBlockId());
    EXPECT_NEAR(textCenter().y, 10.0, 1e-9);
    EXPECT_NEAR(baseline(), 100 + 10 - 0.09, 1e-9);
}

TEST_F(DimensionGraphicsTest, RecomputingNeedsAWriterAndKeepsWhatCannotBeMade)
{
    {
        const Open<KdDbDimension> reader(id_, KdDb::kForRead);
        EXPECT_EQ(reader->recomputeDimBlock(true), Kdapi::eNotOpenForWrite);
        EXPECT_EQ(reader->recomputeDimBlock(false), Kdapi::eOk);
    }
    change([](auto& writer) {
        writer.setDimdec(0);
        EXPECT_EQ(writer.recomputeDimBlock(true), Kdapi::eOk);
    });

    auto* ordinate = new KdDbDimension;
    addEntityToBlock(L"*D77", new KdDbLine(KdGePoint3d(), KdGePoint3d(1, 0, 0)));
    BlockGiver giver(blockId(L"*D77"));
    ordinate->describe(giver);
    measure(ordinate);
    change([](auto& writer) {
        EXPECT_EQ(writer.recomputeDimBlock(true), Kdapi::eNotApplicable);
        EXPECT_EQ(writer.setDimdec(1), Kdapi::eOk);
    });
    EXPECT_EQ(shown().segments.size(), 1u);

    KdDbRotatedDimension free;
    EXPECT_EQ(free.recomputeDimBlock(true), Kdapi::eNotInDatabase);
}

} // namespace
