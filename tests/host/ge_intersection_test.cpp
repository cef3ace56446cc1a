#include "kd/db.h"
#include "support/ge_samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

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

/// Around the origin in the xy plane, its axes along x and y.
SharedCurve ellipse(double a, double b, double start, double end)
{
    const KdDbEllipse entity({0, 0, 0}, KdGeVector3d::kZAxis, {a, 0, 0}, b / a, start, end);
    return entity.keptGeometry()->clone();
}

SharedCurve spline(std::initializer_list<KdGePoint3d> control)
{
    KdArray<KdGePoint3d> points;
    KdArray<double> knots;
    for (const KdGePoint3d& point : control)
        points.append(point);
    const int pieces = points.length() - 3;
    for (int knot = -3; knot <= pieces + 3; ++knot)
        knots.append(std::clamp(knot, 0, pieces));
    return KdDbSpline(3, points, knots).keptGeometry()->clone();
}

/// y = x^3 - x from -2 to 2.
SharedCurve cubic()
{
    return spline({{-2, -6, 0}, {-2. / 3, 26. / 3, 0}, {2. / 3, -26. / 3, 0}, {2, 6, 0}});
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
    const auto lying = [](double start, double end) { return ellipse(5, 3, start, end); };
    const auto standing = [] {
        return std::make_shared<KdGeLine3d>(KdGePoint3d(3, 0, 0), KdGeVector3d::kYAxis);
    };
    const auto at = [](double t) { return KdGePoint3d(5 * std::cos(t), 3 * std::sin(t), 0); };
    const KdGeVector3d slope(-5 * std::sin(1), 3 * std::cos(1), 0);
    const double equal = std::sqrt(225.0 / 34.0);
    return {
        {"crossing", xAxis(), segment({1, -1, 0}, {1, 2, 0}), {{1, 0, 0}}},
        {"ending on the other", xAxis(), segment({1, 0, 0}, {1, 2, 0}), {{1, 0, 0}}},
        {"ending before the other", xAxis(), segment({1, 1e-6, 0}, {1, 2, 0}), {}},
        {"skew", xAxis(), segment({1, -1, 1e-6}, {1, 2, 1e-6}), {}},
        {"parallel", xAxis(), segment({-5, 1, 0}, {5, 1, 0}), {}},
        {"end to end", xAxis(), segment({5, 0, 0}, {7, 0, 0}), {{5, 0, 0}}},
        {"overlapping", xAxis(), segment({2, 0, 0}, {7, 0, 0}), {{2, 0, 0}, {5, 0, 0}}},
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
        {"overlapping arcs",
         arc(0, 0, 2, 0, 2),
         arc(0, 0, 2, 1, 3),
         {{2 * std::cos(1), 2 * std::sin(1), 0}, {2 * std::cos(2), 2 * std::sin(2), 0}}},
        {"arcs that share two lengths",
         arc(0, 0, 2, 0, 4),
         arc(0, 0, 2, 3, 7),
         {{2, 0, 0},
          {2 * std::cos(7), 2 * std::sin(7), 0},
          {2 * std::cos(3), 2 * std::sin(3), 0},
          {2 * std::cos(4), 2 * std::sin(4), 0}}},
        {"ellipses",
         lying(0, 2 * kPi),
         ellipse(3, 5, 0, 2 * kPi),
         {{equal, equal, 0}, {-equal, equal, 0}, {-equal, -equal, 0}, {equal, -equal, 0}}},
        {"line across an ellipse", standing(), lying(0, 2 * kPi), {{3, 2.4, 0}, {3, -2.4, 0}}},
        {"half an ellipse", standing(), lying(0, kPi), {{3, 2.4, 0}}},
        {"tangent of an ellipse", segment(at(1) - slope, at(1) + slope * 2), lying(0, 4), {at(1)}},
        {"past an ellipse", segment({5 + 1e-6, -9, 0}, {5 + 1e-6, 9, 0}), lying(0, 2 * kPi), {}},
        {"circle in an ellipse", circle(0, 0, 3), lying(0, 2 * kPi), {{0, 3, 0}, {0, -3, 0}}},
        {"through the plane on an ellipse",
         segment({3, 2.4, -1}, {3, 2.4, 2}),
         lying(0, 4),
         {at(std::acos(.6))}},
        {"overlapping ellipses", lying(0, 2), lying(1, 5), {at(1), at(2)}},
        {"an ellipse on a part of it", lying(0, 2 * kPi), lying(1, 2), {at(1), at(2)}},
        {"an ellipse ends where the other begins", lying(0, 3), lying(3, 6), {at(3)}},
        {"the same ellipse", lying(0, 2 * kPi), lying(2, 2 + 2 * kPi), {}},
        {"cubic and its axis", xAxis(), cubic(), {{-1, 0, 0}, {0, 0, 0}, {1, 0, 0}}},
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

TEST(GeIntersection, ALineThatBeginsFarOffIsAsExact)
{
    const KdGeMatrix3d turn = KdGeMatrix3d::rotation(0.7, {1, -2, 3}, {5, 6, 7});
    const SharedCurve line = segment({-1e5, 0, 0}, {3e5, 0, 0});
    const SharedCurve ring = circle(1, 0, 2);
    ASSERT_TRUE(line->transformBy(turn) && ring->transformBy(turn));
    const Points expected = {turn * KdGePoint3d(-1, 0, 0), turn * KdGePoint3d(3, 0, 0)};
    EXPECT_TRUE(samePoints(common(*line, *ring), expected, 1e-10)); // its ends are rounded
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

TEST(GeIntersection, SplinesMeetEllipsesWhereTheyChangeSides)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> coordinate(-6.0, 6.0);
    const auto anyPoint = [&] { return KdGePoint3d(coordinate(random), coordinate(random), 0); };
    const SharedCurve oval = ellipse(5, 3, 0, 2 * kPi);
    const auto side = [](const KdGePoint3d& p) { return p.x * p.x / 25 + p.y * p.y / 9 - 1.0; };
    for (int i = 0; i < 100; ++i) {
        const SharedCurve curve =
            spline({anyPoint(), anyPoint(), anyPoint(), anyPoint(), anyPoint(), anyPoint()});
        Points expected;
        constexpr int kSteps = 4000;
        for (int step = 0; step < kSteps; ++step) {
            double from = curve->endParam() * step / kSteps;
            double to = curve->endParam() * (step + 1) / kSteps;
            const bool starts = side(curve->evalPoint(from)) < 0.0;
            if (starts == (side(curve->evalPoint(to)) < 0.0))
                continue;
            for (int halving = 0; halving < 60; ++halving) {
                const double middle = (from + to) / 2.0;
                (starts == (side(curve->evalPoint(middle)) < 0.0) ? from : to) = middle;
            }
            expected.push_back(curve->evalPoint(from));
        }
        EXPECT_TRUE(samePoints(common(*oval, *curve), expected, 1e-12)) << i;
        const Points ordered = common(*curve, *oval);
        ASSERT_EQ(ordered.size(), expected.size()) << i;
        for (std::size_t k = 0; k < expected.size(); ++k)
            EXPECT_LE(ordered[k].distanceTo(expected[k]), 1e-12) << i; // along the first curve
    }
}

TEST(GeIntersection, CompositesThatShareALengthMeetAtItsEnds)
{
    const KdGeCompositeCurve3d square =
        composite({segment({0, 0, 0}, {4, 0, 0}), segment({4, 0, 0}, {4, 4, 0}),
                   segment({4, 4, 0}, {0, 4, 0}), segment({0, 4, 0}, {0, 0, 0})});
    const KdGeCompositeCurve3d corner =
        composite({segment({0, 2, 0}, {0, 0, 0}), segment({0, 0, 0}, {1, 0, 0}),
                   segment({1, 0, 0}, {4, 0, 0}), segment({4, 0, 0}, {5, 0, 0}),
                   segment({5, 0, 0}, {2, 9, 0})});
    const Points ends = {{4, 0, 0}, {4, 3, 0}, {11. / 3, 4, 0}, {0, 2, 0}};
    EXPECT_TRUE(samePoints(common(square, corner), ends, 1e-14));
    EXPECT_TRUE(samePoints(common(corner, square), ends, 1e-14));
    EXPECT_TRUE(common(square, square).empty()) << "it has no end";
}

TEST(GeIntersection, HostileCurvesComeToAnEnd)
{
    const double nan = std::nan("");
    const double inf = std::numeric_limits<double>::infinity();
    const auto hundred = [](double lift) {
        KdArray<KdGePoint3d> points;
        KdArray<double> knots;
        for (int i = 0; i < 100; ++i)
            points.append({i % 7 * 1.0, i % 5 * 1.0, lift});
        for (int i = 0; i < 104; ++i)
            knots.append(std::clamp(i - 3, 0, 97));
        return SharedCurve(KdDbSpline(3, points, knots).keptGeometry()->clone());
    };
    const auto sizeOf = [](const KdGeCurve3d& curve) {
        const KdGeExtents3d box = curve.extents();
        return box.isEmpty() ? 0.0 : box.maxPoint().asVector().length();
    };
    const SharedCurve hostile[] = {
        hundred(0),
        hundred(2e-10),
        segment({nan, 0, 0}, {1, nan, 0}),
        segment({0, 0, 0}, {inf, 1, 0}),
        segment({1, 1, 0}, {1, 1, 0}),
        bulged({0, 0, 0}, {3, 1, 0}, 1e12),
        bulged({0, 0, 0}, {3, 1, 0}, 1e-12),
        circle(0, 0, 1e300),
        circle(1, 1, 0),
        ellipse(5, 5e-9, 0, 2 * kPi),
        ellipse(5, 5 + 1e-9, 0, 2 * kPi),
        std::make_shared<KdGeLine3d>(KdGePoint3d(nan, 0, 0), KdGeVector3d::kXAxis),
        std::make_shared<KdGeRay3d>(KdGePoint3d(1, 1, 0), KdGeVector3d()),
        ellipse(5, 5, 0, 2 * kPi),
    };
    for (const SharedCurve& a : hostile) {
        for (const SharedCurve& b : hostile) {
            for (const KdGePoint3d& point : common(*a, *b)) {
                const double size = std::max(sizeOf(*a), sizeOf(*b));
                const double resolved = 1e-10 + 1e-14 * size;
                EXPECT_LE(a->distanceTo(point), resolved);
                EXPECT_LE(b->distanceTo(point), resolved);
            }
        }
    }
}
