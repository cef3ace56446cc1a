#include "kd/ge.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>

namespace {

constexpr double kPi = std::numbers::pi;

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
testing::AssertionResult samePoints(const Points& actual, const Points& expected, double distance)
{
    if (actual.size() != expected.size())
        return testing::AssertionFailure()
               << actual.size() << " points instead of " << expected.size();
    for (const KdGePoint3d& p : expected)
        if (std::none_of(actual.begin(), actual.end(),
                         [&](const KdGePoint3d& q) { return p.distanceTo(q) <= distance; }))
            return testing::AssertionFailure() << "missing " << p.x << ", " << p.y << ", " << p.z;
    return testing::AssertionSuccess();
}

KdGeCircArc3d circle(double x, double y, double radius)
{
    return {{x, y, 0}, KdGeVector3d::kZAxis, radius};
}

KdGeCircArc3d arc(double x, double y, double radius, double start, double end)
{
    return {{x, y, 0}, KdGeVector3d::kZAxis, KdGeVector3d::kXAxis, radius, start, end};
}

struct Case {
    const char* name;
    std::shared_ptr<KdGeCurve3d> a, b;
    Points points;
};

template <class A, class B>
Case makeCase(const char* name, const A& a, const B& b, Points points)
{
    return {name, std::make_shared<A>(a), std::make_shared<B>(b), std::move(points)};
}

std::vector<Case> cases()
{
    using Seg = KdGeLineSeg3d;
    const Seg xAxis({-5, 0, 0}, {5, 0, 0});
    return {
        makeCase("crossing", xAxis, Seg({1, -1, 0}, {1, 2, 0}), {{1, 0, 0}}),
        makeCase("ending on the other", xAxis, Seg({1, 0, 0}, {1, 2, 0}), {{1, 0, 0}}),
        makeCase("ending before the other", xAxis, Seg({1, 1e-6, 0}, {1, 2, 0}), {}),
        makeCase("skew", xAxis, Seg({1, -1, 1e-6}, {1, 2, 1e-6}), {}),
        makeCase("parallel", xAxis, Seg({-5, 1, 0}, {5, 1, 0}), {}),
        makeCase("end to end", xAxis, Seg({5, 0, 0}, {7, 0, 0}), {{5, 0, 0}}),
        makeCase("overlapping", xAxis, Seg({2, 0, 0}, {7, 0, 0}), {}),
        makeCase("one within the other", xAxis, Seg({5, 0, 0}, {2, 0, 0}), {}),
        makeCase("a point on a segment", xAxis, Seg({2, 0, 0}, {2, 0, 0}), {{2, 0, 0}}),
        makeCase("unbounded line", KdGeLine3d(KdGePoint3d(9, 0, 0), KdGeVector3d::kYAxis),
                 Seg({8, 4, 0}, {12, 4, 0}), {{9, 4, 0}}),
        makeCase("secant", xAxis, circle(1, 0, 2), {{-1, 0, 0}, {3, 0, 0}}),
        makeCase("one end inside", Seg({1, 0, 0}, {5, 0, 0}), circle(1, 0, 2), {{3, 0, 0}}),
        makeCase("both ends inside", Seg({0, 0, 0}, {2, 0, 0}), circle(1, 0, 2), {}),
        makeCase("tangent", xAxis, circle(1, 2, 2), {{1, 0, 0}}),
        makeCase("just missing", xAxis, circle(1, 2 + 1e-6, 2), {}),
        makeCase("the half that is not there", xAxis, arc(1, 0, 2, 0.1, kPi - 0.1), {}),
        makeCase("half circle on its chord", xAxis, arc(1, 0, 2, 0, kPi), {{-1, 0, 0}, {3, 0, 0}}),
        makeCase("tangent joint", Seg({-3, 1, 0}, {0, 1, 0}), arc(0, 0, 1, 0, kPi / 2),
                 {{0, 1, 0}}),
        makeCase("tangent joint on the way", Seg({-3, 1, 0}, {3, 1, 0}), arc(0, 0, 1, 0, kPi / 2),
                 {{0, 1, 0}}),
        makeCase("through the circle's plane", Seg({3, 0, -1}, {3, 0, 1}), circle(1, 0, 2),
                 {{3, 0, 0}}),
        makeCase("through the plane beside it", Seg({2, 0, -1}, {2, 0, 1}), circle(1, 0, 2), {}),
        makeCase("two circles", circle(0, 0, 5), circle(6, 0, 5), {{3, 4, 0}, {3, -4, 0}}),
        makeCase("unequal circles", circle(0, 0, 2), circle(std::sqrt(5.0), 0, 1),
                 {{4 / std::sqrt(5.0), 2 / std::sqrt(5.0), 0},
                  {4 / std::sqrt(5.0), -2 / std::sqrt(5.0), 0}}),
        makeCase("touching outside", circle(0, 0, 2), circle(5, 0, 3), {{2, 0, 0}}),
        makeCase("touching inside", circle(0, 0, 2), circle(1, 0, 1), {{2, 0, 0}}),
        makeCase("circles apart", circle(0, 0, 2), circle(5, 5, 3), {}),
        makeCase("concentric", circle(0, 0, 2), circle(0, 0, 3), {}),
        makeCase("the same circle", circle(0, 0, 2), circle(0, 0, 2), {}),
        makeCase("halves of one circle", arc(0, 0, 2, 0, kPi), arc(0, 0, 2, kPi, 2 * kPi),
                 {{2, 0, 0}, {-2, 0, 0}}),
        makeCase("overlapping arcs", arc(0, 0, 2, 0, 2), arc(0, 0, 2, 1, 3), {}),
        makeCase("arcs whose circles cross elsewhere", arc(0, 0, 5, kPi / 2, kPi), circle(6, 0, 5),
                 {}),
    };
}

} // namespace

TEST(GeIntersection, FindsEveryCommonPointOnce)
{
    for (const Case& c : cases()) {
        EXPECT_TRUE(samePoints(common(*c.a, *c.b), c.points, 1e-12)) << c.name;
        EXPECT_TRUE(samePoints(common(*c.b, *c.a), c.points, 1e-12)) << c.name << " (exchanged)";
        c.a->reverse();
        EXPECT_TRUE(samePoints(common(*c.a, *c.b), c.points, 1e-12)) << c.name << " (reversed)";
    }
}

TEST(GeIntersection, IsTheSameWhereverThePairLies)
{
    const KdGeMatrix3d transforms[] = {
        KdGeMatrix3d::rotation(0.7, {1, -2, 3}, {5, 6, 7}),
        KdGeMatrix3d::mirroring(KdGePlane({1, 0, 0}, {1, 1, 0.5})),
        KdGeMatrix3d::scaling(37.0) * KdGeMatrix3d::rotation(2.1, {0, 0, 1}),
        KdGeMatrix3d::translation({4e6, 5e6, 0}) * KdGeMatrix3d::rotation(0.3, {0, 0, 1}),
    };
    for (const KdGeMatrix3d& matrix : transforms)
        for (const Case& c : cases()) {
            ASSERT_TRUE(c.a->transformBy(matrix) && c.b->transformBy(matrix));
            Points expected;
            for (const KdGePoint3d& p : c.points)
                expected.push_back(matrix * p);
            const double rounding = 1e-15 * (100.0 + 10.0 * matrix.translation().length());
            EXPECT_TRUE(samePoints(common(*c.a, *c.b), expected, rounding)) << c.name;
        }
}

TEST(GeIntersection, FindsAsManyPointsAsASegmentChangesSides)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> coordinates(-5.0, 5.0);
    const auto point = [&] { return KdGePoint3d(coordinates(random), coordinates(random), 0); };
    int met = 0;
    for (int round = 0; round < 300; ++round) {
        const KdGeLineSeg3d line(point(), point());
        const KdGeCircArc3d round3d(point(), KdGeVector3d::kZAxis, 0.5 + std::abs(point().x));
        const auto inside = [&](double t) {
            return line.evalPoint(t).distanceTo(round3d.center()) < round3d.radius();
        };
        std::size_t changes = 0;
        for (int i = 0; i < 4000; ++i)
            changes += inside(i / 4000.0) != inside((i + 1) / 4000.0);
        const Points points = common(line, round3d);
        EXPECT_EQ(points.size(), changes) << round;
        for (const KdGePoint3d& p : points) {
            EXPECT_LE(line.distanceTo(p), 1e-13);
            EXPECT_NEAR(p.distanceTo(round3d.center()), round3d.radius(), 1e-13);
        }
        met += changes > 0;
    }
    EXPECT_GT(met, 50);
}

TEST(GeIntersection, CompositesMeetInEachOfTheirPieces)
{
    std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
    pieces.push_back(std::make_unique<KdGeLineSeg3d>(KdGePoint3d(0, 0, 0), KdGePoint3d(4, 0, 0)));
    pieces.push_back(
        std::make_unique<KdGeCircArc3d>(KdGeCircArc3d::fromBulge({4, 0, 0}, {4, 4, 0}, 1.0)));
    pieces.push_back(std::make_unique<KdGeLineSeg3d>(KdGePoint3d(4, 4, 0), KdGePoint3d(0, 4, 0)));
    const KdGeCompositeCurve3d slot(std::move(pieces));

    EXPECT_TRUE(samePoints(common(slot, KdGeLineSeg3d({0, 2, 0}, {9, 2, 0})), {{6, 2, 0}}, 1e-14));
    EXPECT_TRUE(samePoints(common(slot, KdGeLineSeg3d({4, -1, 0}, {4, 9, 0})),
                           {{4, 0, 0}, {4, 4, 0}}, 1e-14)); // joints count once
    EXPECT_TRUE(samePoints(common(slot, circle(4, 2, 2)), {{4, 0, 0}, {4, 4, 0}}, 1e-12));
}
