#include "support/host_test.h"

#include "kd/ap.h"
#include "korra/host.h"

namespace tests {

void startFreshHost()
{
    platform::releaseCalls();
    if (korra::hostIsRunning())
        korra::stopHost();
    korra::startHost({.recordFatalStops = true});
    korra::newDocument();
    korra::takePrintedText();
}

void HostTest::SetUp()
{
    startFreshHost();
}

void HostTest::TearDown()
{
    platform::releaseCalls();
    EXPECT_THAT(korra::audit(), ::testing::IsEmpty());
    korra::stopHost();
    EXPECT_THAT(korra::audit(), ::testing::IsEmpty());
}

KdDbDatabase& HostTest::database() const
{
    return *kddbHostApplicationServices()->workingDatabase();
}

namespace {

KdDbObjectId addToRecord(KdDbObjectId record, KdDbEntity* entity)
{
    KdDbBlockTableRecord* block = nullptr;
    EXPECT_EQ(kddbOpenObject(block, record, KdDb::kForWrite), Kdapi::eOk);
    KdDbObjectId id;
    EXPECT_EQ(block->appendKdDbEntity(id, entity), Kdapi::eOk);
    entity->close();
    block->close();
    return id;
}

KdDbObjectId makeBlock(const wchar_t* name)
{
    KdDbBlockTable* table = nullptr;
    KdDbDatabase* database = kddbHostApplicationServices()->workingDatabase();
    EXPECT_EQ(database->getSymbolTable(table, KdDb::kForWrite), Kdapi::eOk);
    auto* record = new KdDbBlockTableRecord;
    record->setName(name);
    KdDbObjectId id;
    EXPECT_EQ(table->add(id, record), Kdapi::eOk);
    record->close();
    table->close();
    return id;
}

} // namespace

KdDbObjectId addEntity(KdDbEntity* entity)
{
    return addToRecord(kddbHostApplicationServices()->workingDatabase()->currentSpaceId(), entity);
}

KdDbObjectId blockId(const wchar_t* name)
{
    KdDbBlockTable* table = nullptr;
    kddbHostApplicationServices()->workingDatabase()->getSymbolTable(table, KdDb::kForRead);
    KdDbObjectId id;
    table->getIdAt(name, id);
    table->close();
    return id;
}

KdDbObjectId addEntityToBlock(const wchar_t* block, KdDbEntity* entity)
{
    const KdDbObjectId existing = blockId(block);
    return addToRecord(existing.isNull() ? makeBlock(block) : existing, entity);
}

std::vector<std::string> tracedOperations(const std::function<void()>& scenario)
{
    platform::startTrace();
    scenario();
    std::vector<std::string> operations;
    for (const platform::TracedCall& call : platform::stopTrace())
        operations.push_back(call.operation);
    return operations;
}

} // namespace tests
