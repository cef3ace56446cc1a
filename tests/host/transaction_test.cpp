// Transactions: what they open, what they close, what they take back.

#include "support/host_test.h"

#include "kd/ap.h"

namespace tests {
namespace {

class TransactionTest : public HostTest {
protected:
    static KdDbTransactionManager& manager()
    {
        return *kdDocManagerPtr()->curDocument()->transactionManager();
    }

    KdDbLayerTableRecord* layer(KdDb::OpenMode mode)
    {
        KdDbObject* object = nullptr;
        EXPECT_EQ(manager().getObject(object, database().clayer(), mode), Kdapi::eOk);
        return KdDbLayerTableRecord::cast(object);
    }

    Kdapi::ErrorStatus openForWriting()
    {
        KdDbLayerTableRecord* record = nullptr;
        const auto status = kddbOpenObject(record, database().clayer(), KdDb::kForWrite);
        if (record)
            record->close();
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
    EXPECT_EQ(manager().getObject(object, {}, KdDb::kForRead), Kdapi::eNullObjectId);
    layer(KdDb::kForRead);
    layer(KdDb::kForRead);
    EXPECT_EQ(openForWriting(), Kdapi::eWasOpenForRead);
    EXPECT_EQ(manager().endTransaction(), Kdapi::eOk);
    EXPECT_EQ(openForWriting(), Kdapi::eOk);
    EXPECT_EQ(manager().numActiveTransactions(), 0);
}

TEST_F(TransactionTest, LeavesOpeningsOfOthersAloneWhenItsOwnWereClosedBefore)
{
    KdDbLayerTableRecord* ours = nullptr;
    ASSERT_EQ(kddbOpenObject(ours, database().clayer(), KdDb::kForRead), Kdapi::eOk);
    manager().startTransaction();
    layer(KdDb::kForRead);
    manager().startTransaction();
    EXPECT_EQ(layer(KdDb::kForRead)->close(), Kdapi::eOk);
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
    layer(KdDb::kForWrite)->setIsOff(true);
    KdDbObject* object = nullptr;
    ASSERT_EQ(manager().getObject(object, lineId, KdDb::kForWrite), Kdapi::eOk);
    KdDbLine::cast(object)->setEndPoint({5, 0, 0});
    object->erase();
    EXPECT_EQ(manager().abortTransaction(), Kdapi::eOk);

    EXPECT_FALSE(lineId.isErased());
    KdDbLine* line = nullptr;
    ASSERT_EQ(kddbOpenObject(line, lineId, KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(line->endPoint(), KdGePoint3d(1, 0, 0));
    line->close();
    KdDbLayerTableRecord* record = nullptr;
    kddbOpenObject(record, database().clayer(), KdDb::kForRead);
    EXPECT_FALSE(record->isOff());
    record->close();
}

TEST_F(TransactionTest, AuditTellsOfOneThatRuns)
{
    manager().startTransaction();
    EXPECT_THAT(korra::audit(), ::testing::ElementsAre("1 transaction"));
    manager().endTransaction();
}

TEST_F(TransactionTest, NothingStaysOpenWhateverFails)
{
    sweepFaults<int>([] { return 0; },
                     [](int&) {
                         auto& database = *kddbHostApplicationServices()->workingDatabase();
                         if (!manager().startTransaction())
                             return;
                         KdDbObject* object = nullptr;
                         manager().getObject(object, database.clayer(), KdDb::kForWrite);
                         if (object)
                             object->close();
                         manager().endTransaction();
                     });
}

} // namespace
} // namespace tests
