// Where two zigzags cross, each of so many segments that every one of the first meets one of the
// second and no other.

#include "kd/ge.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

KdGeCompositeCurve3d zigzag(int segments, double phase)
{
    std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
    KdGePoint3d last(0.0, phase, 0.0);
    for (int i = 1; i <= segments; ++i) {
        const KdGePoint3d next(i, i % 2 == 0 ? phase : 1.0 - phase, 0.0);
        pieces.push_back(std::make_unique<KdGeLineSeg3d>(last, next));
        last = next;
    }
    return KdGeCompositeCurve3d(std::move(pieces));
}

void cross(benchmark::State& state)
{
    const auto first = zigzag(static_cast<int>(state.range(0)), 0.0);
    const auto second = zigzag(static_cast<int>(state.range(0)), 1.0);
    for (auto _ : state) {
        const KdGeCurveCurveInt3d found(first, second);
        if (found.numIntPoints() != state.range(0))
            state.SkipWithError("points are missing");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(cross)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
