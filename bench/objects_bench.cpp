// What grows with the objects of a drawing: transactions, and references to large blocks.

#include "korra/host.h"
#include "orvex/orvex.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

KdDbBlockTableRecord* openForWrite(KdDbObjectId block)
{
    KdDbBlockTableRecord* record = nullptr;
    kddbOpenObject(record, block, KdDb::kForWrite);
    return record;
}

std::vector<KdDbObjectId> addLines(KdDbObjectId block, int count)
{
    std::vector<KdDbObjectId> lines;
    KdDbBlockTableRecord* const record = openForWrite(block);
    for (int i = 0; i < count; ++i) {
        auto* const line = new KdDbLine({1.0 * i, 0.0, 0.0}, {1.0 * i, 1.0, 0.0});
        record->appendKdDbEntity(lines.emplace_back(), line);
        line->close();
    }
    record->close();
    return lines;
}

KdDbObjectId newBlock(KdDbDatabase& database)
{
    auto* const record = new KdDbBlockTableRecord;
    record->setName(L"Part");
    KdDbBlockTable* table = nullptr;
    database.getSymbolTable(table, KdDb::kForWrite);
    KdDbObjectId id;
    table->add(id, record);
    record->close();
    table->close();
    return id;
}

/// Moves every line in one transaction, and takes it all back.
void transaction(benchmark::State& state)
{
    korra::startHost();
    KdDbDatabase database(true, true);
    const auto lines = addLines(database.currentSpaceId(), static_cast<int>(state.range(0)));
    for (auto _ : state) {
        KdDbTransactionManager* const manager = database.transactionManager();
        manager->startTransaction();
        for (const KdDbObjectId id : lines) {
            KdDbObject* object = nullptr;
            if (manager->getObject(object, id, KdDb::kForWrite, false) != Kdapi::eOk)
                state.SkipWithError("a line cannot be opened");
            static_cast<KdDbEntity*>(object)->transformBy(KdGeMatrix3d::translation({1, 0, 0}));
        }
        manager->abortTransaction();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    korra::stopHost();
}

BENCHMARK(transaction)->Arg(800)->Arg(8000)->Arg(80000)->Unit(benchmark::kMillisecond);

/// A hundred references to a block of so many lines.
void appendReferences(benchmark::State& state)
{
    korra::startHost();
    KdDbDatabase database(true, true);
    const KdDbObjectId part = newBlock(database);
    addLines(part, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        KdDbBlockTableRecord* const space = openForWrite(database.currentSpaceId());
        for (int i = 0; i < 100; ++i) {
            auto* const reference = new KdDbBlockReference({1.0 * i, 0.0, 0.0}, part);
            if (space->appendKdDbEntity(reference) != Kdapi::eOk)
                state.SkipWithError("a reference was refused");
            reference->close();
        }
        space->close();
    }
    korra::stopHost();
}

BENCHMARK(appendReferences)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
