// Objects: opening, closing, erasing, ids and what becomes of them.

#include "support/room_test.h"

#include "objects/contents.h"

#include <cstdint>
#include <memory>

namespace {

using enum KdDb::OpenMode;

class ObjectTest : public HostTest {
protected:
    KdDbObjectId addLine() { return addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0})); }

    /// What opening an object of whatever class comes to; it stays open.
    static Kdapi::ErrorStatus open(KdDbObjectId id, KdDb::OpenMode mode, bool openErased = false)
    {
        KdDbObject* object = nullptr;
        const Kdapi::ErrorStatus status = kddbOpenObject(object, id, mode, openErased);
        EXPECT_EQ(object != nullptr, status == Kdapi::eOk);
        return status;
    }
};

TEST_F(ObjectTest, ManyReadersOrOneWriter)
{
    const KdDbObjectId id = addLine();
    KdDbObject* const line = korra::ObjectAccess::object(id);
    EXPECT_EQ(open(id, kForWrite), Kdapi::eOk);
    EXPECT_EQ(open(id, kForRead), Kdapi::eWasOpenForWrite);
    EXPECT_EQ(open(id, kForWrite), Kdapi::eWasOpenForWrite);
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eOk);
    EXPECT_EQ(line->downgradeOpen(), Kdapi::eOk);
    EXPECT_EQ(line->downgradeOpen(), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(open(id, kForRead), Kdapi::eOk);
    EXPECT_EQ(open(id, kForRead), Kdapi::eOk);
    EXPECT_EQ(open(id, kForWrite), Kdapi::eWasOpenForRead);
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eWasOpenForRead);
    EXPECT_EQ(line->close(), Kdapi::eOk);
    EXPECT_EQ(line->close(), Kdapi::eOk);
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eOk) << "the only reader";
    EXPECT_EQ(line->close(), Kdapi::eOk);
    EXPECT_EQ(line->close(), Kdapi::eNotOpenForRead);
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eNotOpenForRead);
}

TEST_F(ObjectTest, OpeningRefusesWhatIsNotThere)
{
    EXPECT_EQ(open(KdDbObjectId(), kForRead), Kdapi::eNullObjectId);

    const KdDbObjectId id = addLine();
    erase(id);
    EXPECT_EQ(open(id, kForRead), Kdapi::eWasErased);
    ASSERT_EQ(open(id, kForRead, true), Kdapi::eOk);
    korra::ObjectAccess::object(id)->close();

    KdDbCircle* circle = nullptr;
    EXPECT_EQ(kddbOpenObject(circle, addLine(), kForRead), Kdapi::eNotThatKindOfClass);
    EXPECT_EQ(circle, nullptr); // the audit sees that it was left closed
}

TEST_F(ObjectTest, ReadersCannotChangeAnything)
{
    const Open<KdDbLine> line(addLine(), kForRead);
    KdDbLine other;
    EXPECT_EQ(line->setEndPoint({1, 1, 1}), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->copyFrom(&other), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->erase(), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->endPoint(), KdGePoint3d(10, 0, 0));
    EXPECT_EQ(other.upgradeOpen(), Kdapi::eOk) << "what is in no drawing can always be changed";
    EXPECT_EQ(other.close(), Kdapi::eNotInDatabase);
    EXPECT_EQ(other.erase(), Kdapi::eNotInDatabase);
}

TEST_F(ObjectTest, ErasingIsTakenBackOnceAndTakesAlongWhatAnObjectOwns)
{
    auto* const polyline = new KdDb2dPolyline;
    polyline->appendVertex(new KdDbVertex);
    polyline->appendVertex(new KdDbVertex);
    const Open<KdDbObject> object(addEntity(polyline));
    object->createExtensionDictionary();
    const KdDbObjectId gone = polyline->vertices()[0]->objectId();
    erase(gone);
    const KdDbObjectId all[] = {polyline->objectId(), polyline->vertices()[1]->objectId(),
                                object->extensionDictionary()};
    EXPECT_EQ(object->erase(false), Kdapi::eWasNotErased);
    EXPECT_EQ(object->erase(), Kdapi::eOk);
    for (const KdDbObjectId id : all)
        EXPECT_TRUE(id.isErased() && id.isValid());
    EXPECT_EQ(object->erase(), Kdapi::eWasErased);
    EXPECT_EQ(object->erase(false), Kdapi::eOk);
    for (const KdDbObjectId id : all)
        EXPECT_FALSE(id.isErased());
    EXPECT_TRUE(gone.isErased()) << "it was erased before, by itself";
}

TEST_F(ObjectTest, TheDrawingKeepsWhatItCannotDoWithout)
{
    for (const KdDbObjectId id :
         {database().layerTableId(), database().clayer(), database().continuousLinetype(),
          database().contents().record(korra::TableKind::linetype, L"ByBlock"),
          database().currentSpaceId(), database().namedObjectsDictionaryId(),
          database().layoutDictionaryId()})
        EXPECT_EQ(Open<KdDbObject>(id)->erase(), Kdapi::eObjectInUse) << traceForm(id);
}

TEST_F(ObjectTest, IdsOutliveTheirDatabaseWhichIsTheWorkingOneNoMore)
{
    auto other = std::make_unique<KdDbDatabase>(true, true);
    kddbHostApplicationServices()->setWorkingDatabase(other.get());
    const KdDbObjectId id = other->clayer();
    EXPECT_TRUE(id.isValid());
    other.reset();
    EXPECT_EQ(drawing(), nullptr);
    EXPECT_TRUE(!id.isValid() && id.isErased());
    EXPECT_EQ(id.database(), nullptr);
    EXPECT_EQ(id.objectClass(), nullptr);
    EXPECT_EQ(open(id, kForRead), Kdapi::eNullDatabase);
}

TEST_F(ObjectTest, NamesLeadBackToTheirIdsAndNothingElseDoes)
{
    const KdDbObjectId id = addLine();
    kds_name name = {};
    ASSERT_EQ(kddbGetKdsName(name, id), Kdapi::eOk);
    KdDbObjectId found;
    ASSERT_EQ(kddbGetObjectId(found, name), Kdapi::eOk);
    EXPECT_EQ(found, id);

    const kds_name garbage[] = {{}, {name[0], -1}, {INT64_MAX, name[1]}};
    for (const kds_name& wrong : garbage)
        EXPECT_EQ(kddbGetObjectId(found, wrong), Kdapi::eInvalidInput) << wrong[0] << wrong[1];
    EXPECT_EQ(kddbGetObjectId(found, nullptr), Kdapi::eInvalidInput);
    EXPECT_EQ(kddbGetKdsName(name, KdDbObjectId()), Kdapi::eNullObjectId);
    EXPECT_EQ(found, id);

    startFreshHost(); // names of a stopped host are no names
    EXPECT_EQ(kddbGetObjectId(found, name), Kdapi::eInvalidInput);
}

TEST_F(ObjectTest, TheAuditNamesWhatIsLeftOver)
{
    const Open<KdDbLine> line(addLine(), kForRead);
    const KdDbCircle circle;
    const KdDbDatabase other(false, true);
    resbuf* const list = kdutBuildList(RTSTR, L"text", RTNONE);
    EXPECT_THAT(korra::audit(),
                UnorderedElementsAre(HasSubstr("KdDbLine"), HasSubstr("KdDbCircle"),
                                     HasSubstr("database"), HasSubstr("host string"),
                                     HasSubstr("result buffer")));
    kdutRelRb(list);
}

} // namespace
