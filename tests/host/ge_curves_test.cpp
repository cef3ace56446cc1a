#include "kd/ge.h"

#include <gtest/gtest.h>

#include <functional>
#include <numbers>
#include <random>

namespace {

constexpr double kPi = std::numbers::pi;

struct NamedCurve {
    const char* name;
    std::unique_ptr<KdGeCurve3d> curve;
};

std::unique_ptr<KdGeCurve3d> segment(const KdGePoint3d& start, const KdGePoint3d& end)
{
    return std::make_unique<KdGeLineSeg3d>(start, end);
}

std::unique_ptr<KdGeCurve3d> bulged(const KdGePoint3d& start, const KdGePoint3d& end, double bulge)
{
    return std::make_unique<KdGeCircArc3d>(KdGeCircArc3d::fromBulge(start, end, bulge));
}

KdGeCompositeCurve3d polyline()
{
    std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
    pieces.push_back(segment({0, 0, 0}, {4, 0, 0}));
    pieces.push_back(bulged({4, 0, 0}, {4, 3, 0}, 0.8));
    pieces.push_back(segment({4, 3, 0}, {4, 3, 0})); // two equal vertices
    pieces.push_back(bulged({4, 3, 0}, {0, 3, 0}, -0.3));
    pieces.push_back(segment({0, 3, 0}, {0, 0, 0}));
    return KdGeCompositeCurve3d(std::move(pieces));
}

std::vector<NamedCurve> allCurves()
{
    std::vector<NamedCurve> curves;
    curves.push_back({"segment", segment({1, 2, 3}, {-4, 5, 1})});
    curves.push_back({"circle", std::make_unique<KdGeCircArc3d>(KdGePoint3d(1, 2, 3),
                                                                KdGeVector3d(1, 2, 2), 5.0)});
    curves.push_back(
        {"arc", std::make_unique<KdGeCircArc3d>(KdGePoint3d(1, 2, 3), KdGeVector3d(0, 0, -1),
                                                KdGeVector3d(-1, 0, 0), 2.0, 1.0, 5.5)});
    curves.push_back({"arc through zero",
                      std::make_unique<KdGeCircArc3d>(KdGePoint3d(), KdGeVector3d(1, 0, 1),
                                                      KdGeVector3d(0, 1, 0), 2.0, 6.0, 0.5)});
    curves.push_back({"bulge", bulged({1, 1, 0}, {3, 2, 0}, -0.4)});
    curves.push_back({"polyline", std::make_unique<KdGeCompositeCurve3d>(polyline())});
    return curves;
}

double paramAt(const KdGeCurve3d& curve, double fraction)
{
    return std::lerp(curve.startParam(), curve.endParam(), fraction);
}

/// The least value of a function over [0, 1]: dense samples, then thirds around the best.
double minimum(const std::function<double(double)>& value)
{
    constexpr int kSamples = 4000;
    double best = 0.0;
    for (int i = 0; i <= kSamples; ++i)
        if (value(1.0 * i / kSamples) < value(best))
            best = 1.0 * i / kSamples;
    double low = std::max(0.0, best - 1.0 / kSamples);
    double high = std::min(1.0, best + 1.0 / kSamples);
    for (int i = 0; i < 80; ++i) {
        const double third = (high - low) / 3.0;
        if (value(low + third) < value(high - third))
            high -= third;
        else
            low += third;
    }
    return std::min(value(best), value((low + high) / 2.0));
}

/// Arc length by the sum of chords, extrapolated: independent of the curve's own formula.
double measuredLength(const KdGeCurve3d& curve, double from, double to)
{
    const auto chords = [&](int count) {
        double sum = 0.0;
        for (int i = 0; i < count; ++i)
            sum += curve.evalPoint(std::lerp(from, to, 1.0 * i / count))
                       .distanceTo(curve.evalPoint(std::lerp(from, to, (i + 1.0) / count)));
        return sum;
    };
    constexpr int kChords = 6000; // a multiple of the pieces of `polyline`
    return (4.0 * chords(2 * kChords) - chords(kChords)) / 3.0;
}

double distanceToSegment(const KdGePoint3d& p, const KdGePoint3d& a, const KdGePoint3d& b)
{
    const KdGeVector3d span = b - a;
    const double size = span.dotProduct(span);
    const double t = size == 0.0 ? 0.0 : std::clamp((p - a).dotProduct(span) / size, 0.0, 1.0);
    return p.distanceTo(a + span * t);
}

double distanceToChain(const KdGePoint3d& p, const std::vector<KdGePoint3d>& chain)
{
    double nearest = HUGE_VAL;
    for (std::size_t i = 1; i < chain.size(); ++i)
        nearest = std::min(nearest, distanceToSegment(p, chain[i - 1], chain[i]));
    return nearest;
}

std::vector<KdGeMatrix3d> similarities()
{
    return {KdGeMatrix3d::rotation(0.7, {1, -2, 3}, {5, 6, 7}),
            KdGeMatrix3d::mirroring(KdGePlane({1, 0, 0}, {1, 1, 0.5})),
            KdGeMatrix3d::scaling(-3.0, {1, 1, 1}), KdGeMatrix3d::translation({1e6, -1e6, 1e5})};
}

KdGeMatrix3d randomAffine(std::mt19937& random)
{
    std::uniform_real_distribution<double> entries(-2.0, 2.0);
    KdGeMatrix3d matrix;
    for (unsigned int i = 0; i < 3; ++i)
        for (unsigned int j = 0; j < 4; ++j)
            matrix(i, j) = entries(random);
    return matrix;
}

} // namespace

TEST(GeCircArc, ABulgeMeetsItsEndsAndItsSagitta)
{
    const KdGePoint3d start(1, 2, 3);
    const KdGePoint3d end(4, 6, 3); // chord of 5
    const KdGeVector3d right(0.8, -0.6, 0.0);
    for (const double bulge : {1e-12, -1e-12, 1e-6, 0.1, -0.1, 0.5, 1.0, -1.0, 3.0, -40.0}) {
        const KdGeCircArc3d arc = KdGeCircArc3d::fromBulge(start, end, bulge);
        const double height = bulge * 2.5; // positive bulges lie to the right of the chord
        const double reach = 1e-15 * std::max(10.0, arc.sweep() * arc.radius());
        EXPECT_EQ(arc.startPoint(), start) << bulge;
        EXPECT_LE(arc.endPoint().distanceTo(end), reach) << bulge;
        const KdGePoint3d top = start + (end - start) / 2.0 + right * height;
        EXPECT_LE(arc.evalPoint(arc.sweep() / 2.0).distanceTo(top), reach) << bulge;
        EXPECT_EQ(arc.normal(), KdGeVector3d(0, 0, bulge < 0.0 ? -1 : 1)) << bulge;
        EXPECT_NEAR(arc.nearestParam(top) / arc.sweep(), 0.5, 1e-14) << bulge;
    }
}

TEST(GeCircArc, AnglesRunFromTheReferenceVector)
{
    const KdGePoint3d center(10, 20, 0);
    const KdGeCircArc3d arc(center, KdGeVector3d::kZAxis * 5, KdGeVector3d::kXAxis * 3, 2.0,
                            kPi / 2, kPi);
    EXPECT_TRUE(arc.startPoint().isEqualTo({10, 22, 0}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({8, 20, 0}));
    EXPECT_TRUE(arc.evalPoint(0.0).isEqualTo({12, 20, 0})); // beyond the start the circle goes on
    EXPECT_TRUE(arc.refVec().isEqualTo(KdGeVector3d::kXAxis));
    EXPECT_EQ(arc.center(), center);
    EXPECT_FALSE(arc.isClosed());
    EXPECT_FALSE(arc.isFullCircle());
}

TEST(GeCircArc, TheEndAngleFollowsTheStartAngleByAtMostATurn)
{
    struct Case {
        double start, end, sweep;
    };

    const Case cases[] = {
        {0.0, 1.0, 1.0},
        {6.0, 0.5, 0.5 - 6.0 + KdGe::kFullTurn},
        {0.0, 0.0, KdGe::kFullTurn},
        {0.0, KdGe::kFullTurn, KdGe::kFullTurn},
        {0.3, 0.3 + 2 * kPi, KdGe::kFullTurn},
        {0.1 + 0.2, 0.3, KdGe::kFullTurn},
        {1.0, 1.0 + 1e-9, 1e-9},
        {1.0, 1.0 - 1e-9, KdGe::kFullTurn - 1e-9},
        {-7.0, -6.0, 1.0},
    };
    for (const Case& c : cases) {
        const KdGeCircArc3d arc({}, KdGeVector3d::kZAxis, KdGeVector3d::kXAxis, 1.0, c.start,
                                c.end);
        EXPECT_NEAR(arc.sweep(), c.sweep, 2e-15) << c.start << " to " << c.end;
        EXPECT_EQ(arc.isFullCircle(), c.sweep == KdGe::kFullTurn) << c.start << " to " << c.end;
    }
}

TEST(GeCircArc, ATransformThatMakesAnEllipseIsRefused)
{
    KdGeCircArc3d arc({1, 2, 3}, KdGeVector3d::kZAxis, 2.0);
    EXPECT_FALSE(arc.transformBy(KdGeMatrix3d::scaling(KdGeScale3d(1, 2, 1))));
    KdGeMatrix3d shear;
    shear(0, 1) = 0.5;
    EXPECT_FALSE(arc.transformBy(shear));
    EXPECT_FALSE(arc.transformBy(KdGeMatrix3d::scaling(0.0)));
    KdGeMatrix3d perspective;
    perspective(3, 2) = 0.1;
    EXPECT_FALSE(arc.transformBy(perspective));
    EXPECT_EQ(arc.center(), KdGePoint3d(1, 2, 3));
    EXPECT_EQ(arc.radius(), 2.0);

    EXPECT_TRUE(
        arc.transformBy(KdGeMatrix3d::scaling(KdGeScale3d(-3, 3, 7)))); // round in its plane
    EXPECT_EQ(arc.center(), KdGePoint3d(-3, 6, 21));
    EXPECT_EQ(arc.radius(), 6.0);
    EXPECT_TRUE(arc.normal().isEqualTo(-KdGeVector3d::kZAxis));
}

TEST(GeCurve, SimilaritiesCarryEveryPointAndParameter)
{
    for (const KdGeMatrix3d& matrix : similarities())
        for (const NamedCurve& named : allCurves()) {
            const auto image = named.curve->clone();
            ASSERT_TRUE(image->transformBy(matrix)) << named.name;
            for (const double fraction : {0.0, 0.13, 0.5, 0.61, 0.99, 1.0}) {
                const double param = paramAt(*named.curve, fraction);
                const KdGePoint3d expected = matrix * named.curve->evalPoint(param);
                const double rounding = 4e-15 * std::max(10.0, expected.asVector().length());
                EXPECT_LE(image->evalPoint(param).distanceTo(expected), rounding) << named.name;
            }
            EXPECT_NEAR(image->length(), named.curve->length() * matrix.scale(), 1e-8)
                << named.name;
        }
}

TEST(GeCurve, AReversedCurveRunsTheSamePointsFromTheEnd)
{
    for (const NamedCurve& named : allCurves()) {
        const auto turned = named.curve->clone();
        turned->reverse();
        for (const double fraction : {0.0, 0.13, 0.5, 0.61, 1.0}) {
            const KdGePoint3d expected = named.curve->evalPoint(paramAt(*named.curve, fraction));
            const KdGePoint3d actual = turned->evalPoint(paramAt(*turned, 1.0 - fraction));
            EXPECT_LE(actual.distanceTo(expected), 1e-14) << named.name << fraction;
        }
        turned->reverse();
        EXPECT_LE(turned->startPoint().distanceTo(named.curve->startPoint()), 1e-14) << named.name;
    }
}

TEST(GeCurve, LengthsAgreeWithMeasuredOnes)
{
    for (const NamedCurve& named : allCurves()) {
        const KdGeCurve3d& curve = *named.curve;
        const double whole = measuredLength(curve, curve.startParam(), curve.endParam());
        EXPECT_NEAR(curve.length(), whole, 1e-10) << named.name;
        const double from = paramAt(curve, 0.1);
        const double to = paramAt(curve, 0.7);
        EXPECT_NEAR(curve.length(from, to), measuredLength(curve, from, to), 1e-10) << named.name;
        EXPECT_EQ(curve.length(to, from), curve.length(from, to)) << named.name;
        EXPECT_NEAR(curve.paramAtLength(from, curve.length(from, to)), to, 1e-14) << named.name;
        EXPECT_NEAR(curve.paramAtLength(to, curve.length(from, to), false), from, 1e-14)
            << named.name;
    }
}

TEST(GeCurve, DerivativesAgreeWithDifferences)
{
    for (const NamedCurve& named : allCurves())
        for (const double fraction : {0.05, 0.3, 0.77, 0.95}) {
            const double param = paramAt(*named.curve, fraction);
            const double step = 1e-5;
            const KdGeVector3d difference =
                (named.curve->evalPoint(param + step) - named.curve->evalPoint(param - step)) /
                (2.0 * step);
            EXPECT_LE((named.curve->firstDerivative(param) - difference).length(), 1e-8)
                << named.name << fraction;
        }
}

TEST(GeCurve, NoPointOfTheCurveIsNearerThanTheNearest)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> coordinates(-8.0, 8.0);
    for (const NamedCurve& named : allCurves())
        for (int round = 0; round < 20; ++round) {
            const KdGePoint3d from(coordinates(random), coordinates(random), coordinates(random));
            const double expected = minimum([&](double fraction) {
                return named.curve->evalPoint(paramAt(*named.curve, fraction)).distanceTo(from);
            });
            EXPECT_NEAR(named.curve->distanceTo(from), expected, 1e-9) << named.name;
            const double param = named.curve->nearestParam(from);
            EXPECT_GE(param, named.curve->startParam()) << named.name;
            EXPECT_LE(param, named.curve->endParam()) << named.name;
        }
}

TEST(GeCurve, TheSeamOfAClosedCurveHasTheStartParameter)
{
    const KdGeCircArc3d circle({1, 2, 0}, KdGeVector3d::kZAxis, 3.0);
    EXPECT_TRUE(circle.isClosed());
    EXPECT_EQ(circle.paramOf({4, 2 - 1e-12, 0}), 0.0);
    EXPECT_NEAR(circle.paramOf({4, 2 - 1e-6, 0}), KdGe::kFullTurn - 1e-6 / 3.0, 1e-14);

    const KdGeCompositeCurve3d closed = polyline();
    EXPECT_TRUE(closed.isClosed());
    EXPECT_EQ(closed.paramOf({0, 0, 0}), 0.0);
    EXPECT_EQ(closed.paramOf({0, 1.5, 0}), 4.5);
    EXPECT_NEAR(closed.paramOf({4, 0, 0}), 1.0, 1e-15);
}

TEST(GeCurve, BoxesTouchTheTrueExtremesOfAnyAffineImage)
{
    std::mt19937 random(3);
    for (const NamedCurve& named : allCurves())
        for (int round = 0; round < 8; ++round) {
            const KdGeMatrix3d matrix = randomAffine(random);
            const KdGeExtents3d box = named.curve->extentsUnder(matrix);
            for (unsigned int axis = 0; axis < 3; ++axis) {
                const auto coordinate = [&](double fraction) {
                    const double param = paramAt(*named.curve, fraction);
                    return (matrix * named.curve->evalPoint(param))[axis];
                };
                const double low = minimum(coordinate);
                const double high = -minimum([&](double f) { return -coordinate(f); });
                EXPECT_NEAR(box.minPoint()[axis], low, 1e-12) << named.name << axis;
                EXPECT_NEAR(box.maxPoint()[axis], high, 1e-12) << named.name << axis;
            }
        }
}

TEST(GeCurve, BoxesOfCirclesAreExactAtTheQuadrants)
{
    const KdGeExtents3d box = KdGeCircArc3d({10, 20, 5}, KdGeVector3d::kZAxis, 2.5).extents();
    EXPECT_EQ(box.minPoint(), KdGePoint3d(7.5, 17.5, 5.0));
    EXPECT_EQ(box.maxPoint(), KdGePoint3d(12.5, 22.5, 5.0));

    const KdGeExtents3d flat = KdGeCircArc3d::fromBulge({0, 0, 0}, {1, 0, 0}, -1e-12).extents();
    EXPECT_NEAR(flat.maxPoint().y, 0.5e-12, 1e-24); // the sagitta of a nearly straight arc
    EXPECT_TRUE(KdGeLine3d().extents().isEmpty());
}

TEST(GeComposite, ParametersCountPiecesAndLengthsFindThem)
{
    KdGeCompositeCurve3d curve = polyline();
    EXPECT_EQ(curve.numPieces(), 5);
    EXPECT_EQ(curve.evalPoint(0.5), KdGePoint3d(2, 0, 0));
    EXPECT_TRUE(curve.evalPoint(2.0).isEqualTo({4, 3, 0}));
    EXPECT_TRUE(curve.evalPoint(4.5).isEqualTo({0, 1.5, 0}));
    EXPECT_TRUE(curve.evalPoint(5.5).isEqualTo({0, -1.5, 0})); // the last piece goes on
    EXPECT_DOUBLE_EQ(curve.paramAtLength(0.0, 3.0), 0.75);
    EXPECT_DOUBLE_EQ(curve.paramAtLength(0.0, curve.length() - 1.5), 4.5);
    EXPECT_DOUBLE_EQ(curve.paramAtLength(0.5, 4.0, false), -0.5);

    const KdGeCompositeCurve3d copy = curve;
    EXPECT_FALSE(curve.transformBy(KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1)))); // arcs refuse
    EXPECT_EQ(curve.evalPoint(0.5), copy.evalPoint(0.5));
    EXPECT_EQ(curve.length(), copy.length());
}

TEST(GeFlatten, TheChainStaysWithinTheToleranceOfTheImage)
{
    std::mt19937 random(4);
    for (const NamedCurve& named : allCurves())
        for (const double tolerance : {0.5, 1e-2, 1e-4}) {
            const KdGeMatrix3d matrix = randomAffine(random);
            std::vector<KdGePoint3d> chain;
            named.curve->flatten(matrix, tolerance, chain);
            EXPECT_LE(chain.front().distanceTo(matrix * named.curve->startPoint()), 1e-14);
            EXPECT_LE(chain.back().distanceTo(matrix * named.curve->endPoint()), 1e-14);
            for (int i = 0; i <= 1000; ++i) {
                const double param = paramAt(*named.curve, i / 1000.0);
                const KdGePoint3d point = matrix * named.curve->evalPoint(param);
                ASSERT_LE(distanceToChain(point, chain), tolerance * (1 + 1e-9)) << named.name;
            }
        }
}

TEST(GeFlatten, AnArcSeenFromTheEdgeKeepsItsFullWidth)
{
    KdGeMatrix3d edgeOn; // drops y: the arc folds back on itself at angle 0
    edgeOn(1, 1) = 0.0;
    const KdGeCircArc3d arc({}, KdGeVector3d::kZAxis, KdGeVector3d::kXAxis, 100.0, -0.2, 0.5);
    std::vector<KdGePoint3d> chain;
    arc.flatten(edgeOn, 1e-3, chain);
    double widest = 0.0;
    for (const KdGePoint3d& vertex : chain)
        widest = std::max(widest, vertex.x);
    EXPECT_NEAR(widest, 100.0, 1e-3);
}

TEST(GeFlatten, TheChainIsNoLongerThanNeeded)
{
    const auto count = [](const KdGeCurve3d& curve, double tolerance) {
        std::vector<KdGePoint3d> chain;
        curve.flatten(KdGeMatrix3d::kIdentity, tolerance, chain);
        return chain.size();
    };
    const KdGeCircArc3d circle({}, KdGeVector3d::kZAxis, 1000.0);
    EXPECT_EQ(count(*segment({0, 0, 0}, {1e9, 0, 0}), 1e-12), 2u);
    EXPECT_EQ(count(circle, 1e6), 9u);
    const double needed = kPi / std::acos(1.0 - 0.1 / 1000.0); // chords of a sagitta of 0.1
    EXPECT_GE(count(circle, 0.1), needed);
    EXPECT_LE(count(circle, 0.1), 2.0 * needed + 8.0);
    EXPECT_EQ(count(circle, 0.0), 32769u);
    EXPECT_EQ(count(circle, -1.0), 32769u);
    EXPECT_EQ(count(KdGeLine3d(), 1.0), 0u);
    EXPECT_LE(count(KdGeCircArc3d({}, KdGeVector3d::kZAxis, std::nan("")), 0.1), 9u);
}
