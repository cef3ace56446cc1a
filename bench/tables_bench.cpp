// Adding records to a table and finding them by name: the cost of one among many.

#include "korra/host.h"
#include "orvex/orvex.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

void makeLayers(benchmark::State& state)
{
    korra::startHost();
    for (auto _ : state) {
        KdDbDatabase database(true, true);
        for (int i = 0; i < state.range(0); ++i) {
            QmLayerMgr::LAYERINFO layer;
            const std::wstring name = L"Layer " + std::to_wstring(i);
            layer.name = name.c_str();
            if (QmLayerMgr::CreateLayer(layer, &database) != 1)
                state.SkipWithError("a layer was refused");
        }
        if (!QmLayerMgr::FindLayer(L"LAYER 0", &database))
            state.SkipWithError("a layer is not found");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    korra::stopHost();
}

BENCHMARK(makeLayers)->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

} // namespace
