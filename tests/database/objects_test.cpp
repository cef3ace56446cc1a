#include "orvex/objects.h"

#include "support/opened.h"
#include "support/room_test.h"

namespace {

KdDbLine* newLine()
{
    return new KdDbLine({0, 0, 0}, {10, 0, 0});
}

/// Model space's entities as they are drawn.
std::vector<KdDbObjectId> drawOrder()
{
    const Open<KdDbBlockTableRecord> space(blockId(L"*Model_Space"));
    KdDbSortentsTable* table = nullptr;
    EXPECT_EQ(space->getSortentsTable(table, KdDb::kForWrite, true), Kdapi::eOk);
    KdArray<KdDbObjectId> order;
    EXPECT_EQ(table->getFullDrawOrder(order), Kdapi::eOk);
    table->close();
    return {order.begin(), order.end()};
}

Kdapi::ErrorStatus postLine()
{
    return addLineBy([](KdDbLine* line) { return postToDb(line, drawing()); });
}

class ObjectsTest : public HostTest {};

TEST_F(ObjectsTest, AddLeavesTheEntityOpenAndPostClosesItInTheGivenDatabase)
{
    KdDbDatabase other;
    for (KdDbDatabase* target : {&database(), &other}) {
        KdDbObjectId added, posted;
        KdDbLine* lines[] = {newLine(), newLine(), newLine(), newLine()};
        EXPECT_EQ(addToDb(lines[0], added, target), Kdapi::eOk);
        EXPECT_EQ(addToDb(lines[1], target), Kdapi::eOk);
        EXPECT_EQ(postToDb(lines[2], target), Kdapi::eOk);
        EXPECT_EQ(postToDb(lines[3], posted, target), Kdapi::eOk);
        EXPECT_EQ(lines[0]->objectId(), added);
        EXPECT_EQ(lines[3]->objectId(), posted);
        for (KdDbLine* line : {lines[0], lines[1]})
            EXPECT_EQ(line->close(), Kdapi::eOk);
        for (const KdDbLine* line : lines)
            EXPECT_EQ(line->ownerId(), target->currentSpaceId());
    }
}

TEST_F(ObjectsTest, PostLeavesARefusedEntityToTheCaller)
{
    const Open<KdDbLine> line(addEntity(newLine()));
    KdDbObjectId id;
    EXPECT_EQ(postToDb(line.get(), id, &database()), Kdapi::eAlreadyInDb);
    EXPECT_TRUE(line->isWriteEnabled());

    const std::unique_ptr<KdDbLine> fresh(newLine());
    const Open<KdDbBlockTableRecord> space(database().currentSpaceId(), KdDb::kForRead);
    EXPECT_EQ(postToDb(fresh.get(), &database()), Kdapi::eWasOpenForRead);
    EXPECT_TRUE(fresh->objectId().isNull());
}

TEST_F(ObjectsTest, PostReportsWhicheverStepFails)
{
    const auto steps = tracedOperations([] { postLine(); });
    EXPECT_THAT(steps, ElementsAre("kddbOpenObject", "KdDbBlockTableRecord::appendKdDbEntity",
                                   "KdDbObject::close", "KdDbObject::close"));
    for (std::size_t step = 1; step <= steps.size(); ++step) {
        platform::failCall(step, platform::Fault::status);
        EXPECT_NE(postLine(), Kdapi::eOk) << "step " << step;
    }
}

TEST_F(ObjectsTest, EraseTakesObjectsOfAnyKindUpToTheFirstFailure)
{
    EXPECT_EQ(EraseObject(KdArray<KdDbObjectId>()), 1);
    EXPECT_EQ(EraseObject(KdDbObjectId()), 0);
    EXPECT_EQ(EraseObject(database().clayer()), 0) << "the host refuses";
    const auto ids = addLines(5);
    EXPECT_EQ(EraseObject(ids[4]), 1);
    EXPECT_EQ(EraseObject(ids[4]), 0) << "erased objects are not opened";

    const Open<KdDbEntity> reader(ids[2], KdDb::kForRead);
    EXPECT_EQ(EraseObject(arrayOf(ids)), 0);
    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(ids[i].isErased(), i < 2 || i == 4) << i;
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

TEST_F(ObjectsTest, UpdateRegeneratesAndRedrawsWhatIsOnTheScreen)
{
    const auto updating = [](auto what) { return tracedOperations([=] { EntUpdate(what); }); };
    const std::vector<std::string> update = {"kddbGetKdsName", "kddbEntUpd", "kdedRedraw"};
    const Open<KdDbEntity> line(addEntity(newLine()));
    EXPECT_EQ(updating(line.get()), update);
    line->erase();
    EXPECT_EQ(updating(line->objectId()), update) << "the id is not looked into";
    KdDbLine free;
    for (KdDbObject* none : {static_cast<KdDbObject*>(line.get()), static_cast<KdDbObject*>(&free),
                             static_cast<KdDbObject*>(nullptr)})
        EXPECT_THAT(updating(none), IsEmpty());
    EXPECT_THAT(updating(KdDbObjectId()), IsEmpty());
    const kds_name unknown{};
    EXPECT_EQ(kddbEntUpd(unknown), RTERROR);
    EXPECT_EQ(kdedRedraw(unknown, 1), RTERROR);
}

TEST_F(ObjectsTest, OnlyALiveEntityThatCanBeOpenedIsValid)
{
    auto ids = addLines(3);
    EraseObject(ids[1]);
    const Open<KdDbEntity> writer(ids[2]);
    EXPECT_TRUE(IsValidId(ids[0]));
    for (KdDbObjectId id : {ids[1], ids[2], KdDbObjectId(), database().clayer(),
                            KdDbDatabase().clayer()}) // of a drawing that is gone
        EXPECT_FALSE(IsValidId(id));
}

TEST_F(ObjectsTest, CurrentSpaceIsThatOfTheEntitysOwnDatabase)
{
    KdDbDatabase other;
    KdDbObjectId here = addEntity(newLine()), there, nested = addEntityToBlock(L"B", newLine());
    postToDb(newLine(), there, &other);
    KdDbObjectId layer = database().clayer();
    for (auto [id, isInSpace] : {std::pair(here, 1), {there, 1}, {nested, 0}, {layer, 0}})
        EXPECT_EQ(isEntityInCurrentSpaceId(id), isInSpace);
    const Open<KdDbEntity> line(nested, KdDb::kForRead);
    EXPECT_EQ(isEntityInCurrentSpaceId(line.get()), 0);
}

TEST_F(ObjectsTest, DrawOrderPutsTheEntityBeneathAllOthersOfItsSpace)
{
    const auto ids = addLines(3);
    const KdDbObjectId nested = addEntityToBlock(L"B", newLine());
    for (const KdDbObjectId moved : {ids[2], ids[2], nested}) { // the host refuses the nested
        EXPECT_EQ(DrawOrderMoveToLast(moved), 1);
        EXPECT_EQ(drawOrder(), (std::vector{ids[2], ids[0], ids[1]}));
    }
    EXPECT_EQ(DrawOrderMoveToLast(database().clayer()), 0);
}

} // namespace
