// What hangs on objects: extended data, dictionaries, copies, result buffers.

#include "support/host_test.h"

#include "db/contents.h"
#include "db/field_values.h"
#include "db/object_access.h"

#include <memory>
#include <set>

namespace tests {
namespace {

/// A list freed at the end of the scope.
class List {
public:
    explicit List(resbuf* list) : list_(list) {}

    ~List() { kdutRelRb(list_); }

    List(const List&) = delete;
    List& operator=(const List&) = delete;

    const resbuf* get() const { return list_; }

    std::vector<int> codes() const
    {
        std::vector<int> codes;
        for (const resbuf* node = list_; node; node = node->rbnext)
            codes.push_back(node->restype);
        return codes;
    }

private:
    resbuf* list_;
};

class DataTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        registerApplication(L"SHAPES");
        line_ = std::make_unique<KdDbLine>();
    }

    void TearDown() override
    {
        line_.reset();
        HostTest::TearDown();
    }

    void registerApplication(const wchar_t* name)
    {
        KdDbRegAppTable* table = nullptr;
        ASSERT_EQ(database().getSymbolTable(table, KdDb::kForWrite), Kdapi::eOk);
        auto* record = new KdDbRegAppTableRecord;
        record->setName(name);
        KdDbObjectId id;
        EXPECT_EQ(table->add(id, record), Kdapi::eOk);
        record->close();
        table->close();
    }

    KdDbLine& line() { return *line_; }

    std::unique_ptr<KdDbLine> line_;
};

TEST_F(DataTest, ExtendedDataOfEveryTypeComesBackAsItWasGiven)
{
    const double point[] = {1.5, -2.5, 3.5};
    char bytes[] = {1, 0, 2};
    const resbuf::Binary binary{3, bytes};
    const List given(kdutBuildList(1001, L"SHAPES", 1000, L"Größe", 1002, L"{", 1003, L"0", 1004,
                                   &binary, 1005, L"2F", 1002, L"}", 1010, point, 1013, point, 1040,
                                   2.5, 1042, -1.0, 1070, -7, 1071, 70000, 0));
    ASSERT_EQ(line().setXData(given.get()), Kdapi::eOk);

    const List got(line().xData(L"shapes"));
    EXPECT_EQ(got.codes(), given.codes());
    const resbuf* right = got.get();
    for (const resbuf* left = given.get(); left && right;
         left = left->rbnext, right = right->rbnext) {
        SCOPED_TRACE(left->restype);
        switch (left->restype) {
        case 1004:
            EXPECT_EQ(std::string(right->resval.rbinary.buf, 3), std::string(bytes, 3));
            break;
        case 1010:
        case 1013:
            EXPECT_EQ(right->resval.rpoint[2], 3.5);
            break;
        case 1040:
        case 1042:
            EXPECT_EQ(left->resval.rreal, right->resval.rreal);
            break;
        case 1070:
            EXPECT_EQ(right->resval.rint, -7);
            break;
        case 1071:
            EXPECT_EQ(right->resval.rlong, 70000);
            break;
        default:
            EXPECT_STREQ(left->resval.rstring, right->resval.rstring);
        }
    }
}

TEST_F(DataTest, EachApplicationHasItsOwnData)
{
    const List both(kdutBuildList(1001, L"SHAPES", 1070, 1, 1001, L"ACAD", 1070, 2, 1070, 3, 0));
    ASSERT_EQ(line().setXData(both.get()), Kdapi::eOk);
    const List replaced(kdutBuildList(1001, L"SHAPES", 1040, 9.0, 0));
    ASSERT_EQ(line().setXData(replaced.get()), Kdapi::eOk);

    EXPECT_EQ(List(line().xData(L"SHAPES")).codes(), (std::vector<int>{1001, 1040}));
    EXPECT_EQ(List(line().xData(L"ACAD")).codes(), (std::vector<int>{1001, 1070, 1070}));
    EXPECT_EQ(List(line().xData()).codes(), (std::vector<int>{1001, 1040, 1001, 1070, 1070}));

    const List removed(kdutBuildList(1001, L"ACAD", 0));
    ASSERT_EQ(line().setXData(removed.get()), Kdapi::eOk);
    EXPECT_EQ(line().xData(L"ACAD"), nullptr);
    EXPECT_EQ(List(line().xData()).codes(), (std::vector<int>{1001, 1040}));
}

TEST_F(DataTest, WrongListsChangeNothing)
{
    const List before(kdutBuildList(1001, L"SHAPES", 1070, 1, 0));
    ASSERT_EQ(line().setXData(before.get()), Kdapi::eOk);

    const struct {
        const char* what;
        resbuf* list;
        Kdapi::ErrorStatus status;
    } cases[] = {
        {"null", nullptr, Kdapi::eInvalidInput},
        {"no application", kdutBuildList(1070, 1, 0), Kdapi::eInvalidInput},
        {"a type of lists", kdutBuildList(1001, L"SHAPES", RTSHORT, 1, 0), Kdapi::eInvalidInput},
        {"not registered", kdutBuildList(1001, L"SHAPES", 1070, 2, 1001, L"NOBODY", 1070, 1, 0),
         Kdapi::eRegappIdNotFound},
    };

    for (const auto& given : cases) {
        EXPECT_EQ(line().setXData(given.list), given.status) << given.what;
        kdutRelRb(given.list);
        EXPECT_EQ(List(line().xData()).codes(), (std::vector<int>{1001, 1070})) << given.what;
    }
}

TEST_F(DataTest, DictionariesFindNamesWithoutCaseAndReplaceWhatHadTheName)
{
    KdDbDictionary* named = nullptr;
    ASSERT_EQ(kddbOpenObject(named, database().namedObjectsDictionaryId(), KdDb::kForWrite),
              Kdapi::eOk);
    const int before = named->numEntries();
    KdDbObjectId first;
    auto* entry = new KdDbDictionary;
    ASSERT_EQ(named->setAt(L"Stock", entry, first), Kdapi::eOk);
    EXPECT_EQ(entry->ownerId(), named->objectId());
    KdDbObjectId ignored;
    EXPECT_EQ(named->setAt(L"Other", entry, ignored), Kdapi::eAlreadyInDb);
    entry->close();

    KdDbObjectId found;
    EXPECT_EQ(named->getAt(L"STOCK", found), Kdapi::eOk);
    EXPECT_EQ(found, first);

    KdDbObjectId second;
    auto* replacement = new KdDbDictionary;
    ASSERT_EQ(named->setAt(L"stock", replacement, second), Kdapi::eOk);
    replacement->close();
    EXPECT_TRUE(first.isErased());
    EXPECT_EQ(named->getAt(L"Stock", found), Kdapi::eOk);
    EXPECT_EQ(found, second);
    EXPECT_EQ(named->numEntries(), before + 1);

    const std::unique_ptr<KdDbDictionary> mine(new KdDbDictionary);
    EXPECT_EQ(named->setAt(L"", mine.get(), ignored), Kdapi::eInvalidKey);
    EXPECT_EQ(named->setAt(nullptr, mine.get(), ignored), Kdapi::eInvalidKey);
    EXPECT_EQ(named->setAt(L"x", nullptr, ignored), Kdapi::eNullObjectPointer);
    EXPECT_EQ(named->getAt(L"x", found), Kdapi::eKeyNotFound);
    EXPECT_EQ(found, second);
    named->close();
}

TEST_F(DataTest, AnExtensionDictionaryIsMadeOnce)
{
    EXPECT_EQ(line().createExtensionDictionary(), Kdapi::eNotInDatabase);
    const KdDbObjectId id = addEntity(line_.release());
    KdDbObject* object = nullptr;
    kddbOpenObject(object, id, KdDb::kForWrite);
    EXPECT_TRUE(object->extensionDictionary().isNull());
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    const KdDbObjectId dictionary = object->extensionDictionary();
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    EXPECT_EQ(object->extensionDictionary(), dictionary);
    EXPECT_EQ(korra::ObjectAccess::object(dictionary)->ownerId(), id);

    KdDbObject* opened = nullptr;
    kddbOpenObject(opened, dictionary, KdDb::kForWrite);
    opened->erase();
    opened->close();
    EXPECT_TRUE(object->extensionDictionary().isNull());
    object->close();
}

TEST_F(DataTest, ACloneHasFieldsExtendedDataAndPartsButNoPlace)
{
    auto polyline = std::make_unique<KdDb3dPolyline>();
    polyline->appendVertex(new KdDbVertex({1, 2, 3}, 0.0));
    polyline->appendVertex(new KdDbVertex({4, 5, 6}, 0.0));
    const List data(kdutBuildList(1001, L"SHAPES", 1070, 1, 0));
    polyline->setXData(data.get());
    polyline->setLinetypeScale(2.5);
    KdDb3dPolyline* const original = polyline.get();
    addEntity(polyline.release());

    const std::unique_ptr<KdRxObject> clone(original->clone());
    auto* copy = KdDb3dPolyline::cast(clone.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(korra::haveSameFields(*original, *copy));
    EXPECT_EQ(copy->linetypeScale(), 2.5);
    EXPECT_TRUE(copy->objectId().isNull());
    EXPECT_EQ(List(copy->xData()).codes(), (std::vector<int>{1001, 1070}));
    ASSERT_EQ(copy->vertices().size(), 2u);
    EXPECT_NE(copy->vertices()[1], original->vertices()[1]);
    EXPECT_EQ(copy->vertices()[1]->position(), KdGePoint3d(4, 5, 6));
}

TEST_F(DataTest, CopyFromTakesTheFieldsOfTheSameClassOnly)
{
    const KdDbObjectId id = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    KdDbLine* target = nullptr;
    kddbOpenObject(target, id, KdDb::kForWrite);
    const KdDbObjectId owner = target->ownerId();
    line().setEndPoint({7, 8, 9});
    EXPECT_EQ(target->copyFrom(line_.get()), Kdapi::eOk);
    EXPECT_EQ(target->endPoint(), KdGePoint3d(7, 8, 9));
    EXPECT_EQ(target->objectId(), id);
    EXPECT_EQ(target->ownerId(), owner);

    const std::unique_ptr<KdDbCircle> circle(new KdDbCircle);
    EXPECT_EQ(target->copyFrom(circle.get()), Kdapi::eNotThatKindOfClass);
    EXPECT_EQ(target->copyFrom(nullptr), Kdapi::eNullObjectPointer);
    EXPECT_EQ(target->endPoint(), KdGePoint3d(7, 8, 9));
    target->close();
}

TEST_F(DataTest, EveryKindOfObjectCopiesAllOfItsFields)
{
    // The default drawing has an object of each stored kind that is no entity.
    std::size_t copied = 0;
    for (const korra::ObjectSlot* slot : database().contents().slots) {
        std::unique_ptr<KdDbObject> copy(korra::ObjectAccess::newOfSameClass(*slot->object));
        if (!copy)
            continue;
        korra::copyFields(*slot->object, *copy);
        EXPECT_TRUE(korra::haveSameFields(*slot->object, *copy))
            << traceForm(slot->object->objectId());
        ++copied;
    }
    EXPECT_GT(copied, 20u);
}

TEST_F(DataTest, ListsHoldWhatTheyAreBuiltFrom)
{
    const double point[] = {1, 2, 3};
    const std::int64_t name[] = {5, 6};
    const List list(kdutBuildList(RTLB, RTSHORT, -3, RTLONG, 100000, RTREAL, 0.5, RT3DPOINT, point,
                                  RTPOINT, point, RTENAME, name, RTSTR, L"wide", RTLE, RTNONE));
    EXPECT_EQ(list.codes(), (std::vector<int>{RTLB, RTSHORT, RTLONG, RTREAL, RT3DPOINT, RTPOINT,
                                              RTENAME, RTSTR, RTLE}));
    const resbuf* node = list.get()->rbnext;
    EXPECT_EQ(node->resval.rint, -3);
    EXPECT_EQ((node = node->rbnext)->resval.rlong, 100000);
    EXPECT_EQ((node = node->rbnext)->resval.rreal, 0.5);
    EXPECT_EQ((node = node->rbnext)->resval.rpoint[2], 3.0);
    EXPECT_EQ((node = node->rbnext)->resval.rpoint[1], 2.0);
    EXPECT_EQ((node = node->rbnext)->resval.rlname[1], 6);
    EXPECT_STREQ((node = node->rbnext)->resval.rstring, L"wide");

    EXPECT_EQ(kdutBuildList(RTSHORT, 1, 4711, 0), nullptr); // and what it had begun is freed
    EXPECT_EQ(kdutBuildList(RTNONE), nullptr);
    EXPECT_EQ(kdutRelRb(nullptr), RTNORM);
    kdapi_free(nullptr);
}

TEST(StatusText, EveryStatusHasATextOfItsOwn)
{
    std::set<std::wstring> texts;
    int statuses = 0;
    for (int code = 0; code <= Kdapi::eBadLineTypeDefinition; ++code, ++statuses)
        texts.insert(kdapiErrorStatusText(static_cast<Kdapi::ErrorStatus>(code)));
    for (const auto status : {Kdapi::eUndefinedLineType, Kdapi::eNothingMeasured}) {
        texts.insert(kdapiErrorStatusText(status));
        ++statuses;
    }
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(statuses));
    EXPECT_STRNE(kdapiErrorStatusText(static_cast<Kdapi::ErrorStatus>(-1)), nullptr);
    EXPECT_FALSE(texts.contains(kdapiErrorStatusText(static_cast<Kdapi::ErrorStatus>(-1))));
}

} // namespace
} // namespace tests
