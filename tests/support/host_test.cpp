#include "support/host_test.h"

#include "kd/ap.h"
#include "korra/host.h"
#include "support/objects.h"

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

void give(const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
        korra::queueInput(line);
}

HostTest::HostTest()
{
    startFreshHost();
}

HostTest::~HostTest()
{
    platform::releaseCalls();
    EXPECT_THAT(korra::audit(), ::testing::IsEmpty());
    korra::stopHost();
    EXPECT_THAT(korra::audit(), ::testing::IsEmpty());
}

KdDbDatabase& HostTest::database() const
{
    return *drawing();
}

namespace {

KdDbObjectId addToRecord(KdDbObjectId record, KdDbEntity* entity)
{
    KdDbObjectId id;
    EXPECT_EQ(Open<KdDbBlockTableRecord>(record)->appendKdDbEntity(id, entity), Kdapi::eOk);
    entity->close();
    return id;
}

} // namespace

KdDbObjectId addEntity(KdDbEntity* entity)
{
    return addToRecord(drawing()->currentSpaceId(), entity);
}

std::vector<KdDbObjectId> addLines(int count)
{
    std::vector<KdDbObjectId> ids;
    for (int i = 0; i < count; ++i)
        ids.push_back(addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0})));
    return ids;
}

KdDbObjectId blockId(const wchar_t* name)
{
    KdDbObjectId id;
    Open<KdDbBlockTable>(drawing()->blockTableId(), KdDb::kForRead)->getIdAt(name, id);
    return id;
}

KdDbObjectId addEntityToBlock(const wchar_t* block, KdDbEntity* entity)
{
    const KdDbObjectId existing = blockId(block);
    return addToRecord(existing.isNull() ? addRecord<KdDbBlockTable, KdDbBlockTableRecord>(block)
                                         : existing,
                       entity);
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

void failEachCall(const std::function<void()>& prepare, const std::function<void()>& scenario,
                  const std::function<void()>& check)
{
    bool delivered = true;
    for (std::size_t call = 1; delivered; ++call) {
        prepare();
        platform::failCall(call, platform::Fault::status);
        scenario();
        delivered = platform::faultDelivered();
        platform::releaseCalls();
        check();
    }
}

std::vector<std::string> outcomesOfFailures(const std::function<void()>& prepare,
                                            const std::function<int()>& scenario)
{
    std::vector<std::string> outcomes;
    const auto prepareFresh = [&] {
        startFreshHost();
        prepare();
        korra::takePrintedText();
    };
    failEachCall(
        prepareFresh, [&] { outcomes.push_back(std::to_string(scenario())); },
        [&] { outcomes.back() += korra::takePrintedText(); });
    return outcomes;
}

} // namespace tests
