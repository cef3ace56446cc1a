#include "support/ge_samples.h"

#include <gtest/gtest.h>

#include <random>

using namespace tests;

namespace {

KdGeTol within(double distance)
{
    return KdGeTol().setEqualPoint(distance).setEqualVector(distance);
}

} // namespace

TEST(GeMatrix, TheRightFactorActsFirst)
{
    const KdGeMatrix3d move = KdGeMatrix3d::translation({10, 0, 0});
    const KdGeMatrix3d turn = KdGeMatrix3d::rotation(kPi / 2, KdGeVector3d::kZAxis);
    const KdGePoint3d point(1, 0, 0);

    EXPECT_TRUE((move * turn * point).isEqualTo({10, 1, 0}));
    EXPECT_TRUE((turn * move * point).isEqualTo({0, 11, 0}));
    EXPECT_EQ(move * KdGeVector3d(1, 0, 0), KdGeVector3d(1, 0, 0));
}

TEST(GeMatrix, CentredTransformsKeepTheirCentre)
{
    const KdGePoint3d center(3, -4, 5);
    const KdGeMatrix3d transforms[] = {
        KdGeMatrix3d::rotation(1.2, {1, 2, 3}, center),
        KdGeMatrix3d::scaling(7.0, center),
        KdGeMatrix3d::scaling(KdGeScale3d(2, -3, 0.5), center),
        KdGeMatrix3d::mirroring(KdGePlane(center, {1, 1, 0})),
    };
    for (const KdGeMatrix3d& matrix : transforms)
        EXPECT_LE((matrix * center).distanceTo(center), 1e-14);
    EXPECT_EQ(KdGeMatrix3d::rotation(1.2, KdGeVector3d::kIdentity, center),
              KdGeMatrix3d::kIdentity);
}

TEST(GeMatrix, AReflectionIsItsOwnInverseAndTurnsTheHand)
{
    const KdGePlane plane({1, 2, 3}, {3, -1, 2});
    const KdGeMatrix3d mirror = KdGeMatrix3d::mirroring(plane);
    EXPECT_TRUE((mirror * mirror).isEqualTo(KdGeMatrix3d::kIdentity));
    EXPECT_NEAR(mirror.det(), -1.0, 1e-15);

    const KdGePoint3d point(7, 8, 9);
    EXPECT_NEAR(plane.signedDistanceTo(mirror * point), -plane.signedDistanceTo(point), 1e-14);
}

TEST(GeMatrix, TheInverseUndoesAnyRegularMatrix)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> entries(-1.0, 1.0);
    for (int round = 0; round < 200; ++round) {
        KdGeMatrix3d matrix;
        for (unsigned int i = 0; i < 4; ++i)
            for (unsigned int j = 0; j < 4; ++j)
                matrix(i, j) = entries(random) + (i == 3 - j ? 5.0 : 0.0); // rows must be exchanged
        EXPECT_TRUE((matrix * matrix.inverse()).isEqualTo(KdGeMatrix3d::kIdentity, within(1e-14)));
    }
}

TEST(GeMatrix, TheInverseOfAnAffineMatrixStaysAffineAtAnyScale)
{
    for (const double factor : {1e-12, 1.0, 1e12}) {
        const KdGeMatrix3d matrix = KdGeMatrix3d::translation({1e6, -2e6, 3}) *
                                    KdGeMatrix3d::rotation(0.7, {1, 2, 3}) *
                                    KdGeMatrix3d::scaling(KdGeScale3d(factor, -factor, 2 * factor));
        const KdGeMatrix3d inverse = matrix.inverse();
        EXPECT_TRUE(inverse.isAffine()) << factor;
        const KdGePoint3d point = KdGePoint3d(3, 4, 5) / factor;
        EXPECT_LE((inverse * (matrix * point)).distanceTo(point), 1e-9 / factor) << factor;
    }
}

TEST(GeMatrix, ASingularMatrixHasNoInverse)
{
    KdGeMatrix3d matrix;
    for (unsigned int i = 0; i < 3; ++i)
        for (unsigned int j = 0; j < 3; ++j)
            matrix(i, j) = 3.0 * i + j + 1.0; // rank 2, though not to the last bit
    KdGeMatrix3d result = KdGeMatrix3d::translation({1, 2, 3});
    EXPECT_FALSE(matrix.inverse(result));
    EXPECT_EQ(result, KdGeMatrix3d::translation({1, 2, 3}));
    EXPECT_TRUE(matrix.isSingular());
    EXPECT_EQ(matrix.inverse(), KdGeMatrix3d::kIdentity);
    EXPECT_TRUE(KdGeMatrix3d::scaling(0.0).isSingular());
    EXPECT_TRUE(KdGeMatrix3d::scaling(std::nan("")).isSingular());
}

TEST(GeMatrix, PointsAreDividedByTheFourthCoordinate)
{
    KdGeMatrix3d perspective;
    perspective(3, 2) = -0.1;
    EXPECT_TRUE((perspective * KdGePoint3d(1, 2, 5)).isEqualTo({2, 4, 10}));
    EXPECT_EQ(perspective * KdGePoint3d(1, 2, 10), KdGePoint3d(1, 2, 10)); // at the eye: no image
    EXPECT_EQ(perspective * KdGeVector3d(1, 2, 5), KdGeVector3d(1, 2, 5));
    const KdGePoint3d there = perspective * KdGePoint3d(1, 2, 5);
    EXPECT_TRUE((perspective.inverse() * there).isEqualTo({1, 2, 5}));
    EXPECT_FALSE(perspective.isAffine());
}

TEST(GeMatrix, EntityAxesFollowTheArbitraryAxisRule)
{
    const double edge = 1.0 / 64.0;

    // A normal and the world axis that is crossed with it.
    const std::pair<KdGeVector3d, KdGeVector3d> cases[] = {
        {{0, 0, 1}, KdGeVector3d::kYAxis},
        {{0, 0, -1}, KdGeVector3d::kYAxis},
        {{edge * 0.999, 0, 1}, KdGeVector3d::kYAxis},
        {{0, -edge * 1.001, 1}, KdGeVector3d::kZAxis},
        {{edge, 0, std::sqrt(1 - edge * edge)}, KdGeVector3d::kZAxis},
        {{-1, 2, -3}, KdGeVector3d::kZAxis},
    };
    for (const auto& [normal, reference] : cases) {
        const KdGeMatrix3d matrix = KdGeMatrix3d::planeToWorld(normal);
        KdGePoint3d origin;
        KdGeVector3d x, y, z;
        matrix.getCoordSystem(origin, x, y, z);
        EXPECT_TRUE(z.isEqualTo(normal.normal()));
        EXPECT_TRUE(x.isEqualTo(reference.crossProduct(normal).normal())) << normal.x;
        EXPECT_TRUE(y.isEqualTo(z.crossProduct(x)));
        EXPECT_TRUE(KdGeMatrix3d::worldToPlane(normal).isEqualTo(matrix.inverse(), within(1e-15)));
    }
    EXPECT_EQ(KdGeMatrix3d::planeToWorld(KdGeVector3d::kIdentity), KdGeMatrix3d::kIdentity);
}

TEST(GeMatrix, CoordinateSystemsMapTheUnitAxes)
{
    KdGeMatrix3d matrix;
    matrix.setCoordSystem({1, 2, 3}, {0, 2, 0}, {-3, 0, 0}, {0, 0, 4});
    EXPECT_EQ(matrix * KdGePoint3d::kOrigin, KdGePoint3d(1, 2, 3));
    EXPECT_EQ(matrix * KdGePoint3d(1, 1, 1), KdGePoint3d(-2, 4, 7));
    EXPECT_EQ(matrix.det(), 24.0);
    EXPECT_EQ(matrix.scale(), 4.0);
    const KdGeMatrix3d turned = KdGeMatrix3d::rotation(0.3, {1, 1, 0}) * KdGeMatrix3d::scaling(-2);
    EXPECT_NEAR(turned.scale(), 2.0, 1e-15);
}
