#include "support/ge_samples.h"

#include <gtest/gtest.h>

using namespace tests;

TEST(GeVector, AnglesKeepFullPrecisionAndStayBelowAFullTurn)
{
    const double small = 1e-9;
    const KdGeVector3d& x = KdGeVector3d::kXAxis;
    const KdGeVector3d turned(std::cos(small), std::sin(small), 0.0);
    EXPECT_NEAR(x.angleTo(turned), small, 1e-24);
    EXPECT_NEAR(kPi - x.angleTo(-turned), small, 1e-15);
    EXPECT_NEAR(turned.angleTo(x, KdGeVector3d::kZAxis), KdGe::kFullTurn - small, 1e-15);
    EXPECT_EQ(x.angleTo({1.0, -1e-17, 0.0}, KdGeVector3d::kZAxis), 0.0);
    for (const double angle : {-0.0, -1e-300, KdGe::kFullTurn, -7.0, 1e6}) {
        const double normal = KdGe::normalAngle(angle);
        EXPECT_TRUE(normal >= 0.0 && normal < KdGe::kFullTurn && !std::signbit(normal)) << angle;
        EXPECT_NEAR(std::remainder(normal - angle, KdGe::kFullTurn), 0.0, 1e-9) << angle;
    }
}

TEST(GeVector, TheZeroVectorIsLeftAloneAndIsParallelToNothing)
{
    const KdGeVector3d tiny(1e-11, 0.0, 0.0);
    EXPECT_EQ(tiny.normal(), tiny);
    EXPECT_FALSE(tiny.isParallelTo(KdGeVector3d::kXAxis));
    EXPECT_EQ(KdGeVector3d::kIdentity.perpVector(), KdGeVector3d::kIdentity);
}

TEST(GePoint, TurnsCounterClockwiseAndScalesAboutTheGivenPoint)
{
    const KdGePoint3d about(1e7, -1e7, 3.0);
    KdGePoint3d point = about + KdGeVector3d(2.0, 0.0, 5.0);
    point.rotateBy(kPi / 2.0, KdGeVector3d::kZAxis * 7.0, about);
    EXPECT_LE(point.distanceTo(about + KdGeVector3d(0.0, 2.0, 5.0)), 1e-8);
    EXPECT_EQ(KdGePoint3d(1.0, 2.0, 3.0).scaleBy(1.5, {3.0, 2.0, 1.0}), KdGePoint3d(0.0, 2.0, 4.0));
}

TEST(GePlane, ALineMeetsAPlaneInOnePointElseTheOutPointStays)
{
    const KdGePoint3d foot(1e7 + 4, 1e7, 0); // the plane through it, square to the line
    const KdGeLine3d line({1e7, 1e7, 0}, KdGePoint3d(1e7 + 1, 1e7 + 1, 0));
    KdGePoint3d point;
    EXPECT_TRUE(KdGePlane(foot, line.derivative()).intersectWith(line, point));
    EXPECT_LE(point.distanceTo({1e7 + 2, 1e7 + 2, 0}), 4e-9);

    const KdGePlane ground;
    const KdGePoint3d met = point;
    for (const KdGePoint3d& second : {KdGePoint3d(1, 0, 1), KdGePoint3d(0, 0, 1)})
        EXPECT_FALSE(ground.intersectWith(KdGeLine3d({0, 0, 1}, second), point));
    EXPECT_FALSE(ground.intersectWith(KdGeLineSeg3d({0, 0, 2}, {0, 0, 1}), point));
    for (const double odd : {std::nan(""), HUGE_VAL}) {
        EXPECT_FALSE(ground.intersectWith(KdGeLine3d({0, 0, 1}, KdGePoint3d(0, odd, 2)), point));
        EXPECT_FALSE(KdGePlane({0, 0, odd}, KdGeVector3d::kZAxis)
                         .intersectWith(KdGeLine3d({0, 0, 1}, KdGePoint3d(0, 0, 2)), point));
    }
    EXPECT_EQ(point, met);
}
