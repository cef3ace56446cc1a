#include "host/recording_sink.h"
#include "support/ge_samples.h"
#include "support/host_test.h"
#include "support/objects.h"

#include <algorithm>
#include <cmath>

using namespace tests;
using korra::ObjectAccess;

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

/// A dimension of the drawing and what its block shows.
class DimensionGraphicsTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        id_ = addEntity(new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0}));
    }

    void measure(KdDbDimension* dimension) { id_ = addEntity(dimension); }

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

    const KdDbDimension& dimension() const
    {
        return *KdDbDimension::cast(ObjectAccess::object(id_));
    }

    RecordingSink shown() const { return drawn(dimension()); }

    std::wstring text() const
    {
        const RecordingSink sink = shown();
        return sink.texts.empty() ? L"" : sink.texts[0].text;
    }

    KdGePoint3d textCenter() const
    {
        const auto corners = shown().texts.at(0).corners();
        return corners[0] + (corners[2] - corners[0]) / 2.0;
    }

    double textAngle() const
    {
        const auto corners = shown().texts.at(0).corners();
        return std::atan2(corners[1].y - corners[0].y, corners[1].x - corners[0].x);
    }

    /// Total length of what is drawn on the line y = 10, from x = `from` to x = `to`.
    double onDimensionLine(double from, double to) const
    {
        double sum = 0.0;
        for (const auto& segment : shown().segments) {
            if (segment.start.y != 10.0 || segment.end.y != 10.0)
                continue;
            const auto [low, high] = std::minmax(segment.start.x, segment.end.x);
            sum += std::max(0.0, std::min(high, to) - std::max(low, from));
        }
        return sum;
    }

    /// True when an upright line is drawn at x, as extension lines are.
    bool hasUpright(double x) const
    {
        return std::ranges::any_of(shown().segments, [&](const auto& segment) {
            return segment.start.x == x && segment.end.x == x &&
                   std::abs(segment.end.y - segment.start.y) > 5.0;
        });
    }

    KdDbObjectId id_;
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

TEST_F(DimensionGraphicsTest, GapKeepsTheLineFromTheText)
{
    const double before = onDimensionLine(0, 40);
    set(&KdDbDimension::setDimgap, 1.09);
    EXPECT_NEAR(before - onDimensionLine(0, 40), 2.0, 1e-9);
    const std::size_t lines = shown().segments.size();
    set(&KdDbDimension::setDimgap, -1.09);
    EXPECT_EQ(shown().segments.size(), lines + 4); // a box about the text
}

TEST_F(DimensionGraphicsTest, ScaleEnlargesTextAndArrows)
{
    EXPECT_NEAR(shown().texts[0].height, 0.18, 1e-12);
    set(&KdDbDimension::setDimscale, 5.0);
    EXPECT_NEAR(shown().texts[0].height, 0.9, 1e-12);
    KdDbExtents box;
    ASSERT_EQ(dimension().getGeomExtents(box), Kdapi::eOk);
    EXPECT_NEAR(box.maxPoint().y, 10 + 5 * 0.18, 1e-9); // the extension lines' overshoot
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
    EXPECT_LT(textCenter().x, 2.0);
    set(&KdDbDimension::setDimjust, 2);
    EXPECT_GT(textCenter().x, 38.0);
    set(&KdDbDimension::setDimjust, 3);
    EXPECT_NEAR(std::abs(textAngle()), kPi / 2, 1e-9);
    EXPECT_NEAR(textCenter().x, 0.0, 1e-9);
    EXPECT_GT(textCenter().y, 10.0);

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

TEST_F(DimensionGraphicsTest, WhatDoesNotFitGoesOutside)
{
    measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {0.8, 0, 0}, {0, 10, 0}));
    const auto isInside = [this] { return textCenter().x > 0.0 && textCenter().x < 0.8; };
    const auto arrowsAreOutside = [this] { return onDimensionLine(-1, -0.01) > 0.3; };
    set(&KdDbDimension::setDimtih, false);
    set(&KdDbDimension::setDimdec, 0); // text "1"
    EXPECT_TRUE(isInside());
    EXPECT_FALSE(arrowsAreOutside());

    set(&KdDbDimension::setDimdec, 1); // text "0.8": either fits, not both
    EXPECT_TRUE(isInside());
    EXPECT_TRUE(arrowsAreOutside());
    EXPECT_EQ(onDimensionLine(0.01, 0.79), 0.0);
    set(&KdDbDimension::setDimtofl, true);
    EXPECT_GT(onDimensionLine(0.0, 0.8), 0.0);
    set(&KdDbDimension::setDimatfit, 2);
    EXPECT_FALSE(isInside());
    EXPECT_FALSE(arrowsAreOutside());
    set(&KdDbDimension::setDimatfit, 0);
    EXPECT_FALSE(isInside());
    EXPECT_TRUE(arrowsAreOutside());
    set(&KdDbDimension::setDimtix, true);
    EXPECT_TRUE(isInside());
}

TEST_F(DimensionGraphicsTest, RadiusAndDiameterCarryTheirSign)
{
    measure(new KdDbRadialDimension({0, 0, 0}, {3, 4, 0}, 0.0));
    EXPECT_EQ(text(), L"R5.0000");
    measure(new KdDbDiametricDimension({3, 4, 0}, {-3, -4, 0}, 0.0));
    EXPECT_EQ(text(), L"\u00D810.0000");
    EXPECT_LT(textCenter().distanceTo({0, 0, 0}), 1e-9);

    // Too small for the text: it stands outside, beyond the point of the arc.
    measure(new KdDbRadialDimension({0, 0, 0}, {0.3, 0.4, 0}, 2.0));
    EXPECT_GT(textCenter().distanceTo({0, 0, 0}), 2.5);
}

TEST_F(DimensionGraphicsTest, AnglesAreMeasuredWhereTheArcIs)
{
    const KdGePoint3d right(10, 0, 0);
    const KdGePoint3d up(0, 10, 0);
    measure(new KdDbAngularDimension({0, 0, 0}, right, up, {5, 5, 0}));
    EXPECT_EQ(text(), L"90\u00B0");
    set(&KdDbDimension::setDimadec, 2);
    EXPECT_EQ(text(), L"90.00\u00B0");
    ASSERT_FALSE(shown().curves.empty());
    EXPECT_NEAR(shown().curves[0]->distanceTo({std::sqrt(50.0), 0, 0}), 0.0, 1e-9);

    measure(new KdDbAngularDimension({0, 0, 0}, right, up, {-5, 5, 0}));
    set(&KdDbDimension::setDimse1, true);
    EXPECT_NEAR(dimension().measurement(), 1.5 * kPi, 1e-12);
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
        const KdGePoint3d center = textCenter();
        change([&](auto& opened) { EXPECT_EQ(opened.transformBy(matrix), Kdapi::eOk); });
        EXPECT_NEAR(dimension().measurement(), measured, 1e-9);
        EXPECT_LT(textCenter().distanceTo(matrix * center), 1e-9);
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
    ObjectAccess::describe(*ordinate, giver);
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
