// What hangs on objects: extended data, dictionaries, copies, result buffers.

#include "support/host_test.h"
#include "support/objects.h"

#include "objects/contents.h"
#include "objects/kinds.h"
#include "objects/snapshot.h"
#include "platform/text.h"

#include <memory>
#include <numeric>
#include <set>
#include <sstream>

namespace tests {
namespace {

/// A list freed at the end of the scope.
class List {
public:
    explicit List(resbuf* list) : list_(list, kdutRelRb) {}

    const resbuf* get() const { return list_.get(); }

    /// The nodes, each "type value".
    std::string text() const
    {
        std::ostringstream out;
        for (const resbuf* node = get(); node; node = node->rbnext) {
            const auto isOneOf = [node](auto... types) {
                return ((node->restype == types) || ...);
            };
            const auto& value = node->resval;
            out << (node == get() ? "" : "; ") << node->restype << ' ';
            if (isOneOf(1010, 1013, RTPOINT, RT3DPOINT))
                out << value.rpoint[0] << ' ' << value.rpoint[1] << ' ' << value.rpoint[2];
            else if (isOneOf(1040, 1042, RTREAL))
                out << value.rreal;
            else if (isOneOf(1070, RTSHORT))
                out << value.rint;
            else if (isOneOf(1071, RTLONG))
                out << value.rlong;
            else if (isOneOf(RTENAME))
                out << value.rlname[0] << ' ' << value.rlname[1];
            else if (isOneOf(1004))
                out << ::testing::PrintToString(std::string(value.rbinary.buf, value.rbinary.clen));
            else if (!isOneOf(RTLB, RTLE))
                out << platform::toUtf8(value.rstring);
        }
        return out.str();
    }

private:
    std::unique_ptr<resbuf, int (*)(resbuf*)> list_;
};

class DataTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        addRecord<KdDbRegAppTable, KdDbRegAppTableRecord>(L"SHAPES");
    }
};

TEST_F(DataTest, ExtendedDataOfEveryTypeComesBackAsItWasGiven)
{
    const double point[] = {1.5, -2.5, 3.5};
    char bytes[] = {1, 0, 2};
    const resbuf::Binary binary{3, bytes};
    const List given(kdutBuildList(1001, L"SHAPES", 1000, L"Größe", 1002, L"{", 1003, L"0", 1004,
                                   &binary, 1005, L"2F", 1002, L"}", 1010, point, 1013, point, 1040,
                                   2.5, 1042, -1.0, 1070, -7, 1071, 70000, 0));
    const auto line = std::make_unique<KdDbLine>();
    ASSERT_EQ(line->setXData(given.get()), Kdapi::eOk);
    EXPECT_EQ(List(line->xData(L"shapes")).text(),
              "1001 SHAPES; 1000 Größe; 1002 {; 1003 0; 1004 \"\\x1\\0\\x2\"; 1005 2F; 1002 }; "
              "1010 1.5 -2.5 3.5; 1013 1.5 -2.5 3.5; 1040 2.5; 1042 -1; 1070 -7; 1071 70000");
}

TEST_F(DataTest, EachApplicationHasItsOwnData)
{
    const auto line = std::make_unique<KdDbLine>();
    const List both(kdutBuildList(1001, L"SHAPES", 1070, 1, 1001, L"ACAD", 1070, 2, 1070, 3, 0));
    const List replaced(kdutBuildList(1001, L"SHAPES", 1040, 9.0, 0));
    ASSERT_EQ(line->setXData(both.get()), Kdapi::eOk);
    ASSERT_EQ(line->setXData(replaced.get()), Kdapi::eOk);
    EXPECT_EQ(List(line->xData(L"SHAPES")).text(), "1001 SHAPES; 1040 9");
    EXPECT_EQ(List(line->xData(L"ACAD")).text(), "1001 ACAD; 1070 2; 1070 3");
    EXPECT_EQ(List(line->xData()).text(), "1001 SHAPES; 1040 9; 1001 ACAD; 1070 2; 1070 3");

    const List removed(kdutBuildList(1001, L"ACAD", 0));
    ASSERT_EQ(line->setXData(removed.get()), Kdapi::eOk);
    EXPECT_EQ(line->xData(L"ACAD"), nullptr);
    EXPECT_EQ(List(line->xData()).text(), "1001 SHAPES; 1040 9");
}

TEST_F(DataTest, WrongListsChangeNothing)
{
    const auto line = std::make_unique<KdDbLine>();
    const List before(kdutBuildList(1001, L"SHAPES", 1070, 1, 0));
    ASSERT_EQ(line->setXData(before.get()), Kdapi::eOk);

    const auto expectRefused = [&](resbuf* given, Kdapi::ErrorStatus status) {
        const List list(given);
        EXPECT_EQ(line->setXData(given), status) << list.text();
        EXPECT_EQ(List(line->xData()).text(), before.text()) << list.text();
    };
    expectRefused(nullptr, Kdapi::eInvalidInput);
    expectRefused(kdutBuildList(1070, 1, 0), Kdapi::eInvalidInput);
    expectRefused(kdutBuildList(1001, L"SHAPES", RTSHORT, 1, 0), Kdapi::eInvalidInput);
    expectRefused(kdutBuildList(1001, L"SHAPES", 1070, 2, 1001, L"NOBODY", 1070, 1, 0),
                  Kdapi::eRegappIdNotFound);
}

TEST_F(DataTest, DictionariesFindNamesWithoutCaseAndReplaceWhatHadTheName)
{
    const Open<KdDbDictionary> named(database().namedObjectsDictionaryId());
    const int before = named->numEntries();
    const auto enter = [&](const wchar_t* name) {
        auto* const entry = new KdDbDictionary;
        KdDbObjectId id;
        EXPECT_EQ(named->setAt(name, entry, id), Kdapi::eOk);
        EXPECT_EQ(entry->ownerId(), named->objectId());
        EXPECT_EQ(named->setAt(L"Other", entry, id), Kdapi::eAlreadyInDb);
        entry->close();
        KdDbObjectId found;
        EXPECT_EQ(named->getAt(L"STOCK", found), Kdapi::eOk);
        EXPECT_EQ(found, id);
        return id;
    };
    const KdDbObjectId first = enter(L"Stock");
    enter(L"stock");
    EXPECT_TRUE(first.isErased());
    EXPECT_EQ(named->numEntries(), before + 1);

    KdDbDictionary mine;
    KdDbObjectId found = first;
    EXPECT_EQ(named->setAt(L"", &mine, found), Kdapi::eInvalidKey);
    EXPECT_EQ(named->setAt(nullptr, &mine, found), Kdapi::eInvalidKey);
    EXPECT_EQ(named->setAt(L"x", nullptr, found), Kdapi::eNullObjectPointer);
    EXPECT_EQ(named->getAt(L"x", found), Kdapi::eKeyNotFound);
    EXPECT_EQ(found, first) << "untouched";
}

TEST_F(DataTest, AnExtensionDictionaryIsMadeOnce)
{
    auto line = std::make_unique<KdDbLine>();
    EXPECT_EQ(line->createExtensionDictionary(), Kdapi::eNotInDatabase);
    const Open<KdDbObject> object(addEntity(line.release()));
    EXPECT_TRUE(object->extensionDictionary().isNull());
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    const KdDbObjectId dictionary = object->extensionDictionary();
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    EXPECT_EQ(object->extensionDictionary(), dictionary);
    EXPECT_EQ(korra::ObjectAccess::object(dictionary)->ownerId(), object->objectId());
    erase(dictionary);
    EXPECT_TRUE(object->extensionDictionary().isNull());
}

bool haveSameContents(const KdDbObject& left, const KdDbObject& right)
{
    using korra::Extent;
    return korra::valuesOf(left, Extent::contents) == korra::valuesOf(right, Extent::contents);
}

TEST_F(DataTest, ACloneHasFieldsExtendedDataAndPartsButNoPlace)
{
    auto* const original = new KdDb3dPolyline;
    for (const KdGePoint3d& point : {KdGePoint3d(1, 2, 3), KdGePoint3d(4, 5, 6)})
        original->appendVertex(new KdDbVertex(point, 0.0));
    const List data(kdutBuildList(1001, L"SHAPES", 1070, 1, 0));
    original->setXData(data.get());
    addEntity(original);

    const std::unique_ptr<KdRxObject> clone(original->clone());
    const auto* const copy = KdDb3dPolyline::cast(clone.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(haveSameContents(*original, *copy));
    EXPECT_TRUE(copy->objectId().isNull());
    EXPECT_EQ(List(copy->xData()).text(), data.text());
    ASSERT_EQ(copy->vertices().size(), 2u);
    EXPECT_NE(copy->vertices()[1], original->vertices()[1]);
    EXPECT_EQ(copy->vertices()[1]->position(), KdGePoint3d(4, 5, 6));
}

TEST_F(DataTest, EveryKindOfObjectCopiesAllOfItsFields)
{
    // The default drawing has an object of each stored kind that is no entity.
    std::size_t copied = 0;
    for (const korra::ObjectSlot* slot : database().contents().slots) {
        const korra::Kind* const kind = korra::kindOf(*slot->object);
        ASSERT_NE(kind, nullptr) << traceForm(slot->object->objectId());
        const std::unique_ptr<KdDbObject> copy(kind->make());
        korra::giveValues(*copy, korra::valuesOf(*slot->object, korra::Extent::contents),
                          korra::Extent::contents);
        EXPECT_TRUE(haveSameContents(*slot->object, *copy)) << traceForm(slot->object->objectId());
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
    EXPECT_EQ(list.text(), "5016 ; 5003 -3; 5010 100000; 5001 0.5; 5009 1 2 3; 5002 1 2 3; "
                           "5006 5 6; 5005 wide; 5017 ");
    EXPECT_EQ(kdutBuildList(RTSHORT, 1, 4711, 0), nullptr); // and what it had begun is freed
    EXPECT_EQ(kdutBuildList(RTNONE), nullptr);
    EXPECT_EQ(kdutRelRb(nullptr), RTNORM);
    kdapi_free(nullptr);
}

TEST(StatusText, EveryStatusHasATextOfItsOwn)
{
    std::vector<int> codes(Kdapi::eBadLineTypeDefinition + 1);
    std::iota(codes.begin(), codes.end(), 0);
    codes.insert(codes.end(), {Kdapi::eUndefinedLineType, Kdapi::eNothingMeasured, -1});
    std::set<std::wstring> texts;
    for (const int code : codes)
        texts.insert(kdapiErrorStatusText(static_cast<Kdapi::ErrorStatus>(code)));
    EXPECT_EQ(texts.size(), codes.size());
}

} // namespace
} // namespace tests
