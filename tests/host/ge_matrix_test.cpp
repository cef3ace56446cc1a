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

TEST(GeMatrix, AReflectionIsItsOwnInverseAndChangesSides)
{
    const KdGePlane plane({1, 2, 3}, {3, -1, 2});
    const KdGeMatrix3d mirror = KdGeMatrix3d::mirroring(plane);
    const KdGePoint3d point(7, 8, 9);
    EXPECT_TRUE((mirror * mirror).isEqualTo(KdGeMatrix3d::kIdentity));
    EXPECT_NEAR(plane.signedDistanceTo(mirror * point), -plane.signedDistanceTo(point), 1e-14);
    KdGePoint3d origin;
    KdGeVector3d x, y;
    plane.getCoordSystem(origin, x, y);
    EXPECT_EQ(origin, KdGePoint3d(1, 2, 3));
}

TEST(GeMatrix, TheInverseUndoesAnyRegularMatrixAndOfAnAffineOneStaysAffine)
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

    for (const double factor : {1e-12, 1e12}) {
        const KdGeMatrix3d matrix = KdGeMatrix3d::translation({1e6, -2e6, 3}) *
                                    KdGeMatrix3d::rotation(0.7, {1, 2, 3}) *
                                    KdGeMatrix3d::scaling(factor);
        EXPECT_TRUE(matrix.inverse().isAffine()) << factor;
        const KdGePoint3d point = KdGePoint3d(3, 4, 5) / factor;
        EXPECT_LE((matrix.inverse() * (matrix * point)).distanceTo(point), 1e-9 / factor) << factor;
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
    EXPECT_EQ(matrix.inverse(), KdGeMatrix3d::kIdentity);
    EXPECT_TRUE(KdGeMatrix3d::scaling(std::nan("")).isSingular());
}

TEST(GeMatrix, EntityAxesFollowTheArbitraryAxisRule)
{
    // A normal and the world axis that is crossed with it.
    const double edge = 1.0 / 64.0;
    const std::pair<KdGeVector3d, KdGeVector3d> cases[] = {
        {{0, 0, -1}, KdGeVector3d::kYAxis},
        {{edge * 0.999, 0, 1}, KdGeVector3d::kYAxis},
        {{0, -edge * 1.001, 1}, KdGeVector3d::kZAxis},
        {{edge, 0, std::sqrt(1 - edge * edge)}, KdGeVector3d::kZAxis},
    };
    for (const auto& [normal, reference] : cases) {
        const KdGeVector3d x = reference.crossProduct(normal).normal();
        KdGeMatrix3d expected;
        expected.setCoordSystem({}, x, normal.normal().crossProduct(x), normal.normal());
        EXPECT_TRUE(KdGeMatrix3d::planeToWorld(normal).isEqualTo(expected)) << normal.x;
        EXPECT_TRUE(KdGeMatrix3d::worldToPlane(normal).isEqualTo(expected.inverse()));
    }
}
