#include "support/ge_samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

using namespace tests;

namespace {

KdGeCompositeCurve3d polyline()
{
    return composite({segment({0, 0, 0}, {4, 0, 0}), bulged({4, 0, 0}, {4, 3, 0}, 0.8),
                      segment({4, 3, 0}, {4, 3, 0}), // two equal vertices
                      bulged({4, 3, 0}, {0, 3, 0}, -0.3), segment({0, 3, 0}, {0, 0, 0})});
}

/// Runs a check on curves of every kind, named when it fails.
void onAllCurves(const std::function<void(const KdGeCurve3d&)>& check)
{
    const KdGePoint3d center(1, 2, 3);
    const KdGeVector3d& x = KdGeVector3d::kXAxis;
    const KdGeVector3d& y = KdGeVector3d::kYAxis;
    const KdGeVector3d& z = KdGeVector3d::kZAxis;
    const std::pair<const char*, SharedCurve> curves[] = {
        {"segment", segment({1, 2, 3}, {-4, 5, 1})},
        {"circle", std::make_shared<KdGeCircArc3d>(center, KdGeVector3d(1, 2, 2), 5.0)},
        {"arc", std::make_shared<KdGeCircArc3d>(center, -z, -x, 2.0, 1.0, 5.5)},
        {"through zero", std::make_shared<KdGeCircArc3d>(KdGePoint3d(), x + z, y, 2.0, 6.0, 0.5)},
        {"bulge", bulged({1, 1, 0}, {3, 2, 0}, -0.4)},
        {"polyline", std::make_shared<KdGeCompositeCurve3d>(polyline())}};
    for (const auto& [name, curve] : curves) {
        SCOPED_TRACE(name);
        check(*curve);
    }
}

double paramAt(const KdGeCurve3d& curve, double fraction)
{
    return std::lerp(curve.startParam(), curve.endParam(), fraction);
}

KdGePoint3d pointAt(const KdGeCurve3d& curve, double fraction)
{
    return curve.evalPoint(paramAt(curve, fraction));
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

double distanceToChain(const KdGePoint3d& p, const std::vector<KdGePoint3d>& chain)
{
    double nearest = HUGE_VAL;
    for (std::size_t i = 1; i < chain.size(); ++i)
        nearest = std::min(nearest, KdGeLineSeg3d(chain[i - 1], chain[i]).distanceTo(p));
    return nearest;
}

std::vector<KdGePoint3d> chainOf(const KdGeCurve3d& curve, const KdGeMatrix3d& matrix,
                                 double tolerance)
{
    std::vector<KdGePoint3d> chain;
    curve.flatten(matrix, tolerance, chain);
    return chain;
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
    for (const double bulge : {1e-12, -1e-12, 1e-6, 0.1, -0.5, 1.0, -1.0, 3.0, -40.0}) {
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
    const KdGeCircArc3d arc({10, 20, 0}, KdGeVector3d::kZAxis * 5, KdGeVector3d::kXAxis * 3, 2.0,
                            kPi / 2, kPi);
    EXPECT_TRUE(arc.startPoint().isEqualTo({10, 22, 0}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({8, 20, 0}));
    EXPECT_TRUE(arc.evalPoint(0.0).isEqualTo({12, 20, 0})); // beyond the start the circle goes on
    EXPECT_FALSE(arc.isClosed());
}

TEST(GeCircArc, TheEndAngleFollowsTheStartAngleByAtMostATurn)
{
    const std::tuple<double, double, double> cases[] = {
        {0.0, 1.0, 1.0},
        {6.0, 0.5, 0.5 - 6.0 + KdGe::kFullTurn},
        {0.0, 0.0, KdGe::kFullTurn},
        {0.3, 0.3 + 2 * kPi, KdGe::kFullTurn},
        {0.1 + 0.2, 0.3, KdGe::kFullTurn},
        {1.0, 1.0 + 1e-9, 1e-9},
        {1.0, 1.0 - 1e-9, KdGe::kFullTurn - 1e-9},
        {-7.0, -6.0, 1.0},
    };
    for (const auto& [start, end, sweep] : cases) {
        const KdGeCircArc3d arc({}, KdGeVector3d::kZAxis, KdGeVector3d::kXAxis, 1.0, start, end);
        EXPECT_NEAR(arc.sweep(), sweep, 2e-15) << start << " to " << end;
        EXPECT_EQ(arc.isFullCircle(), sweep == KdGe::kFullTurn) << start << " to " << end;
    }
}

TEST(GeCircArc, ATransformThatMakesAnEllipseIsRefused)
{
    KdGeMatrix3d shear;
    shear(0, 1) = 0.5;
    KdGeMatrix3d perspective;
    perspective(3, 2) = 0.1;
    KdGeCircArc3d arc({1, 2, 3}, KdGeVector3d::kZAxis, 2.0);
    EXPECT_FALSE(arc.transformBy(KdGeMatrix3d::scaling(KdGeScale3d(1, 2, 1))));
    EXPECT_FALSE(arc.transformBy(KdGeMatrix3d::scaling(0.0)));
    EXPECT_FALSE(arc.transformBy(shear));
    EXPECT_FALSE(arc.transformBy(perspective));
    EXPECT_EQ(arc.center(), KdGePoint3d(1, 2, 3));
    EXPECT_EQ(arc.radius(), 2.0);

    const KdGeMatrix3d roundInItsPlane = KdGeMatrix3d::scaling(KdGeScale3d(-3, 3, 7));
    EXPECT_TRUE(arc.transformBy(roundInItsPlane));
    EXPECT_EQ(arc.center(), KdGePoint3d(-3, 6, 21));
    EXPECT_EQ(arc.radius(), 6.0);
    EXPECT_TRUE(arc.normal().isEqualTo(-KdGeVector3d::kZAxis));
}

TEST(GeCurve, SimilaritiesCarryEveryPointAndReversalTurnsTheParameter)
{
    onAllCurves([](const KdGeCurve3d& curve) {
        for (const KdGeMatrix3d& matrix : similarities()) {
            const auto image = curve.clone();
            ASSERT_TRUE(image->transformBy(matrix));
            EXPECT_NEAR(image->length(), curve.length() * matrix.scale(), 1e-8);
            const auto turned = image->clone();
            turned->reverse();
            for (const double fraction : {0.0, 0.13, 0.5, 0.61, 0.99, 1.0}) {
                const KdGePoint3d expected = matrix * pointAt(curve, fraction);
                const double rounding = 4e-15 * std::max(10.0, expected.asVector().length());
                EXPECT_LE(image->evalPoint(paramAt(curve, fraction)).distanceTo(expected), rounding)
                    << fraction;
                EXPECT_LE(pointAt(*turned, 1.0 - fraction).distanceTo(expected), 2 * rounding)
                    << fraction << " reversed";
            }
        }
    });
}

TEST(GeCircArc, RunsCounterClockwiseAboutItsNormalHoweverItIsMovedAndReversed)
{
    onAllCurves([](const KdGeCurve3d& curve) {
        for (const KdGeMatrix3d& matrix : similarities())
            for (const bool isReversed : {false, true}) {
                const auto moved = curve.clone();
                moved->transformBy(matrix);
                if (isReversed)
                    moved->reverse();
                const auto* const arc = dynamic_cast<const KdGeCircArc3d*>(moved.get());
                if (!arc)
                    return;
                const KdGeVector3d x = arc->refVec();
                const KdGeVector3d y = arc->normal().crossProduct(x);
                for (const double angle : {arc->startAng(), arc->endAng(), 1.0}) {
                    const KdGePoint3d expected =
                        arc->center() + (x * std::cos(angle) + y * std::sin(angle)) * arc->radius();
                    EXPECT_LE(arc->evalPoint(angle).distanceTo(expected), 1e-8) << angle;
                }
            }
    });
}

TEST(GeCurve, LengthsAgreeWithMeasuredOnes)
{
    onAllCurves([](const KdGeCurve3d& curve) {
        EXPECT_NEAR(curve.length(), measuredLength(curve, curve.startParam(), curve.endParam()),
                    1e-10);
        const double from = paramAt(curve, 0.1);
        const double to = paramAt(curve, 0.7);
        const double length = curve.length(from, to);
        EXPECT_NEAR(length, measuredLength(curve, from, to), 1e-10);
        EXPECT_EQ(curve.length(to, from), length);
        EXPECT_NEAR(curve.paramAtLength(from, length), to, 1e-14);
        EXPECT_NEAR(curve.paramAtLength(to, length, false), from, 1e-14);
    });
}

TEST(GeCurve, DerivativesAgreeWithDifferences)
{
    onAllCurves([](const KdGeCurve3d& curve) {
        for (const double fraction : {0.05, 0.3, 0.77, 0.95}) {
            const double param = paramAt(curve, fraction);
            const double step = 1e-5;
            const KdGeVector3d difference =
                (curve.evalPoint(param + step) - curve.evalPoint(param - step)) / (2.0 * step);
            EXPECT_LE((curve.firstDerivative(param) - difference).length(), 1e-8) << fraction;
        }
    });
}

TEST(GeCurve, NoPointOfTheCurveIsNearerThanTheNearest)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> coordinates(-8.0, 8.0);
    onAllCurves([&](const KdGeCurve3d& curve) {
        for (int round = 0; round < 20; ++round) {
            const KdGePoint3d from(coordinates(random), coordinates(random), coordinates(random));
            const double expected =
                minimum([&](double fraction) { return pointAt(curve, fraction).distanceTo(from); });
            EXPECT_NEAR(curve.distanceTo(from), expected, 1e-9);
            const double param = curve.nearestParam(from);
            EXPECT_EQ(param, std::clamp(param, curve.startParam(), curve.endParam()));
        }
    });
}

TEST(GeCurve, TheSeamOfAClosedCurveHasTheStartParameter)
{
    const KdGeCircArc3d circle({1, 2, 0}, KdGeVector3d::kZAxis, 3.0);
    EXPECT_EQ(circle.paramOf({4, 2 - 1e-12, 0}), 0.0);
    EXPECT_NEAR(circle.paramOf({4, 2 - 1e-6, 0}), KdGe::kFullTurn - 1e-6 / 3.0, 1e-14);

    const KdGeCompositeCurve3d closed = polyline();
    EXPECT_EQ(closed.paramOf({0, 0, 0}), 0.0);
    EXPECT_EQ(closed.paramOf({0, 1.5, 0}), 4.5);
    EXPECT_NEAR(closed.paramOf({4, 0, 0}), 1.0, 1e-15);
}

TEST(GeCurve, BoxesTouchTheTrueExtremesOfAnyAffineImage)
{
    std::mt19937 random(3);
    onAllCurves([&](const KdGeCurve3d& curve) {
        for (int round = 0; round < 8; ++round) {
            const KdGeMatrix3d matrix = randomAffine(random);
            const KdGeExtents3d box = curve.extentsUnder(matrix);
            for (unsigned int axis = 0; axis < 3; ++axis) {
                const auto at = [&](double f) { return (matrix * pointAt(curve, f))[axis]; };
                EXPECT_NEAR(box.minPoint()[axis], minimum(at), 1e-12) << axis;
                EXPECT_NEAR(box.maxPoint()[axis], -minimum([&](double f) { return -at(f); }), 1e-12)
                    << axis;
            }
        }
    });
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
    EXPECT_TRUE(curve.evalPoint(2.0).isEqualTo({4, 3, 0}));
    EXPECT_TRUE(curve.evalPoint(4.5).isEqualTo({0, 1.5, 0}));
    EXPECT_TRUE(curve.evalPoint(5.5).isEqualTo({0, -1.5, 0})); // the last piece goes on
    EXPECT_DOUBLE_EQ(curve.paramAtLength(0.0, 3.0), 0.75);
    EXPECT_DOUBLE_EQ(curve.paramAtLength(0.0, curve.length() - 1.5), 4.5);
    EXPECT_DOUBLE_EQ(curve.paramAtLength(0.5, 4.0, false), -0.5);

    const double length = curve.length();
    EXPECT_FALSE(curve.transformBy(KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1)))); // arcs refuse
    EXPECT_EQ(curve.evalPoint(0.5), KdGePoint3d(2, 0, 0));
    EXPECT_EQ(curve.length(), length);
}

TEST(GeFlatten, TheChainStaysWithinTheToleranceOfTheImage)
{
    std::mt19937 random(4);
    onAllCurves([&](const KdGeCurve3d& curve) {
        for (const double tolerance : {0.5, 1e-2, 1e-4}) {
            const KdGeMatrix3d matrix = randomAffine(random);
            const auto chain = chainOf(curve, matrix, tolerance);
            EXPECT_LE(chain.front().distanceTo(matrix * curve.startPoint()), 1e-14);
            EXPECT_LE(chain.back().distanceTo(matrix * curve.endPoint()), 1e-14);
            for (int i = 0; i <= 1000; ++i)
                ASSERT_LE(distanceToChain(matrix * pointAt(curve, i / 1000.0), chain),
                          tolerance * (1 + 1e-9));
        }
    });
}

TEST(GeFlatten, AnArcSeenFromTheEdgeKeepsItsFullWidth)
{
    KdGeMatrix3d edgeOn; // drops y: the arc folds back on itself at angle 0
    edgeOn(1, 1) = 0.0;
    const KdGeCircArc3d arc({}, KdGeVector3d::kZAxis, KdGeVector3d::kXAxis, 100.0, -0.2, 0.5);
    EXPECT_NEAR(std::ranges::max(chainOf(arc, edgeOn, 1e-3), {}, &KdGePoint3d::x).x, 100.0, 1e-3);
}

TEST(GeFlatten, TheChainIsNoLongerThanNeeded)
{
    const auto count = [](const KdGeCurve3d& curve, double tolerance) {
        return chainOf(curve, KdGeMatrix3d::kIdentity, tolerance).size();
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
