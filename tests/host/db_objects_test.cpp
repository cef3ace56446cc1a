// Objects: opening, closing, erasing, ids and what becomes of them.

#include "support/host_test.h"

#include "db/object_access.h"

#include <limits>
#include <memory>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace tests {
namespace {

class ObjectTest : public HostTest {
protected:
    KdDbObjectId addLine() { return addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0})); }

    /// Opens an object of whatever class.
    static Kdapi::ErrorStatus open(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                   bool openErased = false)
    {
        return kddbOpenObject(object, id, mode, openErased);
    }

    static KdDbObject* opened(KdDbObjectId id, KdDb::OpenMode mode)
    {
        KdDbObject* object = nullptr;
        EXPECT_EQ(open(object, id, mode), Kdapi::eOk);
        return object;
    }

    static void erase(KdDbObjectId id)
    {
        KdDbObject* object = opened(id, KdDb::kForWrite);
        EXPECT_EQ(object->erase(), Kdapi::eOk);
        object->close();
    }
};

TEST_F(ObjectTest, ManyReadersOrOneWriter)
{
    using enum KdDb::OpenMode;

    struct Case {
        const char* what;
        std::vector<KdDb::OpenMode> before;
        KdDb::OpenMode mode;
        Kdapi::ErrorStatus status;
    };

    const Case cases[] = {
        {"reader of a closed object", {}, kForRead, Kdapi::eOk},
        {"writer of a closed object", {}, kForWrite, Kdapi::eOk},
        {"second reader", {kForRead}, kForRead, Kdapi::eOk},
        {"third reader", {kForRead, kForRead}, kForRead, Kdapi::eOk},
        {"writer beside a reader", {kForRead}, kForWrite, Kdapi::eWasOpenForRead},
        {"reader beside the writer", {kForWrite}, kForRead, Kdapi::eWasOpenForWrite},
        {"second writer", {kForWrite}, kForWrite, Kdapi::eWasOpenForWrite},
    };
    for (const Case& given : cases) {
        SCOPED_TRACE(given.what);
        const KdDbObjectId id = addLine();
        for (const KdDb::OpenMode mode : given.before)
            opened(id, mode);
        KdDbObject* object = nullptr;
        EXPECT_EQ(open(object, id, given.mode), given.status);
        EXPECT_EQ(object != nullptr, given.status == Kdapi::eOk);
        KdDbObject* const closing = korra::ObjectAccess::object(id);
        while (closing->isReadEnabled())
            EXPECT_EQ(closing->close(), Kdapi::eOk);
        EXPECT_EQ(closing->close(), Kdapi::eNotOpenForRead);
    }
}

TEST_F(ObjectTest, OpeningRefusesWhatIsNotThere)
{
    KdDbObject* object = nullptr;
    EXPECT_EQ(open(object, KdDbObjectId(), KdDb::kForRead), Kdapi::eNullObjectId);

    const KdDbObjectId id = addLine();
    erase(id);
    EXPECT_EQ(open(object, id, KdDb::kForRead), Kdapi::eWasErased);
    EXPECT_EQ(object, nullptr);
    ASSERT_EQ(open(object, id, KdDb::kForRead, true), Kdapi::eOk);
    object->close();

    KdDbCircle* circle = nullptr;
    EXPECT_EQ(kddbOpenObject(circle, addLine(), KdDb::kForRead), Kdapi::eNotThatKindOfClass);
    EXPECT_EQ(circle, nullptr); // the audit sees that it was left closed
    KdDbCurve* curve = nullptr;
    EXPECT_EQ(kddbOpenObject(curve, addLine(), KdDb::kForRead), Kdapi::eOk);
    curve->close();
}

TEST_F(ObjectTest, OnlyTheOneReaderCanBecomeTheWriter)
{
    const KdDbObjectId id = addLine();
    KdDbObject* line = opened(id, KdDb::kForRead);
    opened(id, KdDb::kForRead);
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eWasOpenForRead);
    line->close();
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eOk);
    EXPECT_TRUE(line->isWriteEnabled());
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eOk);
    EXPECT_EQ(line->downgradeOpen(), Kdapi::eOk);
    EXPECT_TRUE(line->isReadEnabled());
    EXPECT_FALSE(line->isWriteEnabled());
    EXPECT_EQ(line->downgradeOpen(), Kdapi::eNotOpenForWrite);
    line->close();
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eNotOpenForRead);
}

TEST_F(ObjectTest, ReadersCannotChangeAnything)
{
    const KdDbObjectId id = addLine();
    KdDbLine* line = nullptr;
    kddbOpenObject(line, id, KdDb::kForRead);
    const std::unique_ptr<KdDbLine> other(new KdDbLine);
    EXPECT_EQ(line->setEndPoint({1, 1, 1}), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->copyFrom(other.get()), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->erase(), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->createExtensionDictionary(), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(line->endPoint(), KdGePoint3d(10, 0, 0));
    line->close();
}

TEST_F(ObjectTest, FreeStandingObjectsAreAlwaysWritableAndNeverInADatabase)
{
    const std::unique_ptr<KdDbLine> line(new KdDbLine);
    EXPECT_TRUE(line->isReadEnabled());
    EXPECT_TRUE(line->isWriteEnabled());
    EXPECT_EQ(line->upgradeOpen(), Kdapi::eOk);
    EXPECT_EQ(line->close(), Kdapi::eNotInDatabase);
    EXPECT_EQ(line->erase(), Kdapi::eNotInDatabase);
    EXPECT_TRUE(line->objectId().isNull());
    EXPECT_EQ(line->database(), nullptr);
}

TEST_F(ObjectTest, AFailedCloseHasReleased)
{
    const KdDbObjectId id = addLine();
    KdDbObject* line = opened(id, KdDb::kForWrite);
    platform::failCall(1, platform::Fault::status);
    EXPECT_NE(line->close(), Kdapi::eOk);
    platform::releaseCalls();
    EXPECT_THAT(korra::audit(), IsEmpty());
}

TEST_F(ObjectTest, ErasingIsTakenBackOnceAndOnlyWhenErased)
{
    const KdDbObjectId id = addLine();
    KdDbObject* line = opened(id, KdDb::kForWrite);
    EXPECT_EQ(line->erase(false), Kdapi::eWasNotErased);
    EXPECT_EQ(line->erase(), Kdapi::eOk);
    EXPECT_TRUE(id.isErased());
    EXPECT_TRUE(id.isValid());
    EXPECT_EQ(line->erase(), Kdapi::eWasErased);
    EXPECT_EQ(line->erase(false), Kdapi::eOk);
    EXPECT_FALSE(id.isErased());
    line->close();
}

TEST_F(ObjectTest, WhatAnObjectOwnsGoesAndComesWithIt)
{
    auto* polyline = new KdDb2dPolyline;
    polyline->appendVertex(new KdDbVertex({0, 0, 0}, 0.0));
    polyline->appendVertex(new KdDbVertex({5, 0, 0}, 0.0));
    const KdDbObjectId id = addEntity(polyline);
    const KdDbObjectId vertex = polyline->vertices()[1]->objectId();
    ASSERT_FALSE(vertex.isNull());

    KdDbObject* object = opened(id, KdDb::kForWrite);
    object->createExtensionDictionary();
    const KdDbObjectId dictionary = object->extensionDictionary();
    object->erase();
    EXPECT_TRUE(vertex.isErased());
    EXPECT_TRUE(dictionary.isErased());
    object->erase(false);
    EXPECT_FALSE(vertex.isErased());
    EXPECT_FALSE(dictionary.isErased());
    object->close();
}

TEST_F(ObjectTest, TheDrawingKeepsWhatItCannotDoWithout)
{
    for (const KdDbObjectId id :
         {database().layerTableId(), database().clayer(), database().continuousLinetype(),
          database().currentSpaceId(), database().namedObjectsDictionaryId(),
          database().layoutDictionaryId()}) {
        KdDbObject* object = opened(id, KdDb::kForWrite);
        EXPECT_EQ(object->erase(), Kdapi::eObjectInUse) << id.handle().value();
        object->close();
    }
}

TEST_F(ObjectTest, IdsOutliveTheirDatabase)
{
    auto other = std::make_unique<KdDbDatabase>(true, true);
    const KdDbObjectId id = other->clayer();
    EXPECT_TRUE(id.isValid());
    const KdDbHandle handle = id.handle();
    other.reset();

    EXPECT_FALSE(id.isNull());
    EXPECT_FALSE(id.isValid());
    EXPECT_TRUE(id.isErased());
    EXPECT_EQ(id.database(), nullptr);
    EXPECT_EQ(id.objectClass(), nullptr);
    EXPECT_EQ(id.handle(), handle);
    KdDbObject* object = nullptr;
    EXPECT_EQ(open(object, id, KdDb::kForRead), Kdapi::eNullDatabase);
    kds_name name = {};
    EXPECT_EQ(kddbGetKdsName(name, id), Kdapi::eOk);
}

TEST_F(ObjectTest, NamesLeadBackToTheirIdsAndNothingElseDoes)
{
    const KdDbObjectId id = addLine();
    kds_name name = {};
    ASSERT_EQ(kddbGetKdsName(name, id), Kdapi::eOk);
    KdDbObjectId found;
    ASSERT_EQ(kddbGetObjectId(found, name), Kdapi::eOk);
    EXPECT_EQ(found, id);

    using Limits = std::numeric_limits<std::int64_t>;
    const kds_name garbage[] = {{0, 0},
                                {0, name[1]},
                                {-1, name[1]},
                                {name[0], 0},
                                {name[0], -1},
                                {Limits::max(), name[1]},
                                {Limits::min(), name[1]}};
    for (const kds_name& wrong : garbage) {
        EXPECT_EQ(kddbGetObjectId(found, wrong), Kdapi::eInvalidInput) << wrong[0] << wrong[1];
        EXPECT_EQ(found, id);
    }
    EXPECT_EQ(kddbGetObjectId(found, nullptr), Kdapi::eInvalidInput);

    kds_name untouched = {7, 9};
    EXPECT_EQ(kddbGetKdsName(untouched, KdDbObjectId()), Kdapi::eNullObjectId);
    EXPECT_THAT(untouched, ElementsAre(7, 9));
}

TEST_F(ObjectTest, NamesOfAStoppedHostAreNoNames)
{
    kds_name name = {};
    kddbGetKdsName(name, addLine());
    startFreshHost();
    KdDbObjectId found;
    EXPECT_EQ(kddbGetObjectId(found, name), Kdapi::eInvalidInput);
}

TEST_F(ObjectTest, TheAuditNamesWhatIsLeftOver)
{
    const KdDbObjectId id = addLine();
    KdDbObject* line = opened(id, KdDb::kForRead);
    EXPECT_THAT(korra::audit(), ElementsAre(HasSubstr("KdDbLine")));
    line->close();

    auto circle = std::make_unique<KdDbCircle>();
    EXPECT_THAT(korra::audit(), ElementsAre(HasSubstr("KdDbCircle")));
    circle.reset();

    auto other = std::make_unique<KdDbDatabase>(false, true);
    EXPECT_THAT(korra::audit(), ElementsAre(HasSubstr("database")));
    other.reset();

    resbuf* list = kdutBuildList(RTSTR, L"text", RTNONE);
    EXPECT_THAT(korra::audit(), ElementsAre(HasSubstr("host string"), HasSubstr("result buffer")));
    kdutRelRb(list);
}

TEST_F(ObjectTest, TheTraceNamesOperationAndObject)
{
    const KdDbObjectId id = addLine();
    platform::startTrace();
    opened(id, KdDb::kForRead)->close();
    const std::vector<platform::TracedCall> calls = platform::stopTrace();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].operation, "kddbOpenObject");
    EXPECT_EQ(calls[0].arguments, traceForm(id) + ", 0");
    EXPECT_EQ(calls[1].operation, "KdDbObject::close");
}

} // namespace
} // namespace tests
