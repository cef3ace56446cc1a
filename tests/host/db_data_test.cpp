// What hangs on objects: extended data and dictionaries; result buffers.

#include "support/host_test.h"
#include "support/objects.h"

#include "objects/contents.h"

#include <memory>
#include <numeric>
#include <set>

using korra::TypedValue;

namespace tests {
namespace {

using List = std::unique_ptr<resbuf, decltype(&kdutRelRb)>;
using Data = std::vector<TypedValue>;

Data dataOf(KdDbObject& object)
{
    return korra::ObjectAccess::extras(object).xData;
}

/// What an object has of a list, which is freed.
Data dataOf(resbuf* list)
{
    KdDbLine line;
    EXPECT_EQ(line.setXData(list), Kdapi::eOk);
    kdutRelRb(list);
    return dataOf(line);
}

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
    KdDbLine line;
    const List given(kdutBuildList(1001, L"SHAPES", 1000, L"Größe", 1004, &binary, 1005, L"2F",
                                   1010, point, 1042, -1.0, 1070, -7, 1071, 70000, 0),
                     kdutRelRb);
    EXPECT_EQ(line.setXData(given.get()), Kdapi::eOk);
    EXPECT_EQ(dataOf(line), (Data{{1001, std::wstring(L"SHAPES")},
                                  {1000, std::wstring(L"Größe")},
                                  {1004, std::string("\1\0\2", 3)},
                                  {1005, std::wstring(L"2F")},
                                  {1010, KdGePoint3d(1.5, -2.5, 3.5)},
                                  {1042, -1.0},
                                  {1070, short{-7}},
                                  {1071, 70000}}));
    EXPECT_EQ(dataOf(line.xData(L"shapes")), dataOf(line));
}

TEST_F(DataTest, EachApplicationHasItsOwnData)
{
    KdDbLine line;
    const auto set = [&](resbuf* list) {
        EXPECT_EQ(line.setXData(list), Kdapi::eOk);
        kdutRelRb(list);
    };
    set(kdutBuildList(1001, L"SHAPES", 1070, 1, 1001, L"ACAD", 1070, 2, 1070, 3, 0));
    set(kdutBuildList(1001, L"SHAPES", 1040, 9.0, 0));
    EXPECT_EQ(dataOf(line.xData(L"ACAD")),
              dataOf(kdutBuildList(1001, L"ACAD", 1070, 2, 1070, 3, 0)));
    EXPECT_EQ(dataOf(line.xData()), dataOf(kdutBuildList(1001, L"SHAPES", 1040, 9.0, 1001, L"ACAD",
                                                         1070, 2, 1070, 3, 0)));
    set(kdutBuildList(1001, L"ACAD", 0));
    EXPECT_EQ(line.xData(L"ACAD"), nullptr);
    EXPECT_EQ(dataOf(line.xData()), dataOf(kdutBuildList(1001, L"SHAPES", 1040, 9.0, 0)));
}

TEST_F(DataTest, WrongListsChangeNothing)
{
    KdDbLine line;
    for (const auto& [list, status] :
         {std::pair(kdutBuildList(1001, L"SHAPES", 1070, 1, 0), Kdapi::eOk),
          {nullptr, Kdapi::eInvalidInput},
          {kdutBuildList(1070, 1, 0), Kdapi::eInvalidInput},
          {kdutBuildList(1001, L"SHAPES", RTSHORT, 1, 0), Kdapi::eInvalidInput},
          {kdutBuildList(1001, L"SHAPES", 1070, 2, 1001, L"NOBODY", 1070, 1, 0),
           Kdapi::eRegappIdNotFound}}) {
        EXPECT_EQ(line.setXData(list), status);
        EXPECT_EQ(dataOf(line), (Data{{1001, std::wstring(L"SHAPES")}, {1070, short{1}}}));
        kdutRelRb(list);
    }
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
    for (const wchar_t* none : {L"", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(named->setAt(none, &mine, found), Kdapi::eInvalidKey);
    EXPECT_EQ(named->setAt(L"x", nullptr, found), Kdapi::eNullObjectPointer);
    EXPECT_EQ(named->getAt(L"x", found), Kdapi::eKeyNotFound);
    EXPECT_EQ(found, first) << "untouched";
}

TEST_F(DataTest, AnExtensionDictionaryIsMadeOnce)
{
    EXPECT_EQ(KdDbLine().createExtensionDictionary(), Kdapi::eNotInDatabase);
    const Open<KdDbObject> object(addEntity(new KdDbLine));
    EXPECT_TRUE(object->extensionDictionary().isNull());
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    const KdDbObjectId dictionary = object->extensionDictionary();
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    EXPECT_EQ(object->extensionDictionary(), dictionary);
    EXPECT_EQ(korra::ObjectAccess::object(dictionary)->ownerId(), object->objectId());
    erase(dictionary);
    EXPECT_TRUE(object->extensionDictionary().isNull());
}

TEST_F(DataTest, ListsHoldWhatTheyAreBuiltFrom)
{
    const double point[] = {1, 2, 3};
    const std::int64_t name[] = {5, 6};
    const List list(kdutBuildList(RTLB, RTSHORT, -3, RTLONG, 100000, RTREAL, 0.5, RT3DPOINT, point,
                                  RTENAME, name, RTSTR, L"wide", RTLE, RTNONE),
                    kdutRelRb);
    std::vector<int> types;
    std::vector<decltype(resbuf::resval)> values;
    for (const resbuf* node = list.get(); node; node = node->rbnext) {
        types.push_back(node->restype);
        values.push_back(node->resval);
    }
    ASSERT_THAT(types, ::testing::ElementsAre(RTLB, RTSHORT, RTLONG, RTREAL, RT3DPOINT, RTENAME,
                                              RTSTR, RTLE));
    EXPECT_EQ(values[1].rint, -3);
    EXPECT_EQ(values[2].rlong, 100000);
    EXPECT_EQ(values[3].rreal, 0.5);
    EXPECT_THAT(values[4].rpoint, ::testing::ElementsAre(1, 2, 3));
    EXPECT_THAT(values[5].rlname, ::testing::ElementsAre(5, 6));
    EXPECT_STREQ(values[6].rstring, L"wide");
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
