// Transactions: what they open, what they close, what they take back.

#include "dxf_samples.h"

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
    EXPECT_EQ(manager().endTransaction(), Kdapi::eNotApplicable);
    EXPECT_EQ(manager().abortTransaction(), Kdapi::eNotApplicable);
    ASSERT_NE(manager().startTransaction(), nullptr);
    EXPECT_THAT(korra::audit(), ::testing::ElementsAre("1 transaction"));
    EXPECT_EQ(manager().getObject(object, {}, KdDb::kForRead), Kdapi::eNullObjectId);
    readLayer();
    readLayer();
    EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead);
    EXPECT_EQ(manager().endTransaction(), Kdapi::eOk);
    EXPECT_EQ(openForWriting(), Kdapi::eOk);
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

TEST_F(TransactionTest, ClosesWhatItOpenedAgainAfterItWasClosedByHand)
{
    manager().startTransaction();
    readLayer()->close();
    manager().startTransaction();
    readLayer();
    manager().endTransaction();
    EXPECT_EQ(openForWriting(), Kdapi::eOk);
    manager().endTransaction();
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
    const KdDbObjectId other = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    const auto setEnd = [&](KdDbObjectId line, double x) {
        get<KdDbLine>(line, KdDb::kForWrite)->setEndPoint({x, 0, 0});
    };
    const auto end = [&](KdDbObjectId line) {
        return Open<KdDbLine>(line, KdDb::kForRead)->endPoint().x;
    };
    manager().startTransaction();
    Open<KdDbLine>(id)->setEndPoint({2, 0, 0}); // past the transaction
    manager().startTransaction();
    setEnd(id, 3);
    setEnd(other, 3);
    const KdDbObjectId kept = addEntity(new KdDbLine);
    manager().endTransaction();
    manager().startTransaction();
    setEnd(id, 4);
    const KdDbObjectId added = addEntity(new KdDbLine);
    manager().abortTransaction();
    EXPECT_EQ(end(id), 3);
    EXPECT_TRUE(added.isErased());
    EXPECT_FALSE(kept.isErased());
    manager().abortTransaction();
    EXPECT_EQ(end(id), 1);
    EXPECT_EQ(end(other), 1);
    EXPECT_TRUE(kept.isErased());
}

TEST_F(TransactionTest, WhatWasErasedWithItsOwnerStillComesBackWithIt)
{
    auto* const polyline = new KdDb3dPolyline;
    polyline->appendVertex(new KdDbVertex({0, 0, 0}, 0.0));
    const KdDbObjectId id = addEntity(polyline);
    const KdDbObjectId vertex = polyline->vertices()[0]->objectId();
    erase(id);
    manager().startTransaction();
    KdDbObject* object = nullptr;
    ASSERT_EQ(manager().getObject(object, id, KdDb::kForWrite, true), Kdapi::eOk);
    EXPECT_EQ(object->erase(false), Kdapi::eOk);
    manager().abortTransaction();
    EXPECT_TRUE(id.isErased());
    EXPECT_TRUE(vertex.isErased());

    ASSERT_EQ(kddbOpenObject(object, id, KdDb::kForWrite, true), Kdapi::eOk);
    EXPECT_EQ(object->erase(false), Kdapi::eOk);
    object->close();
    EXPECT_FALSE(vertex.isErased());
}

TEST_F(TransactionTest, AnAbortedChangeIsNoneInTheFile)
{
    const std::string text = dxf::file(dxf::kModernSample);
    const auto read = dxf::readWhole(text);
    manager().startTransaction();
    dxf::changeObject<KdDbLine>(*read, 0x50, [](auto& line) { line.setEndPoint({1, 2, 3}); });
    manager().abortTransaction();
    EXPECT_EQ(korra::drawingText(*read), text);
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

} // namespace
} // namespace tests
