#include "orvex/objects.h"

#include "support/host_test.h"
#include "support/opened.h"

using namespace tests;
using support::Opened;

namespace {

KdDbLine* newLine()
{
    return new KdDbLine({0, 0, 0}, {10, 0, 0});
}

std::vector<KdDbObjectId> addLines(int count)
{
    std::vector<KdDbObjectId> ids;
    for (int i = 0; i < count; ++i)
        ids.push_back(addEntity(newLine()));
    return ids;
}

KdArray<KdDbObjectId> arrayOf(const std::vector<KdDbObjectId>& ids)
{
    KdArray<KdDbObjectId> array;
    for (const KdDbObjectId id : ids)
        array.append(id);
    return array;
}

std::vector<bool> erased(const std::vector<KdDbObjectId>& ids)
{
    std::vector<bool> flags;
    for (const KdDbObjectId id : ids)
        flags.push_back(id.isErased());
    return flags;
}

KdDbObjectId layerId()
{
    return kddbHostApplicationServices()->workingDatabase()->clayer();
}

/// Model space's entities as they are drawn.
std::vector<KdDbObjectId> drawOrder()
{
    const Opened<KdDbBlockTableRecord> space(blockId(L"*Model_Space"), KdDb::kForWrite);
    const Opened<KdDbSortentsTable> table([&](KdDbSortentsTable*& opened) {
        return space->getSortentsTable(opened, KdDb::kForWrite, true);
    });
    KdArray<KdDbObjectId> order;
    EXPECT_EQ(table->getFullDrawOrder(order), Kdapi::eOk);
    return {order.begin(), order.end()};
}

/// Ends what a failed addition leaves in the caller's hands.
void giveUp(KdDbEntity* entity)
{
    if (entity->objectId().isNull())
        delete entity;
    else
        entity->close();
}

class ObjectsTest : public HostTest {};

TEST_F(ObjectsTest, AddLeavesTheEntityOpenAndPostClosesIt)
{
    KdDbObjectId id;
    KdDbLine* added = newLine();
    EXPECT_EQ(addToDb(added, id, &database()), Kdapi::eOk);
    EXPECT_TRUE(added->isWriteEnabled());
    EXPECT_EQ(added->objectId(), id);
    EXPECT_EQ(added->ownerId(), database().currentSpaceId());
    added->close();

    EXPECT_EQ(postToDb(newLine(), id, &database()), Kdapi::eOk);
    EXPECT_TRUE(Opened<KdDbLine>(id, KdDb::kForWrite));
}

TEST_F(ObjectsTest, AddAndPostGoToTheGivenDatabase)
{
    KdDbDatabase other;
    KdDbLine* added = newLine();
    EXPECT_EQ(addToDb(added, &other), Kdapi::eOk);
    EXPECT_EQ(added->database(), &other);
    added->close();
    EXPECT_EQ(postToDb(newLine(), &other), Kdapi::eOk);
}

TEST_F(ObjectsTest, PostLeavesARefusedEntityToTheCaller)
{
    const KdDbObjectId resident = addEntity(newLine());
    const Opened<KdDbLine> line(resident, KdDb::kForWrite);
    KdDbObjectId id;
    EXPECT_EQ(postToDb(line.get(), id, &database()), Kdapi::eAlreadyInDb);
    EXPECT_TRUE(line->isWriteEnabled());

    const std::unique_ptr<KdDbLine> fresh(newLine());
    const Opened<KdDbBlockTableRecord> space(database().currentSpaceId(), KdDb::kForRead);
    EXPECT_EQ(postToDb(fresh.get(), &database()), Kdapi::eWasOpenForRead);
    EXPECT_TRUE(fresh->objectId().isNull());
}

TEST_F(ObjectsTest, PostReportsWhicheverStepFails)
{
    const auto post = [this] {
        KdDbLine* line = newLine();
        const Kdapi::ErrorStatus status = postToDb(line, &database());
        if (status != Kdapi::eOk)
            giveUp(line);
        return status;
    };
    const auto steps = tracedOperations(post);
    EXPECT_THAT(steps,
                ::testing::ElementsAre("kddbOpenObject", "KdDbBlockTableRecord::appendKdDbEntity",
                                       "KdDbObject::close", "KdDbObject::close"));
    for (std::size_t step = 1; step <= steps.size(); ++step) {
        platform::failCall(step, platform::Fault::status);
        EXPECT_NE(post(), Kdapi::eOk) << "step " << step;
    }
}

TEST_F(ObjectsTest, EraseKeepsWhatItErasedBeforeTheFirstFailure)
{
    const auto ids = addLines(4);
    const Opened<KdDbEntity> reader(ids[2], KdDb::kForRead);
    EXPECT_EQ(EraseObject(arrayOf(ids)), 0);
    EXPECT_EQ(erased(ids), (std::vector{true, true, false, false}));
}

TEST_F(ObjectsTest, EraseTakesObjectsOfAnyKindAndNoneAtAll)
{
    EXPECT_EQ(EraseObject(KdArray<KdDbObjectId>()), 1);
    const auto ids = addLines(1);
    EXPECT_EQ(EraseObject(ids[0]), 1);
    EXPECT_EQ(EraseObject(ids[0]), 0) << "erased objects are not opened";
    EXPECT_EQ(EraseObject(KdDbObjectId()), 0);
    EXPECT_EQ(EraseObject(layerId()), 0) << "the host refuses";
}

TEST_F(ObjectsTest, CopyGoesFromTheFirstToTheSecond)
{
    KdDbLine source({1, 2, 3}, {4, 5, 6});
    KdDbLine destination;
    EXPECT_EQ(CopyEntity(&source, &destination), Kdapi::eOk);
    EXPECT_EQ(destination.endPoint(), KdGePoint3d(4, 5, 6));

    EXPECT_EQ(CopyEntity(nullptr, &destination), 15);
    EXPECT_EQ(CopyObject(&source, nullptr), 15);
    KdDbCircle circle;
    EXPECT_EQ(CopyObject(&source, &circle), 20);
}

TEST_F(ObjectsTest, UpdateRegeneratesAndRedraws)
{
    const auto ids = addLines(1);
    const std::vector<std::string> update = {"kddbGetKdsName", "kddbEntUpd", "kdedRedraw"};
    const Opened<KdDbEntity> line(ids[0], KdDb::kForWrite);
    EXPECT_EQ(tracedOperations([&] { EntUpdate(line.get()); }), update);
    line->erase();
    EXPECT_EQ(tracedOperations([&] { EntUpdate(ids[0]); }), update);
}

TEST_F(ObjectsTest, UpdateDoesNothingForWhatIsNotOnTheScreen)
{
    const auto ids = addLines(1);
    const Opened<KdDbEntity> line(ids[0], KdDb::kForWrite);
    line->erase();
    KdDbLine free;
    EXPECT_THAT(tracedOperations([&] {
                    EntUpdate(line.get());
                    EntUpdate(&free);
                    EntUpdate(nullptr);
                    EntUpdate(KdDbObjectId());
                }),
                ::testing::IsEmpty());
}

TEST_F(ObjectsTest, OnlyALiveEntityThatCanBeOpenedIsValid)
{
    auto ids = addLines(3);
    EraseObject(ids[1]);
    EXPECT_TRUE(IsValidId(ids[0]));
    EXPECT_FALSE(IsValidId(ids[1]));
    EXPECT_FALSE(IsValidId(KdDbObjectId()));
    EXPECT_FALSE(IsValidId(layerId()));
    const Opened<KdDbEntity> writer(ids[2], KdDb::kForWrite);
    EXPECT_FALSE(IsValidId(ids[2]));

    KdDbObjectId gone;
    {
        KdDbDatabase other;
        postToDb(newLine(), gone, &other);
    }
    EXPECT_FALSE(IsValidId(gone));
}

TEST_F(ObjectsTest, CurrentSpaceIsThatOfTheEntitysOwnDatabase)
{
    KdDbDatabase other;
    KdDbObjectId here = addEntity(newLine()), there, nested = addEntityToBlock(L"B", newLine());
    postToDb(newLine(), there, &other);
    EXPECT_EQ(isEntityInCurrentSpaceId(here), 1);
    EXPECT_EQ(isEntityInCurrentSpaceId(there), 1);
    EXPECT_EQ(isEntityInCurrentSpaceId(nested), 0);
    KdDbObjectId layer = layerId();
    EXPECT_EQ(isEntityInCurrentSpaceId(layer), 0);
    const Opened<KdDbEntity> line(nested, KdDb::kForRead);
    EXPECT_EQ(isEntityInCurrentSpaceId(line.get()), 0);
}

TEST_F(ObjectsTest, DrawOrderPutsTheEntityBeneathAllOthers)
{
    const auto ids = addLines(3);
    EXPECT_EQ(DrawOrderMoveToLast(ids[2]), 1);
    EXPECT_EQ(drawOrder(), (std::vector{ids[2], ids[0], ids[1]}));
    EXPECT_EQ(DrawOrderMoveToLast(ids[2]), 1);
    EXPECT_EQ(drawOrder(), (std::vector{ids[2], ids[0], ids[1]}));
}

TEST_F(ObjectsTest, DrawOrderIgnoresTheHostsRefusalOfAnotherSpace)
{
    const auto ids = addLines(2);
    const KdDbObjectId nested = addEntityToBlock(L"B", newLine());
    const auto operations = tracedOperations([&] { EXPECT_EQ(DrawOrderMoveToLast(nested), 1); });
    EXPECT_THAT(operations, ::testing::Contains("KdDbSortentsTable::setRelativeDrawOrder"));
    EXPECT_EQ(drawOrder(), ids);
    EXPECT_EQ(DrawOrderMoveToLast(layerId()), 0);
}

TEST_F(ObjectsTest, LeaveNothingOpenWhateverFails)
{
    const auto lines = [] { return addLines(3); };
    using Lines = std::vector<KdDbObjectId>;
    sweepFaults<Lines>(lines, [](const Lines& ids) { EraseObject(arrayOf(ids)); });
    sweepFaults<Lines>(lines, [](const Lines& ids) { DrawOrderMoveToLast(ids[1]); });
    sweepFaults<Lines>(lines, [](const Lines& ids) {
        KdDbObjectId id = ids[0];
        IsValidId(id);
        isEntityInCurrentSpaceId(id);
        EntUpdate(id);
    });
    sweepFaults<Lines>(lines, [](const Lines& ids) {
        const Opened<KdDbEntity> line(ids[0], KdDb::kForWrite);
        KdDbLine source;
        CopyEntity(&source, line.get());
        EntUpdate(line.get());
    });
    const auto nothing = [] { return 0; };
    const auto working = [] { return kddbHostApplicationServices()->workingDatabase(); };
    sweepFaults<int>(nothing, [=](int) {
        KdDbLine* line = newLine();
        addToDb(line, working());
        giveUp(line);
    });
    sweepFaults<int>(nothing, [=](int) {
        KdDbLine* line = newLine();
        if (postToDb(line, working()) != Kdapi::eOk)
            giveUp(line);
    });
}

} // namespace
