#include "support/ge_samples.h"

#include <gtest/gtest.h>

using namespace tests;

namespace {

void expectNear(const KdGePoint3d& actual, const KdGePoint3d& expected, double tolerance)
{
    EXPECT_LE(actual.distanceTo(expected), tolerance)
        << actual.x << ", " << actual.y << ", " << actual.z;
}

} // namespace

TEST(GeAngle, NormalAnglesStayStrictlyBelowAFullTurn)
{
    for (const double angle : {-0.0, -1e-300, 1e-17, KdGe::kFullTurn, -KdGe::kFullTurn, -7.0, 1e6,
                               std::nextafter(KdGe::kFullTurn, 0.0)}) {
        const double normal = KdGe::normalAngle(angle);
        EXPECT_GE(normal, 0.0) << angle;
        EXPECT_LT(normal, KdGe::kFullTurn) << angle;
        EXPECT_FALSE(std::signbit(normal)) << angle;
        EXPECT_NEAR(std::sin(normal), std::sin(angle), 1e-9) << angle;
        EXPECT_NEAR(std::cos(normal), std::cos(angle), 1e-9) << angle;
    }
    EXPECT_TRUE(std::isnan(KdGe::normalAngle(HUGE_VAL)));
}

TEST(GeAngle, DirectionsJustBelowTheXAxisHaveAngleZero)
{
    EXPECT_EQ(KdGe::directionAngle(0.0, 0.0), 0.0);
    EXPECT_DOUBLE_EQ(KdGe::directionAngle(0.0, -1.0), 1.5 * kPi);
    EXPECT_EQ(KdGeVector3d(1.0, -1e-17, 0.0).angleOnPlane(KdGePlane()), 0.0);
    EXPECT_EQ(KdGeVector3d::kXAxis.angleTo({1.0, -1e-17, 0.0}, KdGeVector3d::kZAxis), 0.0);
}

TEST(GeVector, AnglesKeepFullPrecisionNearZeroAndHalfATurn)
{
    const double small = 1e-9;
    const KdGeVector3d turned(std::cos(small), std::sin(small), 0.0);

    EXPECT_NEAR(KdGeVector3d::kXAxis.angleTo(turned), small, 1e-24);
    EXPECT_NEAR(kPi - KdGeVector3d::kXAxis.angleTo(-turned), small, 1e-15);
    EXPECT_NEAR(turned.angleTo(KdGeVector3d::kXAxis, KdGeVector3d::kZAxis), KdGe::kFullTurn - small,
                1e-15);
}

TEST(GeVector, AngleOnPlaneIsMeasuredFromThePlanesOwnXAxisOfTheProjection)
{
    const KdGePlane sideways(KdGePoint3d::kOrigin, KdGeVector3d::kXAxis); // x axis is world y
    EXPECT_DOUBLE_EQ(KdGeVector3d(5.0, 1.0, 1.0).angleOnPlane(sideways), kPi / 4.0);
    EXPECT_EQ(KdGeVector3d(5.0, 0.0, 0.0).angleOnPlane(sideways), 0.0);

    const KdGePlane fromBelow(KdGePoint3d::kOrigin, -KdGeVector3d::kZAxis); // x axis is -world x
    EXPECT_DOUBLE_EQ(KdGeVector3d(1.0, 1.0, 0.0).angleOnPlane(fromBelow), 0.75 * kPi);
}

TEST(GeVector, TheZeroVectorIsLeftAloneAndIsParallelToNothing)
{
    const KdGeVector3d tiny(1e-11, 0.0, 0.0);
    EXPECT_TRUE(tiny.isZeroLength());
    EXPECT_EQ(tiny.normal(), tiny);
    EXPECT_EQ(tiny.normal(KdGeTol().setEqualVector(1e-12)), KdGeVector3d::kXAxis);
    EXPECT_FALSE(tiny.isParallelTo(KdGeVector3d::kXAxis));
    EXPECT_EQ(KdGeVector3d::kIdentity.perpVector(), KdGeVector3d::kIdentity);
    EXPECT_EQ(KdGeVector3d(1.0, 2.0, 3.0).rotateBy(1.0, KdGeVector3d::kIdentity),
              KdGeVector3d(1.0, 2.0, 3.0));
    EXPECT_TRUE(KdGeVector3d(0.0, 3.0, 0.0).isParallelTo({0.0, -1e6, 0.0}));
}

TEST(GePoint, TurnsCounterClockwiseAndScalesAboutTheGivenPoint)
{
    const KdGePoint3d about(1e7, -1e7, 3.0);
    KdGePoint3d point = about + KdGeVector3d(2.0, 0.0, 5.0);
    point.rotateBy(kPi / 2.0, KdGeVector3d::kZAxis * 7.0, about);
    expectNear(point, about + KdGeVector3d(0.0, 2.0, 5.0), 1e-8);

    expectNear(KdGePoint3d(1.0, 0.0, 0.0).rotateBy(2.0 * kPi / 3.0, {1.0, 1.0, 1.0}),
               {0.0, 1.0, 0.0}, 1e-15);

    EXPECT_EQ(KdGePoint3d(1.0, 2.0, 3.0).scaleBy(1.5, {3.0, 2.0, 1.0}), KdGePoint3d(0.0, 2.0, 4.0));
}

TEST(GePoint, EqualityIsADistanceUnderTheTolerance)
{
    const KdGePoint3d origin;
    EXPECT_TRUE(origin.isEqualTo({0.9e-10, 0.0, 0.0}));
    EXPECT_FALSE(origin.isEqualTo({0.9e-10, 0.9e-10, 0.0}));
    EXPECT_TRUE(origin.isEqualTo({0.0, 3.0, 4.0}, KdGeTol().setEqualPoint(5.0)));
    EXPECT_FALSE(origin.isEqualTo({std::nan(""), 0.0, 0.0}, KdGeTol().setEqualPoint(5.0)));
}

TEST(GeExtents, AnEmptyBoxIsAStateOfItsOwn)
{
    KdGeExtents3d box;
    EXPECT_TRUE(box.isEmpty());
    box.addExt(KdGeExtents3d());
    EXPECT_TRUE(box.isEmpty());
    EXPECT_FALSE(box.meets(box, 1e6));

    box.addPoint(KdGePoint3d::kOrigin);
    EXPECT_FALSE(box.isEmpty());
    box.addExt(KdGeExtents3d());
    EXPECT_EQ(box.minPoint(), KdGePoint3d::kOrigin);
    EXPECT_EQ(box.maxPoint(), KdGePoint3d::kOrigin);
}

TEST(GePlane, ALineMeetsAPlaneInItsFoot)
{
    // Dropping a perpendicular: the plane through the point, square to the line.
    const std::tuple<KdGePoint3d, KdGePoint3d, KdGePoint3d, KdGePoint3d> cases[] = {
        {{0, 0, 0}, {10, 0, 0}, {25, 5, 3}, {25, 0, 0}},
        {{0, 0, 0}, {1e-6, 0, 0}, {3, 4, 0}, {3, 0, 0}},
        {{1e7, 1e7, 0}, {1e7 + 1, 1e7 + 1, 0}, {1e7 + 4, 1e7, 0}, {1e7 + 2, 1e7 + 2, 0}},
    };
    for (const auto& [start, end, point, expected] : cases) {
        KdGePoint3d foot(9, 9, 9);
        const KdGeLine3d line(start, end);
        ASSERT_TRUE(KdGePlane(point, line.derivative()).intersectWith(line, foot));
        expectNear(foot, expected, 4e-9);
    }
}

TEST(GePlane, WhereThereIsNotOnePointTheOutPointStays)
{
    const KdGePlane ground;
    const KdGePoint3d untouched(7, 8, 9);
    const std::vector<KdGeLine3d> lines = {
        {KdGePoint3d(0, 0, 1), KdGePoint3d(1, 0, 1)}, // parallel
        {KdGePoint3d(0, 0, 0), KdGePoint3d(1, 0, 0)}, // within
        {KdGePoint3d(0, 0, 1), KdGePoint3d(0, 0, 1)}, // coincident points
        {KdGePoint3d(0, 0, 1), KdGePoint3d(0, 0, 1 - 1e-11)},
    };
    for (const KdGeLine3d& line : lines) {
        KdGePoint3d point = untouched;
        EXPECT_FALSE(ground.intersectWith(line, point));
        EXPECT_EQ(point, untouched);
    }
    KdGePoint3d point = untouched;
    const KdGePlane withoutNormal(KdGePoint3d::kOrigin, KdGeVector3d::kIdentity);
    EXPECT_FALSE(withoutNormal.intersectWith(KdGeLine3d({0, 0, 1}, KdGePoint3d(1, 1, 2)), point));
    EXPECT_FALSE(ground.intersectWith(KdGeLineSeg3d({0, 0, 2}, {0, 0, 1}), point));
    EXPECT_EQ(point, untouched);
    EXPECT_TRUE(ground.intersectWith(KdGeLineSeg3d({0, 0, 2}, {0, 0, 1e-11}), point));
}

TEST(GePlane, DistancesAreSignedTowardsTheNormal)
{
    const KdGePlane plane({1, 1, 1}, KdGeVector3d(0, 0, -3));
    EXPECT_EQ(plane.signedDistanceTo({5, 6, 4}), -3.0);
    EXPECT_EQ(plane.distanceTo({5, 6, 4}), 3.0);
    EXPECT_EQ(plane.closestPointTo({5, 6, 4}), KdGePoint3d(5, 6, 1));

    const KdGePlane spanned(KdGePoint3d::kOrigin, {0, 2, 0}, {0, 1, 5});
    EXPECT_EQ(spanned.normal(), KdGeVector3d::kXAxis);
    EXPECT_EQ(spanned.xAxis(), KdGeVector3d::kYAxis);
    EXPECT_EQ(spanned.yAxis(), KdGeVector3d::kZAxis);
}
