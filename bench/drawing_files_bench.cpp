// Reading and writing drawing files, in bytes per second of the file.

#include "korra/host.h"

#include "kd/db.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>

namespace {

/// A drawing of scattered lines as another program would write it, with markers and owners.
std::string lineDrawing(int lines)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(0.0, 1000.0);
    std::string text = "  0\nSECTION\n  2\nENTITIES\n";
    char record[512];
    for (int i = 0; i < lines; ++i) {
        const int length = std::snprintf(
            record, sizeof record,
            "  0\nLINE\n  5\n%X\n330\n1F\n100\nEntity\n  8\n0\n100\nLine\n 10\n%.12f\n 20\n%.12f\n"
            " 30\n0.0\n 11\n%.12f\n 21\n%.12f\n 31\n0.0\n",
            0x100 + static_cast<unsigned>(i), coordinate(random), coordinate(random),
            coordinate(random), coordinate(random));
        text.append(record, static_cast<std::size_t>(length));
    }
    return text + "  0\nENDSEC\n  0\nEOF\n";
}

void readLines(benchmark::State& state)
{
    korra::startHost();
    const std::string text = lineDrawing(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        KdDbDatabase database(false, true);
        if (!korra::readDrawingText(database, text, "lines.dxf").done)
            state.SkipWithError("the drawing was refused");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
    korra::stopHost();
}

void writeLines(benchmark::State& state)
{
    korra::startHost();
    {
        KdDbDatabase database(false, true);
        korra::readDrawingText(database, lineDrawing(static_cast<int>(state.range(0))),
                               "lines.dxf");
        std::int64_t bytes = 0;
        for (auto _ : state)
            bytes += static_cast<std::int64_t>(korra::drawingText(database).size());
        state.SetBytesProcessed(bytes);
    }
    korra::stopHost();
}

BENCHMARK(readLines)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(writeLines)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
