// Picks per second among many entities: one EntSelEx is a prompted pick and a silent nested one.

#include "korra/console.h"
#include "korra/host.h"
#include "orvex/orvex.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>

namespace {

void fillModelSpace(int entities)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(0.0, 1000.0);
    std::uniform_real_distribution<double> step(-10.0, 10.0);
    KdDbBlockTableRecord* space = nullptr;
    kddbOpenObject(space, kddbHostApplicationServices()->workingDatabase()->currentSpaceId(),
                   KdDb::kForWrite);
    for (int i = 0; i < entities; ++i) {
        const KdGePoint3d start(coordinate(random), coordinate(random), 0.0);
        auto* const line =
            new KdDbLine(start, {start.x + step(random), start.y + step(random), 0.0});
        space->appendKdDbEntity(line);
        line->close();
    }
    auto* const target = new KdDbLine({-10.0, -10.0, 0.0}, {-5.0, -10.0, 0.0});
    space->appendKdDbEntity(target);
    target->close();
    space->close();
}

void pick(benchmark::State& state)
{
    korra::startHost();
    korra::newDocument();
    fillModelSpace(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        korra::queueInput("-7,-10");
        KdDbObjectId outer, viewport, nested;
        KdGePoint3d point;
        KdGeMatrix3d transform;
        if (EntSelEx(L"", outer, viewport, point, nested, transform) != RTNORM)
            state.SkipWithError("the pick missed");
        korra::takePrintedText();
    }
    state.SetItemsProcessed(state.iterations());
    korra::stopHost();
}

BENCHMARK(pick)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

} // namespace
