// Points at equal distances along a curve, ten thousand of them: the library's, whose set-up is
// part of the first call, and for comparison the textbook's bisection of a quadrature.

#include "korra/host.h"
#include "orvex/orvex.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

namespace {

constexpr int kPoints = 10000;
constexpr double kMajor = 8.0;
constexpr double kMinor = 1.0;

std::unique_ptr<KdDbCurve> newEllipse()
{
    return std::make_unique<KdDbEllipse>(KdGePoint3d(), KdGeVector3d::kZAxis,
                                         KdGeVector3d(kMajor, 0.0, 0.0), kMinor / kMajor);
}

std::unique_ptr<KdDbCurve> newSpline()
{
    constexpr int kControlPoints = 50;
    KdArray<KdGePoint3d> points;
    KdArray<double> knots;
    for (int i = 0; i < kControlPoints; ++i)
        points.append({i + std::sin(7.0 * i), 3.0 * std::cos(5.0 * i), std::sin(2.0 * i)});
    for (int i = 0; i < kControlPoints + 4; ++i)
        knots.append(i < 4 ? 0.0 : i >= kControlPoints ? kControlPoints - 3.0 : i - 3.0);
    return std::make_unique<KdDbSpline>(3, points, knots);
}

template <std::unique_ptr<KdDbCurve> (*newCurve)()>
void divide(benchmark::State& state)
{
    korra::startHost();
    {
        const auto curve = newCurve();
        double end = 0.0;
        double length = 0.0;
        curve->getEndParam(end);
        curve->getDistAtParam(end, length);
        for (auto _ : state) {
            KdArray<KdGePoint3d> points;
            int count = 0;
            CString message;
            CConversion::KdDbCurveToKdGePoint3dArray(curve.get(), points, count, length / kPoints,
                                                     message);
            benchmark::DoNotOptimize(points);
        }
    }
    korra::stopHost();
    state.SetItemsProcessed(state.iterations() * kPoints);
}

void setUp(benchmark::State& state)
{
    korra::startHost();
    for (auto _ : state) {
        double end = 0.0;
        double length = 0.0;
        const auto curve = newSpline();
        curve->getEndParam(end);
        curve->getDistAtParam(end, length);
        benchmark::DoNotOptimize(length);
    }
    korra::stopHost();
}

/// The length of the ellipse between two parameters by Gauss's rule of five points.
double lengthBetween(double from, double to)
{
    constexpr double kNodes[] = {0.0, 0.5384693101056831, 0.9061798459386640};
    constexpr double kWeights[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
    const auto speed = [&](double x) {
        const double t = from + (to - from) / 2.0 * (1.0 + x);
        return std::hypot(kMajor * std::sin(t), kMinor * std::cos(t));
    };
    double sum = kWeights[0] * speed(0.0);
    for (int i = 1; i < 3; ++i)
        sum += kWeights[i] * (speed(kNodes[i]) + speed(-kNodes[i]));
    return sum * (to - from) / 2.0;
}

void divideByBisection(benchmark::State& state)
{
    double length = 0.0;
    for (int i = 0; i < 1000; ++i)
        length += lengthBetween(i * KdGe::kFullTurn / 1000, (i + 1) * KdGe::kFullTurn / 1000);
    const double step = length / kPoints;
    for (auto _ : state) {
        KdArray<KdGePoint3d> points;
        double from = 0.0;
        for (int i = 0; i < kPoints; ++i) {
            points.append({kMajor * std::cos(from), kMinor * std::sin(from), 0.0});
            double low = from;
            double high = from + 2.0 * step / kMinor;
            while (high - low > 1e-12) {
                const double middle = (low + high) / 2.0;
                (lengthBetween(from, middle) < step ? low : high) = middle;
            }
            from = low;
        }
        benchmark::DoNotOptimize(points);
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

BENCHMARK(divide<newEllipse>)->Name("divideEllipse")->Unit(benchmark::kMillisecond);
BENCHMARK(divide<newSpline>)->Name("divideSpline")->Unit(benchmark::kMillisecond);
BENCHMARK(setUp)->Name("setUpSpline")->Unit(benchmark::kMicrosecond);
BENCHMARK(divideByBisection)->Name("bisectEllipse")->Unit(benchmark::kMillisecond);

} // namespace
