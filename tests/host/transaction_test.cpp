// Transactions: what they open, what they close, what they take back.

#include "support/host_test.h"
#include "support/objects.h"

#include "kd/ap.h"

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
