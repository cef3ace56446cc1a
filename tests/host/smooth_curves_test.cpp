// Ellipses and splines: curves without a closed form for lengths, nearest points and boxes. What
// the host works out is compared with quadratures and searches of the tests' own.

#include "dxf_samples.h"

#include <cmath>
#include <functional>
#include <numbers>

namespace tests::dxf {
namespace {

/// The length between two parameters by the trapezoid rule in a variable that slows down towards
/// the ends, so that whatever is smooth between them converges quickly (tanh-sinh).
double quadrature(const KdGeCurve3d& curve, double from, double to)
{
    const double half = (to - from) / 2.0;
    double sum = 0.0;
    constexpr double kStep = 1.0 / 256.0;
    for (int i = -1100; i <= 1100; ++i) {
        const double t = i * kStep;
        const double s = std::numbers::pi / 2.0 * std::sinh(t);
        const double weight = std::numbers::pi / 2.0 * std::cosh(t) / std::pow(std::cosh(s), 2);
        if (weight > 0.0)
            sum += weight * curve.firstDerivative(from + half * (1.0 + std::tanh(s))).length();
    }
    return sum * kStep * half;
}

/// The same over pieces of the interval, so that kinks lie at their ends.
double quadrature(const KdGeCurve3d& curve, const std::vector<double>& ends)
{
    double sum = 0.0;
    for (std::size_t i = 1; i < ends.size(); ++i)
        sum += quadrature(curve, ends[i - 1], ends[i]);
    return sum;
}

/// The perimeter by the arithmetic-geometric mean.
double perimeter(double a, double b)
{
    double sum = a * a - (a * a - b * b) / 2.0;
    double mean = a;
    double root = b;
    double factor = 0.5;
    while (std::abs(mean - root) > 1e-15 * mean) {
        const double difference = (mean - root) / 2.0;
        factor *= 2.0;
        sum -= factor * difference * difference;
        const double next = (mean + root) / 2.0;
        root = std::sqrt(mean * root);
        mean = next;
    }
    return 2.0 * std::numbers::pi * sum / mean;
}

constexpr const char* kCusp =
    "0 SPLINE; 5 A1; 70 8; 71 3; 40 0; 40 0; 40 0; 40 0; 40 1; 40 1; 40 1; 40 1\n"
    "10 0; 20 0; 30 0; 10 4; 20 3; 30 0; 10 0; 20 3; 30 0; 10 4; 20 0; 30 0";
constexpr const char* kUneven =
    "0 SPLINE; 5 A1; 71 2; 40 0; 40 0; 40 0; 40 0.01; 40 5; 40 5.5; 40 9; 40 9; 40 9\n"
    "41 1; 41 5; 41 0.2; 41 1; 41 3; 41 1\n"
    "10 1; 20 0; 30 0; 10 4; 20 9; 30 1; 10 0; 20 3; 30 2; 10 4; 20 -5; 30 3; 10 7; 20 2; 30 0\n"
    "10 9; 20 9; 30 5";
constexpr const char* kPeriodic =
    "0 SPLINE; 5 A1; 70 3; 71 3; 40 -3; 40 -2; 40 -1; 40 0; 40 1; 40 2; 40 3; 40 4; 40 5; 40 6; "
    "40 7\n"
    "10 1; 20 0; 30 0; 10 0; 20 1; 30 0; 10 -1; 20 0; 30 0; 10 0; 20 -1; 30 0; 10 1; 20 0; 30 0\n"
    "10 0; 20 1; 30 0; 10 -1; 20 0; 30 0";
constexpr const char* kFitted = "0 SPLINE; 5 A1; 71 3; 12 0; 22 1; 32 0; 11 0; 21 0; 31 0; 11 3; "
                                "21 4; 31 0; 11 3; 21 4; 31 0; 11 9; 21 4; 31 8";
constexpr const char* kEllipse = "0 ELLIPSE; 5 A1; 10 3; 20 1; 30 2; 11 0; 21 -8; 31 0; 210 0.6; "
                                 "220 0; 230 0.8; 40 0.001; 41 0.5; 42 5";

struct Sample {
    const char* entity;
    std::vector<double> kinks; ///< parameters of ends and kinks
};

const Sample kSamples[] = {
    {kCusp, {0, 0.5, 1}},
    {kUneven, {0, 0.01, 5, 5.5, 9}},
    {kPeriodic, {0, 1, 2, 3, 4}},
    {kFitted, {0, 5, 15}},
    {kEllipse, {0.5, std::numbers::pi / 2, std::numbers::pi, std::numbers::pi * 1.5, 5}},
};

class SmoothCurvesTest : public HostTest {
protected:
    /// Calls with the geometry of each sample.
    void forEach(const std::function<void(const KdGeCurve3d&, const Sample&)>& check)
    {
        for (const Sample& sample : kSamples) {
            SCOPED_TRACE(sample.entity);
            const auto database = readWhole(withEntities(sample.entity));
            const auto curve = find<KdDbCurve>(*database, 0xA1)->geometry();
            ASSERT_TRUE(curve);
            check(*curve, sample);
        }
    }
};

TEST_F(SmoothCurvesTest, LengthsAndPointsAtLengthsAgreeWithQuadrature)
{
    forEach([](const KdGeCurve3d& curve, const Sample& sample) {
        EXPECT_DOUBLE_EQ(curve.startParam(), sample.kinks.front());
        EXPECT_NEAR(curve.endParam(), sample.kinks.back(), 1e-12);
        const double length = curve.length();
        EXPECT_NEAR(length, quadrature(curve, sample.kinks), 1e-12 * length);
        double before = curve.startParam();
        for (int i = 1; i <= 50; ++i) {
            const double param = curve.paramAtLength(curve.startParam(), length * i / 50);
            std::vector<double> ends{before};
            for (const double kink : sample.kinks) {
                if (before < kink && kink < param)
                    ends.push_back(kink);
            }
            ends.push_back(param);
            EXPECT_NEAR(quadrature(curve, ends), length / 50, 1e-12 * length) << "piece " << i;
            before = param;
        }
        const double middle = curve.paramAtLength(curve.endParam(), length / 4, false);
        EXPECT_NEAR(curve.length(middle, curve.endParam()), length / 4, 1e-12 * length);
    });
    for (const double ratio : {1.0, 0.5, 0.001}) {
        const KdDbEllipse whole({0, 0, 0}, KdGeVector3d::kZAxis, {8, 0, 0}, ratio);
        const double expected = perimeter(8, 8 * ratio);
        EXPECT_NEAR(whole.geometry()->length(), expected, 1e-13 * expected) << ratio;
        EXPECT_TRUE(whole.isClosed());
    }
}

TEST_F(SmoothCurvesTest, DerivativesNearestPointsAndBoxesAgreeWithASearch)
{
    const KdGeMatrix3d shear = KdGeMatrix3d::rotation(0.7, {1, 2, 3}) *
                               KdGeMatrix3d::scaling(KdGeScale3d(2, -0.5, 3)) *
                               KdGeMatrix3d::rotation(0.4, {0, 0, 1});
    forEach([&](const KdGeCurve3d& curve, const Sample& sample) {
        constexpr int kSteps = 5000; // between kinks
        const KdGePoint3d given[] = {{1, 2, 0.5}, {20, 3, 1}, {2, 1.5, 0}};
        double nearest[] = {1e9, 1e9, 1e9};
        KdGeExtents3d searched;
        const auto moved = curve.clone();
        ASSERT_TRUE(moved->transformBy(shear));
        const auto pieces = static_cast<int>(sample.kinks.size()) - 1;
        for (int i = 0; i <= kSteps * pieces; ++i) {
            const auto piece = static_cast<std::size_t>(std::min(i / kSteps, pieces - 1));
            const double width = sample.kinks[piece + 1] - sample.kinks[piece];
            const double part = static_cast<double>(i) / kSteps - static_cast<double>(piece);
            const double param = sample.kinks[piece] + part * width;
            const KdGePoint3d point = curve.evalPoint(param);
            searched.addPoint(shear * point);
            for (std::size_t k = 0; k < std::size(given); ++k)
                nearest[k] = std::min(nearest[k], point.distanceTo(given[k]));
            if (i % 1000 != 500)
                continue;
            EXPECT_TRUE(moved->evalPoint(param).isEqualTo(shear * point));
            const double step = 1e-6 * width;
            const KdGeVector3d difference =
                (curve.evalPoint(param + step) - curve.evalPoint(param - step)) / (2.0 * step);
            EXPECT_NEAR((difference - curve.firstDerivative(param)).length() * width, 0.0, 1e-5);
            EXPECT_NEAR(curve.distanceTo(point), 0.0, 1e-12);
        }
        for (std::size_t k = 0; k < std::size(given); ++k) {
            const double found = curve.distanceTo(given[k]);
            EXPECT_LE(found, nearest[k] + 1e-12) << k;
            EXPECT_NEAR(found, nearest[k], 1e-5) << k;
        }
        const KdGeExtents3d box = curve.extentsUnder(shear);
        for (unsigned int axis = 0; axis < 3; ++axis) {
            EXPECT_LE(box.minPoint()[axis], searched.minPoint()[axis] + 1e-13);
            EXPECT_GE(box.maxPoint()[axis], searched.maxPoint()[axis] - 1e-13);
            EXPECT_NEAR(box.minPoint()[axis], searched.minPoint()[axis], 1e-4);
            EXPECT_NEAR(box.maxPoint()[axis], searched.maxPoint()[axis], 1e-4);
        }
        std::vector<KdGePoint3d> chain;
        curve.flatten(shear, 0.01, chain);
        EXPECT_LT(chain.size(), 400u);
        for (std::size_t i = 1; i < chain.size(); ++i)
            EXPECT_LT(moved->distanceTo(chain[i - 1] + (chain[i] - chain[i - 1]) / 2.0), 0.011);
    });
}

TEST_F(SmoothCurvesTest, TransformedEntitiesAndReversedCurvesHaveTheSamePoints)
{
    const KdGeMatrix3d uneven =
        KdGeMatrix3d::rotation(0.7, {1, 2, 3}) * KdGeMatrix3d::scaling(KdGeScale3d(2, -0.5, 3));
    for (const Sample& sample : kSamples) {
        SCOPED_TRACE(sample.entity);
        const auto database = readToWorkOn(withEntities(sample.entity));
        const auto before = find<KdDbCurve>(*database, 0xA1)->geometry();
        changeObject<KdDbCurve>(*database, 0xA1, [&](KdDbCurve& curve) {
            EXPECT_EQ(curve.transformBy(uneven), Kdapi::eOk);
        });
        const auto after = find<KdDbCurve>(*database, 0xA1)->geometry();
        const auto reversed = before->clone();
        reversed->reverse();
        EXPECT_NEAR(reversed->length(), before->length(), 1e-12);
        for (int i = 0; i <= 20; ++i) {
            const double param = std::lerp(before->startParam(), before->endParam(), i / 20.0);
            const KdGePoint3d point = before->evalPoint(param);
            EXPECT_NEAR(after->distanceTo(uneven * point), 0.0, 1e-9) << i;
            EXPECT_NEAR(reversed->evalPoint(-param).distanceTo(point), 0.0, 1e-12) << i;
        }
        EXPECT_NEAR(after->startPoint().distanceTo(uneven * before->startPoint()), 0.0, 1e-9);
        EXPECT_NEAR(after->endPoint().distanceTo(uneven * before->endPoint()), 0.0, 1e-9);
    }
}

TEST_F(SmoothCurvesTest, WhatGivesNoCurveIsKeptAndNotShown)
{
    const std::string knots = "40 0; 40 0; 40 1; 40 1";
    const std::string points = "; 10 0; 20 0; 30 0; 10 1; 20 1; 30 0";
    for (const std::string& entity : {
             "0 SPLINE; 5 A1; 71 1; 40 0; 40 0; 40 1" + points,
             "0 SPLINE; 5 A1; 71 1; 40 0; 40 1; 40 0; 40 1" + points,
             "0 SPLINE; 5 A1; 71 0; " + knots + points,
             "0 SPLINE; 5 A1; 71 1; 41 1; 41 -1; " + knots + points,
             "0 SPLINE; 5 A1; 71 1; 40 1; 40 1; 40 1; 40 1" + points,
             std::string("0 SPLINE; 5 A1; 71 3; 11 2; 21 2; 31 0; 11 2; 21 2; 31 0"),
             std::string("0 ELLIPSE; 5 A1; 10 0; 20 0; 11 0; 21 0; 40 1; 41 0; 42 1"),
         }) {
        const auto database = readWhole(withEntities(entity));
        KdDbExtents extents;
        EXPECT_EQ(find<KdDbCurve>(*database, 0xA1)->geometry(), nullptr) << entity;
        EXPECT_EQ(find<KdDbCurve>(*database, 0xA1)->getGeomExtents(extents),
                  Kdapi::eInvalidExtents);
    }
    const auto database = readWhole(withEntities("0 SPLINE; 5 A1; 71 1; " + knots + points));
    EXPECT_DOUBLE_EQ(find<KdDbCurve>(*database, 0xA1)->geometry()->length(), std::sqrt(2.0));
}

} // namespace
} // namespace tests::dxf
