#include "orvex/outlines.h"

#include "support/ge_samples.h"
#include "support/room_test.h"

#include <cmath>

namespace {

using Curves = std::vector<std::unique_ptr<KdDbCurve>>;
using Vertices = std::vector<KdGePoint3d>;

KdDbRegion* newRegion(const Curves& curves)
{
    KdArray<KdDbCurve*> given;
    for (const auto& curve : curves)
        given.append(curve.get());
    KdArray<KdDbRegion*> regions;
    EXPECT_EQ(KdDbRegion::createFromCurves(given, regions), Kdapi::eOk);
    return regions.length() == 1 ? regions[0] : nullptr;
}

Curves lines(const Vertices& corners)
{
    Curves curves;
    for (std::size_t i = 1; i < corners.size(); ++i)
        curves.push_back(std::make_unique<KdDbLine>(corners[i - 1], corners[i]));
    return curves;
}

template <class... Curve>
Curves curves(Curve*... curve)
{
    Curves made;
    (made.emplace_back(curve), ...);
    return made;
}

Vertices verticesOf(const KdDbPolyline* polyline)
{
    EXPECT_FALSE(polyline->isClosed());
    EXPECT_FALSE(polyline->hasBulges());
    Vertices vertices(polyline->numVerts());
    for (unsigned int i = 0; i < polyline->numVerts(); ++i)
        polyline->getPointAt(i, vertices[i]);
    return vertices;
}

Vertices outlineOf(const Curves& edges)
{
    const std::unique_ptr<KdDbRegion> region(newRegion(edges));
    KdDbPolyline* outline = nullptr;
    EXPECT_EQ(GetPolylineFromRegion(region.get(), outline), 1);
    const std::unique_ptr<KdDbPolyline> owned(outline);
    return outline ? verticesOf(outline) : Vertices();
}

class OutlinesTest : public HostTest {};

TEST_F(OutlinesTest, LinesAreWalkedEndToEndWhicheverWayTheyRun)
{
    const KdGePoint3d a(0, 0, 0), b(9, 0, 0), c(9, 5, 0), d(0, 5, 0);
    EXPECT_EQ(outlineOf(lines({a, b, c, d, a})), (Vertices{a, b, c, d, a}));
    // The first edge meets the second with its start; the third runs against the others.
    const auto turned =
        curves(new KdDbLine(b, a), new KdDbLine(b, c), new KdDbLine(d, c), new KdDbLine(d, a));
    EXPECT_EQ(outlineOf(turned), (Vertices{a, b, c, d, a}));
    const auto meeting = curves(new KdDbLine(b, a), new KdDbLine(c, b), new KdDbLine(c, a));
    EXPECT_EQ(outlineOf(meeting), (Vertices{a, b, c, a}));
}

TEST_F(OutlinesTest, RoundEdgesGetPointsByTheirWidthAndRadius)
{
    const auto circle = [](double radius) {
        return new KdDbCircle({50, 0, 0}, KdGeVector3d::kZAxis, radius);
    };
    EXPECT_EQ(outlineOf(curves(circle(1))).size(), 43U + 43U + 1U);
    EXPECT_EQ(outlineOf(curves(circle(10))).size(), 199U) << "a hundred of each half at most";
    EXPECT_EQ(outlineOf(curves(circle(0.01))).size(), 43U + 43U + 1U) << "by the width";

    // Sectors: two lines and an arc; a flatter arc gets more points.
    const auto sector = [](double radius, double start, double end) {
        const auto at = [&](double angle) {
            return KdGePoint3d(radius * std::cos(angle), radius * std::sin(angle), 0);
        };
        return outlineOf(curves(new KdDbLine({0, 0, 0}, at(start)),
                                new KdDbArc({0, 0, 0}, radius, start, end),
                                new KdDbLine(at(end), {0, 0, 0})));
    };
    const auto quarter = sector(1.3, 0.2, 0.2 + kPi / 2);
    // w = 3 pi^2 / 4: trunc(8.99 w) = 66 is less than trunc(0.3222 w sqrt(1000)) = 75.
    ASSERT_EQ(quarter.size(), 1U + 74U + 1U + 1U);
    for (std::size_t i = 1; i < 75; ++i) {
        const double angle = 0.2 + kPi / 2 * static_cast<double>(i - 1) / 74;
        EXPECT_NEAR(quarter[i].x, 1.3 * std::cos(angle), 1e-14) << i;
        EXPECT_NEAR(quarter[i].y, 1.3 * std::sin(angle), 1e-14) << i;
    }
    EXPECT_EQ(sector(1, 6, 5.99).size(), 1U + 1U + 1U + 1U) << "a turn but for 0.01: two samples";
    EXPECT_EQ(sector(0.1, 0, 0.1).size(), 1U + 86U + 1U + 1U);
}

TEST_F(OutlinesTest, ARegionOfSeveralLoopsGivesOneChain)
{
    auto edges = lines({{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 9, 0}, {0, 0, 0}});
    edges.emplace_back(new KdDbEllipse({4, 4, 0}, KdGeVector3d::kZAxis, {2, 0, 0}, 0.5));
    const Vertices outline = outlineOf(edges);
    ASSERT_GT(outline.size(), 60U);
    EXPECT_EQ(outline[4], KdGePoint3d(6, 4, 0)) << "jumps to the hole";
    EXPECT_EQ(outline.back(), outline.front());
}

TEST_F(OutlinesTest, BoundingsHaveTheirStartTwiceAndEqualSteps)
{
    KdDbEllipse round({1, 2, 3}, KdGeVector3d::kZAxis, {8, 0, 0}, 1.0);
    const std::unique_ptr<KdDbPolyline> bounding(CreateBounding(&round));
    ASSERT_TRUE(bounding);
    const Vertices vertices = verticesOf(bounding.get());
    // The step is the diagonal / 40, 0.0707 of the radius: 89 of them in the turn.
    ASSERT_EQ(vertices.size(), 1U + 89U + 1U);
    EXPECT_EQ(vertices[0], KdGePoint3d(9, 2, 0)) << "in the plane of the drawing";
    EXPECT_EQ(vertices[1], vertices[0]);
    EXPECT_TRUE(vertices.back().isEqualTo(vertices[0]));
    const double step = 16 * std::sqrt(2.0) / 40;
    for (std::size_t i = 1; i < 89; ++i)
        EXPECT_NEAR(vertices[i + 1].distanceTo(vertices[i]), 16 * std::sin(step / 16), 1e-12);

    KdDbEllipse onEdge({0, 0, 0}, {1, 0, 0}, {0, 0, 5}, 1e-9);
    const std::unique_ptr<KdDbPolyline> upright(CreateBounding(&onEdge));
    EXPECT_NEAR(upright->numVerts(), 100'002, 1) << "steps of a part of the length at least";
    KdDbLine line({0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(CreateBounding(&line), nullptr);
    EXPECT_EQ(CreateBounding(nullptr), nullptr);
}

TEST_F(OutlinesTest, WithoutEdgesThereIsNoOutline)
{
    KdDbRegion empty;
    KdDbPolyline* outline = nullptr;
    EXPECT_EQ(GetPolylineFromRegion(&empty, outline), 0);
    EXPECT_EQ(GetPolylineFromRegion(nullptr, outline), 0);
    EXPECT_EQ(outline, nullptr);
}

TEST_F(OutlinesTest, OnlyWhatClosesInOnePlaneMakesARegion)
{
    const auto status = [](const Curves& curves) {
        KdArray<KdDbCurve*> given;
        for (const auto& curve : curves)
            given.append(curve.get());
        KdArray<KdDbRegion*> regions;
        const auto made = KdDbRegion::createFromCurves(given, regions);
        EXPECT_EQ(regions.length(), 0);
        return made;
    };
    EXPECT_EQ(status({}), Kdapi::eInvalidInput);
    EXPECT_EQ(status(curves(static_cast<KdDbLine*>(nullptr))), Kdapi::eNullObjectPointer);
    EXPECT_EQ(status(lines({{0, 0, 0}, {9, 0, 0}, {9, 9, 0}})), Kdapi::eInvalidInput) << "open";
    EXPECT_EQ(status(lines({{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 9, 1}, {0, 0, 0}})),
              Kdapi::eInvalidInput)
        << "not flat";
    EXPECT_EQ(status(lines({{0, 0, 0}, {9, 0, 0}, {0, 0, 0}})), Kdapi::eDegenerateGeometry);
    EXPECT_EQ(status(lines({{0, 0, 0}, {9, 0, 0}, {std::nan(""), 9, 0}, {0, 0, 0}})),
              Kdapi::eInvalidInput);
    EXPECT_EQ(status(curves(new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 3),
                            new KdDbCircle({0, 0, 1}, KdGeVector3d::kZAxis, 2))),
              Kdapi::eInvalidInput)
        << "two planes";
}

} // namespace
