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
    const std::pair<const char*, SharedCurve> curves[] = {
        {"segment", segment({1, 2, 3}, {-4, 5, 1})},
        {"circle", std::make_shared<KdGeCircArc3d>(center, KdGeVector3d(1, 2, 2), 5.0)},
        {"arc", std::make_shared<KdGeCircArc3d>(center, KdGeVector3d(1, 0, 1), KdGeVector3d::kYAxis,
                                                2.0, 6.0, 0.5)},
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

/// The least value of a function over [0, 1], by sampling.
double minimum(const std::function<double(double)>& value)
{
    double least = HUGE_VAL;
    for (int i = 0; i <= 4000; ++i)
        least = std::min(least, value(i / 4000.0));
    return least;
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
    for (const double bulge : {1e-12, -1e-12, 0.1, -0.5, 1.0, -40.0}) {
        const KdGeCircArc3d arc = KdGeCircArc3d::fromBulge(start, end, bulge);
        // Positive bulges lie to the right of the chord.
        const KdGePoint3d top = start + (end - start) / 2.0 + right * (bulge * 2.5);
        const double reach = 1e-15 * std::max(10.0, arc.length());
        EXPECT_EQ(arc.startPoint(), start) << bulge;
        EXPECT_LE(arc.endPoint().distanceTo(end), reach) << bulge;
        EXPECT_LE(arc.evalPoint(arc.sweep() / 2.0).distanceTo(top), reach) << bulge;
        EXPECT_NEAR(arc.nearestParam(top) / arc.sweep(), 0.5, 1e-14) << bulge;
    }
}

TEST(GeCircArc, TheEndAngleFollowsTheStartAngleByAtMostATurn)
{
    const std::tuple<double, double, double> cases[] = {
        {6.0, 0.5, 0.5 - 6.0 + KdGe::kFullTurn},
        {0.1 + 0.2, 0.3, KdGe::kFullTurn},
        {1.0, 1.0 + 1e-9, 1e-9},
        {1.0, 1.0 - 1e-9, KdGe::kFullTurn - 1e-9},
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
    for (const KdGeMatrix3d& matrix : {shear, perspective, KdGeMatrix3d::scaling(0.0),
                                       KdGeMatrix3d::scaling(KdGeScale3d(1, 2, 1))})
        EXPECT_FALSE(arc.transformBy(matrix));
    EXPECT_EQ(arc.center(), KdGePoint3d(1, 2, 3));
    EXPECT_FALSE(KdGeLine3d({}, KdGePoint3d(1, 0, 0)).transformBy(perspective));
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
            for (const double fraction : {0.0, 0.13, 0.61, 1.0}) {
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

TEST(GeCurve, LengthsAndDerivativesAgreeWithDifferences)
{
    onAllCurves([](const KdGeCurve3d& curve) {
        const double step = 1e-5;
        for (const double fraction : {0.05, 0.77}) {
            const double param = paramAt(curve, fraction);
            const KdGeVector3d moved =
                curve.evalPoint(param + step) - curve.evalPoint(param - step);
            EXPECT_LE((curve.firstDerivative(param) - moved / (2.0 * step)).length(), 1e-8);
            EXPECT_NEAR(curve.length(param + step, param - step), moved.length(), 1e-12);
        }
        const double from = paramAt(curve, 0.1);
        const double to = paramAt(curve, 0.7);
        EXPECT_NEAR(curve.paramAtLength(from, curve.length(from, to)), to, 1e-14);
        EXPECT_NEAR(curve.paramAtLength(to, curve.length(from, to), false), from, 1e-14);
    });
}

TEST(GeCurve, NoPointOfTheCurveIsNearerThanTheNearest)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> coordinates(-8.0, 8.0);
    onAllCurves([&](const KdGeCurve3d& curve) {
        for (int round = 0; round < 20; ++round) {
            const KdGePoint3d from(coordinates(random), coordinates(random), coordinates(random));
            const double least =
                minimum([&](double fraction) { return pointAt(curve, fraction).distanceTo(from); });
            EXPECT_LE(curve.distanceTo(from), least);
            EXPECT_NEAR(curve.distanceTo(from), least, 1e-4);
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
    EXPECT_EQ(polyline().paramOf({0, 0, 0}), 0.0);
    EXPECT_EQ(polyline().paramOf({0, 1.5, 0}), 4.5);
}

TEST(GeCurve, BoxesTouchTheTrueExtremesOfAnyAffineImage)
{
    std::mt19937 random(3);
    onAllCurves([&](const KdGeCurve3d& curve) {
        const KdGeMatrix3d matrix = randomAffine(random);
        const KdGeExtents3d box = curve.extentsUnder(matrix);
        for (unsigned int axis = 0; axis < 3; ++axis) {
            const auto at = [&](double f) { return (matrix * pointAt(curve, f))[axis]; };
            EXPECT_NEAR(box.minPoint()[axis], minimum(at), 1e-4) << axis;
            EXPECT_NEAR(box.maxPoint()[axis], -minimum([&](double f) { return -at(f); }), 1e-4);
        }
    });
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
            for (int i = 0; i <= 1000; ++i) {
                double nearest = HUGE_VAL;
                for (std::size_t j = 1; j < chain.size(); ++j)
                    nearest = std::min(nearest, KdGeLineSeg3d(chain[j - 1], chain[j])
                                                    .distanceTo(matrix * pointAt(curve, i / 1e3)));
                ASSERT_LE(nearest, tolerance * (1 + 1e-9));
            }
        }
    });
}

TEST(GeFlatten, TheChainIsNoLongerThanNeeded)
{
    const KdGeCircArc3d circle({}, KdGeVector3d::kZAxis, 1000.0);
    const auto count = [&](double tolerance) {
        return chainOf(circle, KdGeMatrix3d::kIdentity, tolerance).size();
    };
    EXPECT_EQ(count(1e6), 9u);
    const double needed = kPi / std::acos(1.0 - 0.1 / 1000.0); // chords of a sagitta of 0.1
    EXPECT_LE(count(0.1), 2.0 * needed + 8.0);
    EXPECT_EQ(count(0.0), 32769u);
}
