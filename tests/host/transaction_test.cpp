// Transactions: what they open, what they close, what they take back.

#include "dxf_samples.h"

#include "kd/ap.h"

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
    EXPECT_THAT(korra::audit(), ElementsAre("1 transaction"));
    EXPECT_EQ(manager().getObject(object, {}, KdDb::kForRead), Kdapi::eNullObjectId);
    readLayer()->close();
    manager().startTransaction();
    readLayer();
    readLayer();
    EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead);
    EXPECT_EQ(manager().endTransaction(), Kdapi::eOk);
    EXPECT_EQ(openForWriting(), Kdapi::eOk) << "what was closed by hand is no one's";
    EXPECT_EQ(manager().endTransaction(), Kdapi::eOk);
}

TEST_F(TransactionTest, LeavesOpeningsOfOthersAloneWhenItsOwnWereClosedBefore)
{
    manager().startTransaction();
    readLayer();
    manager().startTransaction();
    EXPECT_EQ(readLayer()->close(), Kdapi::eOk);
    manager().endTransaction();
    EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead) << "by the outer one";
    {
        const Open<KdDbObject> ours(database().clayer(), KdDb::kForRead);
        manager().endTransaction();
        EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead) << "by ourselves";
    }
    EXPECT_EQ(openForWriting(), Kdapi::eOk);
}

TEST_F(TransactionTest, AbortingLeavesTheDrawingAsItWas)
{
    const auto read = dxf::readToWorkOn(dxf::file(dxf::kModernSample));
    auto* const made = new KdDb3dPolyline;
    const KdDbObjectId polylineId = addEntity(made);
    const KdDbObjectId lineId = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    const KdDbObjectId dimensionId =
        addEntity(new KdDbAlignedDimension({0, 0, 0}, {4, 0, 0}, {0, 2, 0}));
    const std::string before = korra::drawingText(database());

    manager().startTransaction();
    dxf::changeObject<KdDbLine>(*read, 0x50, [](auto& each) { each.setEndPoint({1, 2, 3}); });
    auto* const line = get<KdDbLine>(lineId, KdDb::kForWrite);
    line->setEndPoint({5, 0, 0});
    line->erase();
    auto* const polyline = get<KdDb3dPolyline>(polylineId, KdDb::kForWrite);
    auto* const vertex = new KdDbVertex({1, 0, 0}, 0.0);
    polyline->appendVertex(vertex);
    vertex->close();
    polyline->createExtensionDictionary();
    const KdDbObjectId dictionary = polyline->extensionDictionary();
    const KdDbObjectId added = addEntity(new KdDbLine); // opened past the transaction
    const KdDbObjectId layer = addLayer(L"Walls");
    auto* const dimension = get<KdDbDimension>(dimensionId, KdDb::kForWrite);
    dimension->transformBy(KdGeMatrix3d::translation({5, 0, 0}));
    dimension->close(); // which makes the graphics anew
    EXPECT_EQ(manager().abortTransaction(), Kdapi::eOk);

    EXPECT_EQ(korra::drawingText(database()), before);
    EXPECT_TRUE(made->vertices().isEmpty());
    EXPECT_TRUE(made->extensionDictionary().isNull());
    for (const KdDbObjectId id : {dictionary, added, layer})
        EXPECT_TRUE(id.isErased());
}

TEST_F(TransactionTest, WhatAnInnerOneKeepsTheOuterOneTakesBack)
{
    const KdDbObjectId id = addEntity(new KdDbText({0, 0, 0}, L"a", 1));
    const KdDbObjectId other = addEntity(new KdDbText({0, 0, 0}, L"a", 1));
    const auto height = [](KdDbObjectId text) { return Open<KdDbText>(text)->height(); };
    manager().startTransaction();
    Open<KdDbText>(id)->setHeight(2); // past the transaction
    manager().startTransaction();
    for (const KdDbObjectId each : {id, other})
        get<KdDbText>(each, KdDb::kForWrite)->setHeight(3);
    const KdDbObjectId kept = addEntity(new KdDbLine);
    manager().endTransaction();
    manager().startTransaction();
    get<KdDbText>(id, KdDb::kForWrite)->setHeight(4);
    const KdDbObjectId added = addEntity(new KdDbLine);
    manager().abortTransaction();
    EXPECT_EQ(height(id), 3);
    EXPECT_TRUE(added.isErased());
    EXPECT_FALSE(kept.isErased());
    manager().abortTransaction();
    EXPECT_EQ(height(id), 1);
    EXPECT_EQ(height(other), 1);
    EXPECT_TRUE(kept.isErased());
}

TEST_F(TransactionTest, WhatWasErasedWithItsOwnerStillComesBackWithIt)
{
    auto* const polyline = new KdDb3dPolyline;
    polyline->appendVertex(new KdDbVertex);
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

TEST_F(TransactionTest, ObjectsOfAnyOpenDrawingTakePart)
{
    KdDbDatabase other(true, true);
    const KdDbObjectId id = other.clayer();
    for (KdDbTransactionManager* each : {&manager(), other.transactionManager()}) {
        each->startTransaction();
        KdDbObject* object = nullptr;
        ASSERT_EQ(each->getObject(object, id, KdDb::kForWrite), Kdapi::eOk);
        static_cast<KdDbLayerTableRecord*>(object)->setIsOff(true);
        EXPECT_EQ(each->abortTransaction(), Kdapi::eOk);
        EXPECT_FALSE(Open<KdDbLayerTableRecord>(id)->isOff());
    }
}

} // namespace
