// What the managers of layers, text styles and dimension styles have in common.

#include "support/named_records.h"
#include "support/room_test.h"

namespace {

struct Manager {
    const char* what;
    int (*readId)(KdDbObjectId& id, const wchar_t* name, KdDbDatabase* db);
    bool idNeedsReading; ///< a record that cannot be read has no id
    int (*exists)(const wchar_t* name, KdDbDatabase* db);
    int (*setCurrent)(CString name, KdDbDatabase* db);
    CString (*current)(KdDbDatabase* db);
    int (*list)(CStringArray& names, KdDbDatabase* db);
    const char* builtIn; ///< what every drawing has
};

const Manager kManagers[] = {
    {"layers", QmLayerMgr::GetLayerId, false, QmLayerMgr::LayerIsExist, QmLayerMgr::SetCurrentLayer,
     QmLayerMgr::GetCurrentLayer, QmLayerMgr::GetLayerNameFromDrawing, "0"},
    {"text styles", TxtStyleMgr::GetTxtStyleId, true, TxtStyleMgr::TextStyleISExist,
     TxtStyleMgr::SetCurrentTextStyle, TxtStyleMgr::GetCurrentTextStyle,
     TxtStyleMgr::GetTxtStyleNameFromDrawing, "Standard"},
    {"dimension styles", DimStyleMgr::GetDimStyleId, true, DimStyleMgr::DimISExist,
     [](CString name, KdDbDatabase* db) { return DimStyleMgr::SetCurrentDimStyle(name, 0, db); },
     DimStyleMgr::GetCurrentDimStyle, DimStyleMgr::GetDimStyleNameFromDrawing, "Standard"},
};

class NamedRecordsTest : public HostTest {
protected:
    NamedRecordsTest() { addNamedRecords(L"House 图"); }
};

TEST_F(NamedRecordsTest, AreFoundByNameInAnyCase)
{
    for (const Manager& manager : kManagers) {
        SCOPED_TRACE(manager.what);
        KdDbObjectId id;
        EXPECT_EQ(manager.readId(id, L"HOUSE 图", drawing()), 1);
        const KdDbObjectId house = id;
        EXPECT_EQ(manager.readId(id, nullptr, drawing()), 0);
        EXPECT_EQ(id, house) << "untouched";
        EXPECT_EQ(manager.readId(id, L"Lost", drawing()), 0);
        EXPECT_TRUE(id.isNull());
        EXPECT_EQ(manager.exists(L"Lost", drawing()), 0);
        EXPECT_EQ(manager.exists(nullptr, drawing()), 0);

        const Open<KdDbObject> writer(house);
        EXPECT_EQ(manager.exists(L"house 图", drawing()), 1);
        EXPECT_EQ(manager.readId(id, L"House 图", drawing()), !manager.idNeedsReading);
        writer->erase();
        EXPECT_EQ(manager.exists(L"house 图", drawing()), 0);
    }
}

TEST_F(NamedRecordsTest, BecomeCurrentByName)
{
    for (const Manager& manager : kManagers) {
        SCOPED_TRACE(manager.what);
        EXPECT_EQ(manager.setCurrent(L"HOUSE 图", drawing()), 1);
        EXPECT_EQ(manager.current(drawing()), L"House 图");
        EXPECT_EQ(manager.setCurrent(L"Lost", drawing()), 0);
        EXPECT_EQ(manager.current(drawing()), L"House 图");
    }
}

TEST_F(NamedRecordsTest, AreListedBehindWhatIsThere)
{
    for (const Manager& manager : kManagers) {
        SCOPED_TRACE(manager.what);
        CStringArray listed;
        listed.Add(L"first");
        EXPECT_EQ(manager.list(listed, nullptr), 0);
        EXPECT_EQ(manager.list(listed, drawing()), 1);
        std::vector<std::string> names;
        for (INT_PTR i = 0; i < listed.GetSize(); ++i)
            names.push_back(narrow(listed[i]));
        EXPECT_THAT(names, ElementsAre("first", manager.builtIn, "House 图"));
    }
}

} // namespace
