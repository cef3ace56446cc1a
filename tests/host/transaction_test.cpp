// Transactions: what they open, what they close, what they take back.

#include "support/host_test.h"
#include "support/objects.h"

#include "kd/ap.h"
#include "korra/host.h"

namespace tests {
namespace {

class TransactionTest : public HostTest {
protected:
    static KdDbTransactionManager& manager()
    {
        return *kdDocManagerPtr()->curDocument()->transactionManager();
    }

    template <class T>
    static T* get(KdDbObjectId id, KdDb::OpenMode mode)
    {
        KdDbObject* object = nullptr;
        EXPECT_EQ(manager().getObject(object, id, mode), Kdapi::eOk);
        return T::cast(object);
    }

    KdDbObject* readLayer() { return get<KdDbObject>(database().clayer(), KdDb::kForRead); }

    /// What opening the layer for writing comes to.
    Kdapi::ErrorStatus openForWriting()
    {
        KdDbObject* layer = nullptr;
        const auto status = kddbOpenObject(layer, database().clayer(), KdDb::kForWrite);
        if (layer)
            layer->close();
        return status;
    }
};

TEST_F(TransactionTest, ClosesWhatItOpenedAtItsEnd)
{
    KdDbObject* object = nullptr;
    EXPECT_EQ(manager().getObject(object, database().clayer(), KdDb::kForRead),
              Kdapi::eNotApplicable);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(manager().endTransaction(), Kdapi::eNotApplicable);
    ASSERT_NE(manager().startTransaction(), nullptr);
    EXPECT_THAT(korra::audit(), ::testing::ElementsAre("1 transaction"));
    EXPECT_EQ(manager().getObject(object, {}, KdDb::kForRead), Kdapi::eNullObjectId);
    readLayer();
    readLayer();
    EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead);
    EXPECT_EQ(manager().endTransaction(), Kdapi::eOk);
    EXPECT_EQ(openForWriting(), Kdapi::eOk);
    EXPECT_EQ(manager().numActiveTransactions(), 0);
}

TEST_F(TransactionTest, LeavesOpeningsOfOthersAloneWhenItsOwnWereClosedBefore)
{
    KdDbObject* ours = nullptr;
    ASSERT_EQ(kddbOpenObject(ours, database().clayer(), KdDb::kForRead), Kdapi::eOk);
    manager().startTransaction();
    readLayer();
    manager().startTransaction();
    EXPECT_EQ(readLayer()->close(), Kdapi::eOk);
    manager().endTransaction();
    EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead);
    manager().endTransaction();
    EXPECT_EQ(ours->close(), Kdapi::eOk);
    EXPECT_EQ(openForWriting(), Kdapi::eOk);
}

TEST_F(TransactionTest, AbortingGivesFieldsDataAndErasingBack)
{
    const KdDbObjectId lineId = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    manager().startTransaction();
    get<KdDbLayerTableRecord>(database().clayer(), KdDb::kForWrite)->setIsOff(true);
    auto* line = get<KdDbLine>(lineId, KdDb::kForWrite);
    line->setEndPoint({5, 0, 0});
    line->erase();
    EXPECT_EQ(manager().abortTransaction(), Kdapi::eOk);

    EXPECT_FALSE(lineId.isErased());
    EXPECT_EQ(Open<KdDbLine>(lineId, KdDb::kForRead)->endPoint(), KdGePoint3d(1, 0, 0));
    EXPECT_FALSE(Open<KdDbLayerTableRecord>(database().clayer(), KdDb::kForRead)->isOff());
}

TEST_F(TransactionTest, AbortingTakesPartsDictionariesAndAddedObjectsBack)
{
    auto* const made = new KdDb3dPolyline;
    made->appendVertex(new KdDbVertex({0, 0, 0}, 0.0));
    const KdDbObjectId polylineId = addEntity(made);
    const std::string before = korra::drawingText(database());

    manager().startTransaction();
    auto* const polyline = get<KdDb3dPolyline>(polylineId, KdDb::kForWrite);
    KdDbObjectId vertex;
    auto* const added = new KdDbVertex({1, 0, 0}, 0.0);
    polyline->appendVertex(vertex, added);
    added->close();
    polyline->createExtensionDictionary();
    const KdDbObjectId dictionary = polyline->extensionDictionary();
    const KdDbObjectId line = addEntity(new KdDbLine); // opened past the transaction
    const KdDbObjectId layer = addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Walls");
    EXPECT_EQ(manager().abortTransaction(), Kdapi::eOk);

    EXPECT_EQ(made->vertices().size(), 1u);
    EXPECT_TRUE(made->extensionDictionary().isNull());
    for (const KdDbObjectId id : {vertex, dictionary, line, layer})
        EXPECT_TRUE(id.isErased());
    EXPECT_EQ(korra::drawingText(database()), before);
    EXPECT_EQ((addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Walls")).isErased(), false);
}

TEST_F(TransactionTest, AnAbortedDimensionHasItsGraphicsBack)
{
    const KdDbObjectId id = addEntity(new KdDbAlignedDimension({0, 0, 0}, {4, 0, 0}, {0, 2, 0}));
    const std::string before = korra::drawingText(database());
    manager().startTransaction();
    auto* const dimension = get<KdDbDimension>(id, KdDb::kForWrite);
    dimension->setDimdec(0);
    dimension->transformBy(KdGeMatrix3d::translation({5, 0, 0}));
    dimension->close(); // which makes the graphics anew
    EXPECT_NE(korra::drawingText(database()), before);
    manager().abortTransaction();
    EXPECT_EQ(korra::drawingText(database()), before);
}

TEST_F(TransactionTest, WhatAnInnerOneKeepsTheOuterOneTakesBack)
{
    const KdDbObjectId id = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    const auto setEnd = [&](double x) {
        get<KdDbLine>(id, KdDb::kForWrite)->setEndPoint({x, 0, 0});
    };
    const auto end = [&] { return Open<KdDbLine>(id, KdDb::kForRead)->endPoint().x; };
    manager().startTransaction();
    manager().startTransaction();
    setEnd(2);
    manager().endTransaction();
    manager().startTransaction();
    setEnd(3);
    const KdDbObjectId added = addEntity(new KdDbLine);
    manager().abortTransaction();
    EXPECT_EQ(end(), 2);
    EXPECT_TRUE(added.isErased());
    manager().abortTransaction();
    EXPECT_EQ(end(), 1);
}

TEST_F(TransactionTest, ObjectsOfAnyOpenDrawingTakePart)
{
    KdDbDatabase other(true, true);
    const KdDbObjectId id = other.clayer();
    for (KdDbTransactionManager* each : {&manager(), other.transactionManager()}) {
        ASSERT_NE(each->startTransaction(), nullptr);
        KdDbObject* object = nullptr;
        ASSERT_EQ(each->getObject(object, id, KdDb::kForWrite), Kdapi::eOk);
        static_cast<KdDbLayerTableRecord*>(object)->setIsOff(true);
        EXPECT_EQ(each->abortTransaction(), Kdapi::eOk);
        EXPECT_FALSE(Open<KdDbLayerTableRecord>(id, KdDb::kForRead)->isOff());
    }
}

TEST_F(TransactionTest, NothingStaysOpenWhateverFails)
{
    sweepFaults<int>([] { return 0; },
                     [](int&) {
                         if (!manager().startTransaction())
                             return;
                         KdDbObject* object = nullptr;
                         manager().getObject(object, drawing()->clayer(), KdDb::kForWrite);
                         if (object)
                             object->close();
                         manager().endTransaction();
                     });
}

} // namespace
} // namespace tests
