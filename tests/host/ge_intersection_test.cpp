#include "support/ge_samples.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace tests;

namespace {

using Points = std::vector<KdGePoint3d>;

Points common(const KdGeCurve3d& a, const KdGeCurve3d& b)
{
    const KdGeCurveCurveInt3d found(a, b);
    Points points;
    for (int i = 0; i < found.numIntPoints(); ++i)
        points.push_back(found.intPoint(i));
    return points;
}

/// Both lists hold the same points within a distance, in any order.
bool samePoints(const Points& actual, const Points& expected, double distance)
{
    const auto near = [&](const auto& p, const auto& q) { return p.distanceTo(q) <= distance; };
    return std::ranges::is_permutation(actual, expected, near);
}

SharedCurve circle(double x, double y, double radius)
{
    return std::make_shared<KdGeCircArc3d>(KdGePoint3d(x, y, 0), KdGeVector3d::kZAxis, radius);
}

SharedCurve arc(double x, double y, double radius, double start, double end)
{
    return std::make_shared<KdGeCircArc3d>(KdGePoint3d(x, y, 0), KdGeVector3d::kZAxis,
                                           KdGeVector3d::kXAxis, radius, start, end);
}

struct Case {
    const char* name;
    SharedCurve a, b;
    Points points;
};

std::vector<Case> cases()
{
    const auto xAxis = [] { return segment({-5, 0, 0}, {5, 0, 0}); };
    const auto upright = std::make_shared<KdGeLine3d>(KdGePoint3d(9, 0, 0), KdGeVector3d::kYAxis);
    const auto quarter = [] { return arc(0, 0, 1, 0, kPi / 2); };
    return {
        {"crossing", xAxis(), segment({1, -1, 0}, {1, 2, 0}), {{1, 0, 0}}},
        {"ending on the other", xAxis(), segment({1, 0, 0}, {1, 2, 0}), {{1, 0, 0}}},
        {"ending before the other", xAxis(), segment({1, 1e-6, 0}, {1, 2, 0}), {}},
        {"skew", xAxis(), segment({1, -1, 1e-6}, {1, 2, 1e-6}), {}},
        {"parallel", xAxis(), segment({-5, 1, 0}, {5, 1, 0}), {}},
        {"end to end", xAxis(), segment({5, 0, 0}, {7, 0, 0}), {{5, 0, 0}}},
        {"overlapping", xAxis(), segment({2, 0, 0}, {7, 0, 0}), {}},
        {"a point on a segment", xAxis(), segment({2, 0, 0}, {2, 0, 0}), {{2, 0, 0}}},
        {"unbounded line", upright, segment({8, 4, 0}, {12, 4, 0}), {{9, 4, 0}}},
        {"secant", xAxis(), circle(1, 0, 2), {{-1, 0, 0}, {3, 0, 0}}},
        {"tangent", xAxis(), circle(1, 2, 2), {{1, 0, 0}}},
        {"just missing", xAxis(), circle(1, 2 + 1e-6, 2), {}},
        {"the half that is not there", xAxis(), arc(1, 0, 2, 0.1, kPi - 0.1), {}},
        {"half circle on its chord", xAxis(), arc(1, 0, 2, 0, kPi), {{-1, 0, 0}, {3, 0, 0}}},
        {"tangent joint", segment({-3, 1, 0}, {0, 1, 0}), quarter(), {{0, 1, 0}}},
        {"passing tangent joint", segment({-3, 1, 0}, {3, 1, 0}), quarter(), {{0, 1, 0}}},
        {"through the plane on it", segment({1, 2, -1}, {1, 2, 3}), circle(1, 0, 2), {{1, 2, 0}}},
        {"near the top", segment({-5, 4, 0}, {9, 4, 0}), circle(1, 0, 5), {{-2, 4, 0}, {4, 4, 0}}},
        {"close",
         segment({0, .24, 0}, {2, .24, 0}),
         circle(1, 0, .25),
         {{.93, .24, 0}, {1.07, .24, 0}}},
        {"nearer", segment({0, 12, 0}, {2, 12, 0}), circle(1, -0.5, 12.5), {{1, 12, 0}}},
        {"through the plane beside it", segment({2, 0, -1}, {2, 0, 1}), circle(1, 0, 2), {}},
        {"unequal circles", circle(0, 0, 13), circle(14, 0, 15), {{5, 12, 0}, {5, -12, 0}}},
        {"touching outside", circle(0, 0, 2), circle(5, 0, 3), {{2, 0, 0}}},
        {"touching inside", circle(0, 0, 2), circle(1, 0, 1), {{2, 0, 0}}},
        {"the same circle", circle(0, 0, 2), circle(0, 0, 2), {}},
        {"two halves", arc(0, 0, 2, 0, kPi), arc(0, 0, 2, kPi, 2 * kPi), {{2, 0, 0}, {-2, 0, 0}}},
        {"overlapping arcs", arc(0, 0, 2, 0, 2), arc(0, 0, 2, 1, 3), {}},
        {"arcs whose circles cross elsewhere", arc(0, 0, 5, kPi / 2, kPi), circle(6, 0, 5), {}},
    };
}

} // namespace

TEST(GeIntersection, FindsEveryCommonPointOnceWhereverThePairLies)
{
    std::vector<KdGeMatrix3d> matrices = similarities();
    matrices.push_back(KdGeMatrix3d::kIdentity);
    for (const KdGeMatrix3d& matrix : matrices)
        for (const Case& c : cases()) {
            ASSERT_TRUE(c.a->transformBy(matrix) && c.b->transformBy(matrix));
            Points points;
            for (const KdGePoint3d& p : c.points)
                points.push_back(matrix * p);
            const double rounding = 1e-15 * (100.0 + 10.0 * matrix.translation().length());
            EXPECT_TRUE(samePoints(common(*c.a, *c.b), points, rounding)) << c.name;
            EXPECT_TRUE(samePoints(common(*c.b, *c.a), points, rounding)) << c.name << " exchanged";
            c.a->reverse();
            EXPECT_TRUE(samePoints(common(*c.a, *c.b), points, rounding)) << c.name << " reversed";
        }
}

TEST(GeIntersection, CompositesMeetInEachOfTheirPieces)
{
    const KdGeCompositeCurve3d slot =
        composite({segment({0, 0, 0}, {4, 0, 0}), bulged({4, 0, 0}, {4, 4, 0}, 1.0),
                   segment({4, 4, 0}, {0, 4, 0})});
    const auto met = [&](const SharedCurve& other) { return common(slot, *other); };
    EXPECT_TRUE(samePoints(met(segment({0, 2, 0}, {9, 2, 0})), {{6, 2, 0}}, 1e-14));
    const Points joints = {{4, 0, 0}, {4, 4, 0}}; // they count once
    EXPECT_TRUE(samePoints(met(segment({4, -1, 0}, {4, 9, 0})), joints, 1e-14));
    EXPECT_TRUE(samePoints(met(circle(4, 2, 2)), joints, 1e-12));
}
