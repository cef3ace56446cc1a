#include "orvex/tessellation.h"

#include "platform/faults.h"
#include "support/ge_samples.h"
#include "support/room_test.h"

#include <cmath>

namespace {

constexpr double kFullTurn = 6.283185307179586;

/// What one call came to, behind a point that was there before it.
struct Tessellation {
    int result = -1;
    int count = -1;
    std::vector<KdGePoint3d> points;
    std::wstring message;
};

Tessellation divide(KdDbCurve* curve, double step)
{
    Tessellation made;
    const KdGePoint3d before(7, 7, 7);
    KdArray<KdGePoint3d> points;
    points.append(before);
    CString message = L"untouched";
    made.result =
        CConversion::KdDbCurveToKdGePoint3dArray(curve, points, made.count, step, message);
    EXPECT_EQ(points[0], before);
    made.points.assign(points.begin() + 1, points.end());
    made.message = message.GetString();
    return made;
}

Tessellation divide(const std::unique_ptr<KdDbCurve>& curve, double step)
{
    return divide(curve.get(), step);
}

/// Divides with the n-th call of an operation failing.
Tessellation divideFailing(KdDbCurve* curve, double step, const char* operation, int nth)
{
    Tessellation made;
    for (std::size_t call = 1; nth > 0; ++call) {
        platform::failCall(call, platform::Fault::status);
        made = divide(curve, step);
        const auto hit = platform::faultHit();
        platform::releaseCalls();
        if (!hit) {
            ADD_FAILURE() << operation << " is not called so often";
            break;
        }
        nth -= hit->operation == operation;
    }
    return made;
}

class TessellationTest : public HostTest {
protected:
    static std::unique_ptr<KdDbPolyline> polyline(const std::vector<PolylineVertex>& vertices,
                                                  bool closed = false)
    {
        std::unique_ptr<KdDbPolyline> made(newPolyline(vertices));
        made->setClosed(closed);
        return made;
    }
};

TEST_F(TessellationTest, OtherCurvesGivePointsAtEqualDistancesAndTheirEnd)
{
    const auto line = [](double length) {
        return std::make_unique<KdDbLine>(KdGePoint3d(1, 2, 3), KdGePoint3d(1, 2 + length, 3));
    };
    const std::tuple<double, double, std::vector<double>> lines[] = {
        {10, 3, {0, 3, 6, 10}}, {10, 5, {0, 5, 10}}, {2, 5, {2}}, {0, 5, {}}, {2, HUGE_VAL, {2}}};
    for (const auto& [length, step, distances] : lines) {
        SCOPED_TRACE(length / step);
        const Tessellation made = divide(std::unique_ptr<KdDbCurve>(line(length)), step);
        EXPECT_EQ(made.result, 1);
        EXPECT_EQ(made.message, L"untouched");
        ASSERT_EQ(made.points.size(), distances.size());
        EXPECT_EQ(static_cast<std::size_t>(made.count), distances.size());
        for (std::size_t i = 0; i < distances.size(); ++i)
            EXPECT_NEAR(made.points[i].distanceTo({1, 2 + distances[i], 3}), 0, 1e-14);
    }

    KdDbCircle circle({0, 0, 5}, KdGeVector3d::kZAxis, 10 / kFullTurn);
    const Tessellation round = divide(&circle, 2.5);
    ASSERT_EQ(round.count, 4) << "trunc(10 / 2.5), and no point at the end";
    ASSERT_EQ(round.points.size(), 4U);
    const double turned[] = {1, 0, -1, 0};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(round.points[i].x, circle.radius() * turned[i], 1e-15);
}

/// Half the turn of an ellipse by the trapezoid rule in a variable that slows down at its ends.
double ellipseLength(double a, double b, double from, double to)
{
    double sum = 0.0;
    for (int i = -500; i <= 500; ++i) {
        const double s = kPi / 2 * std::sinh(i / 100.0);
        const double t = from + (to - from) / 2 * (1 + std::tanh(s));
        const double weight = kPi / 2 * std::cosh(i / 100.0) / std::pow(std::cosh(s), 2);
        if (weight > 0)
            sum += weight * std::hypot(a * std::sin(t), b * std::cos(t));
    }
    return sum / 100.0 * std::abs(to - from) / 2;
}

TEST_F(TessellationTest, PointsOfAThinEllipseAreEquallyFarApartAndOnIt)
{
    constexpr double a = 8, b = 0.008;
    const double quarter = ellipseLength(a, b, 0, kPi / 2);
    KdDbEllipse ellipse({0, 0, 0}, KdGeVector3d::kZAxis, {a, 0, 0}, b / a);
    constexpr double kStep = 0.0123;
    const Tessellation made = divide(&ellipse, kStep);
    ASSERT_EQ(made.count, static_cast<int>(4 * quarter / kStep));
    for (int i = 0; i < made.count; ++i) {
        const KdGePoint3d& point = made.points[static_cast<std::size_t>(i)];
        const double t = std::atan2(std::abs(point.y) / b, std::abs(point.x) / a);
        EXPECT_NEAR(std::hypot(point.x / a, point.y / b), 1, 1e-12);
        const double inQuarter = ellipseLength(a, b, 0, t);
        const double half = point.x < 0 ? 2 * quarter - inQuarter : inQuarter;
        const double distance = point.y < 0 ? 4 * quarter - half : half;
        EXPECT_NEAR(distance, i * kStep, 1e-13 * 4 * quarter + 1e-9 * kStep) << i;
    }
}

TEST_F(TessellationTest, PolylinesKeepTheirVerticesAndOnlyArcsAreDivided)
{
    const std::vector<PolylineVertex> straight = {{0, 0}, {9, 0}, {9, 9}};
    EXPECT_EQ(divide(polyline(straight), 0.1).count, 3);
    EXPECT_EQ(divide(polyline(straight, true), 0.1).count, 3);

    // A half circle about (3, 0), a line, a quarter shorter than the step, a point twice.
    const auto mixed =
        polyline({{2, 0, 1}, {4, 0}, {4, 5, std::tan(kPi / 8)}, {4.5, 5.5}, {4.5, 5.5}, {0, 9}});
    const Tessellation made = divide(mixed.get(), 1);
    EXPECT_EQ(made.result, 1);
    EXPECT_EQ(made.message, L"\nThere may be a faulty point");
    const KdGePoint3d expected[] = {{2, 0, 0},
                                    {3 - std::cos(1), -std::sin(1), 0},
                                    {3 - std::cos(2), -std::sin(2), 0},
                                    {4, 0, 0},
                                    {4, 5, 0},
                                    {4.5, 5.5, 0},
                                    {0, 9, 0}};
    ASSERT_EQ(made.points.size(), std::size(expected));
    EXPECT_EQ(made.count, static_cast<int>(std::size(expected)));
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_NEAR(made.points[i].distanceTo(expected[i]), 0, 1e-14) << i;

    const Tessellation closed = divide(polyline({{0, 0, 1}, {2, 0, 1}}, true), 1);
    EXPECT_EQ(closed.count, 6) << "three of each half circle";
    const Tessellation nowhere = divide(polyline({{3, 4}, {3, 4}, {3, 4}}), 1);
    ASSERT_EQ(nowhere.count, 1);
    EXPECT_EQ(nowhere.points[0], KdGePoint3d(3, 4, 0)) << "where the last vertex is";
}

TEST_F(TessellationTest, WhatCannotBeDividedIsToldOrLeavesEverythingAsItWas)
{
    const std::wstring tooFew = L"\nThe polyline does not have enough points";
    for (const auto& few : {polyline({}), polyline({{1, 2}}), polyline({{1, 2}}, true),
                            polyline({{1, 2}, {3, 4, 1}})}) {
        const Tessellation made = divide(few.get(), 1);
        EXPECT_EQ(made.result, 0);
        EXPECT_EQ(made.count, -1);
        EXPECT_EQ(made.message, tooFew);
    }
    KdDbLine line({0, 0, 0}, {10, 0, 0});
    const auto arcs = polyline({{0, 0, 1}, {2, 0, 1e12}, {5, 0}});
    const std::pair<KdDbCurve*, double> refused[] = {
        {nullptr, 1},  {&line, 0},      {&line, -1},      {&line, std::nan("")},
        {&line, 1e-7}, {&line, 1e-300}, {arcs.get(), -1}, {arcs.get(), 1e-3}};
    for (const auto& [curve, step] : refused) {
        const Tessellation made = divide(curve, step);
        EXPECT_EQ(made.result, 0) << step;
        EXPECT_EQ(made.count, -1) << step;
        EXPECT_TRUE(made.points.empty()) << step;
        EXPECT_EQ(made.message, L"untouched") << step;
    }
}

TEST_F(TessellationTest, FailuresOnTheWayKeepWhatWasAppended)
{
    constexpr const char* kRead = "KdDbPolyline::getArcSegAt";
    // Radii 1, 3, 2; four reads to survey and to look at the largest, then one for each.
    const auto arcs = polyline({{0, 0, 1}, {2, 0, 1}, {8, 0, 1}, {12, 0}});
    Tessellation made = divideFailing(arcs.get(), 1, kRead, 2);
    EXPECT_EQ(made.result, 1) << "warned and went on";
    EXPECT_EQ(made.message, L"\nData: 1 is wrong!");
    EXPECT_EQ(made.count, 3 + 9 + 6 + 1);
    made = divideFailing(arcs.get(), 1, kRead, 4);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.count, -1);
    EXPECT_EQ(made.message, L"\nThe data of the smallest arc could not be read");
    made = divideFailing(arcs.get(), 1, kRead, 6);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.count, 3);
    EXPECT_EQ(made.points.size(), 3U);
    EXPECT_EQ(made.message, L"\nThe data of arc 1 could not be read!");

    const auto single = polyline({{0, 0, 1}, {2, 0}, {3, 0}});
    made = divideFailing(single.get(), 1, kRead, 1);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.message, L"\nThe polyline contains an invalid arc");

    KdDbLine line({0, 0, 0}, {10, 0, 0});
    made = divideFailing(&line, 3, "KdDbCurve::getPointAtDist", 3);
    EXPECT_EQ(made.result, 0);
    EXPECT_EQ(made.count, 3);
    EXPECT_EQ(made.points.size(), 2U);
    EXPECT_EQ(made.message, L"\nAn unknown error occurred while reading the points of the arc, "
                            L"please try again!");
}

} // namespace
