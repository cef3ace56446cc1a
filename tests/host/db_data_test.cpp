// What hangs on objects: extended data and dictionaries; result buffers.

#include "support/data_notes.h"
#include "support/room_test.h"

#include "objects/contents.h"

namespace {

class DataTest : public HostTest {
protected:
    DataTest() { addRecord<KdDbRegAppTable, KdDbRegAppTableRecord>(L"SHAPES"); }
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
    const std::vector<korra::TypedValue> values = {{1001, std::wstring(L"SHAPES")},
                                                   {1000, std::wstring(L"Größe")},
                                                   {1004, std::string("\1\0\2", 3)},
                                                   {1005, std::wstring(L"2F")},
                                                   {1010, KdGePoint3d(1.5, -2.5, 3.5)},
                                                   {1042, -1.0},
                                                   {1070, short{-7}},
                                                   {1071, 70000}};
    EXPECT_EQ(korra::ObjectAccess::extras(line).xData, values);
    KdDbLine copy;
    EXPECT_EQ(copy.setXData(List(line.xData(L"shapes"), kdutRelRb).get()), Kdapi::eOk);
    EXPECT_EQ(korra::ObjectAccess::extras(copy).xData, values);
}

TEST_F(DataTest, EachApplicationHasItsOwnData)
{
    KdDbLine line;
    setData(line, "@SHAPES i1 @ACAD i2 i3");
    setData(line, "@SHAPES r9");
    EXPECT_EQ(dataOf(line, L"ACAD"), "@ACAD i2 i3");
    EXPECT_EQ(dataOf(line), "@SHAPES r9 @ACAD i2 i3");
    setData(line, "@ACAD");
    EXPECT_EQ(line.xData(L"ACAD"), nullptr);
    EXPECT_EQ(dataOf(line), "@SHAPES r9");
}

TEST_F(DataTest, WrongListsChangeNothing)
{
    KdDbLine line;
    setData(line, "@SHAPES i1");
    const List otherType(kdutBuildList(1001, L"SHAPES", RTSHORT, 1, 0), kdutRelRb);
    EXPECT_EQ(line.setXData(otherType.get()), Kdapi::eInvalidInput);
    EXPECT_EQ(line.setXData(nullptr), Kdapi::eInvalidInput);
    EXPECT_EQ(line.setXData(listOf("i1").get()), Kdapi::eInvalidInput);
    EXPECT_EQ(line.setXData(listOf("@SHAPES i2 @NOBODY i1").get()), Kdapi::eRegappIdNotFound);
    EXPECT_EQ(dataOf(line), "@SHAPES i1");
}

TEST_F(DataTest, DictionariesFindNamesWithoutCaseAndReplaceWhatHadTheName)
{
    const Open<KdDbDictionary> named(database().namedObjectsDictionaryId());
    const int before = named->numEntries();
    KdDbObjectId first, second, found;
    for (const auto& [name, id] : {std::pair(L"Stock", &first), {L"stock", &second}}) {
        auto* const entry = new KdDbDictionary;
        EXPECT_EQ(named->setAt(name, entry, *id), Kdapi::eOk);
        EXPECT_EQ(entry->ownerId(), named->objectId());
        entry->close();
        EXPECT_EQ(named->getAt(L"STOCK", found), Kdapi::eOk);
        EXPECT_EQ(found, *id);
    }
    EXPECT_TRUE(first.isErased());
    EXPECT_EQ(named->numEntries(), before + 1);

    KdDbDictionary mine;
    for (const wchar_t* none : {L"", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(named->setAt(none, &mine, found), Kdapi::eInvalidKey);
    EXPECT_EQ(named->setAt(L"x", nullptr, found), Kdapi::eNullObjectPointer);
    EXPECT_EQ(named->getAt(L"x", found), Kdapi::eKeyNotFound);
    EXPECT_EQ(found, second) << "untouched";
}

TEST_F(DataTest, AnExtensionDictionaryIsMadeOnce)
{
    EXPECT_EQ(KdDbLine().createExtensionDictionary(), Kdapi::eNotInDatabase);
    const Open<KdDbObject> object(addEntity(new KdDbLine));
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    const KdDbObjectId dictionary = object->extensionDictionary();
    EXPECT_EQ(object->createExtensionDictionary(), Kdapi::eOk);
    EXPECT_EQ(object->extensionDictionary(), dictionary);
    EXPECT_EQ(korra::ObjectAccess::object(dictionary)->ownerId(), object->objectId());
    erase(dictionary);
    EXPECT_TRUE(object->extensionDictionary().isNull());
}

TEST_F(DataTest, ListsAreBuiltUpToTheirEndOrNotAtAll)
{
    const std::int64_t name[] = {5, 6};
    const List list(kdutBuildList(RTLB, RTENAME, name, RTLONG, 100000, RTLE, RTNONE), kdutRelRb);
    EXPECT_EQ(list->restype, RTLB);
    const resbuf& second = *list->rbnext;
    EXPECT_THAT(second.resval.rlname, ElementsAre(5, 6));
    EXPECT_EQ(second.rbnext->resval.rlong, 100000);
    EXPECT_EQ(second.rbnext->rbnext->rbnext, nullptr);
    const auto build = [](int code, auto value) {
        return List(kdutBuildList(code, value, 0), kdutRelRb);
    };
    for (const int code : {60, 79, 170, 179, 270, 299, 370, 389, 400, 409, 1060, 1070}) {
        const List node = build(code, 7);
        EXPECT_TRUE(node && node->resval.rint == 7) << code;
    }
    for (const int code : {38, 59, 140, 149, 460, 469, 1040, 1042}) {
        const List node = build(code, 2.5);
        EXPECT_TRUE(node && node->resval.rreal == 2.5) << code;
    }
    for (const int code : {90, 99, 420, 429, 440, 459, 1071}) {
        const List node = build(code, 70000);
        EXPECT_TRUE(node && node->resval.rlong == 70000) << code;
    }
    EXPECT_EQ(kdutBuildList(RTSHORT, 1, 4711, 0), nullptr); // and what it had begun is freed
    EXPECT_EQ(kdutBuildList(RTNONE), nullptr);
}

} // namespace
