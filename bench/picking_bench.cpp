// Picks among many entities: one EntSelEx is a prompted pick and a silent nested one.

#include "korra/console.h"
#include "korra/host.h"
#include "orvex/orvex.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

KdDbObjectId currentSpace()
{
    return kddbHostApplicationServices()->workingDatabase()->currentSpaceId();
}

void fillModelSpace(int entities)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(0.0, 1000.0);
    std::uniform_real_distribution<double> step(-10.0, 10.0);
    KdDbBlockTableRecord* space = nullptr;
    kddbOpenObject(space, currentSpace(), KdDb::kForWrite);
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

void pickTarget(benchmark::State& state)
{
    korra::queueInput("-7,-10");
    KdDbObjectId outer, viewport, nested;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    if (EntSelEx(L"", outer, viewport, point, nested, transform) != RTNORM)
        state.SkipWithError("the pick missed");
    korra::takePrintedText();
}

void pick(benchmark::State& state)
{
    korra::startHost();
    korra::newDocument();
    fillModelSpace(static_cast<int>(state.range(0)));
    for (auto _ : state)
        pickTarget(state);
    korra::stopHost();
}

BENCHMARK(pick)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// The first pick makes the tree of boxes.
void firstPick(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        korra::startHost();
        korra::newDocument();
        fillModelSpace(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        pickTarget(state);
        state.PauseTiming();
        korra::stopHost();
        state.ResumeTiming();
    }
}

BENCHMARK(firstPick)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// Each pick is preceded by the change of a line.
void changeAndPick(benchmark::State& state)
{
    korra::startHost();
    korra::newDocument();
    fillModelSpace(static_cast<int>(state.range(0)));
    std::vector<KdDbObjectId> lines;
    KdDbBlockTableRecord* space = nullptr;
    kddbOpenObject(space, currentSpace(), KdDb::kForRead);
    KdDbBlockTableRecordIterator* walk = nullptr;
    space->newIterator(walk);
    for (; !walk->done(); walk->step())
        walk->getEntityId(lines.emplace_back());
    delete walk;
    space->close();
    std::mt19937 random(2);
    for (auto _ : state) {
        KdDbEntity* line = nullptr;
        kddbOpenObject(line, lines[random() % (lines.size() - 1)], KdDb::kForWrite);
        line->transformBy(KdGeMatrix3d::translation({0.5, 0.25, 0.0}));
        line->close();
        pickTarget(state);
    }
    korra::stopHost();
}

BENCHMARK(changeAndPick)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

} // namespace
