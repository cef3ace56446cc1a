// Databases: what every drawing has, its settings, spaces and layouts.

#include "support/room_test.h"

#include "drawing/complete_drawing.h"
#include "drawing/layouts.h"
#include "objects/contents.h"

#include <memory>

using korra::DatabaseContents;
using korra::ObjectAccess;
using korra::TableKind;

namespace {

class DatabaseTest : public HostTest {
protected:
    DatabaseContents& contents() { return database().contents(); }
};

/// What every drawing has, whatever it was read from.
void expectWhole(KdDbDatabase& database)
{
    const DatabaseContents& contents = database.contents();
    for (const KdDbObjectId id :
         {database.blockTableId(), database.dimStyleTableId(), database.layerTableId(),
          database.linetypeTableId(), database.regAppTableId(), database.textStyleTableId(),
          database.UCSTableId(), database.viewportTableId(), database.namedObjectsDictionaryId(),
          database.layoutDictionaryId(), database.currentSpaceId(), database.clayer(),
          database.textstyle(), database.dimstyle(), database.celtype(),
          database.continuousLinetype(), contents.record(TableKind::regApp, L"ACAD"),
          contents.record(TableKind::viewport, L"*Active")})
        EXPECT_TRUE(!id.isNull() && !id.isErased());

    ASSERT_THAT(korra::layoutsOf(contents), SizeIs(2));
    for (const KdDbLayout* layout : korra::layoutsOf(contents)) {
        const Open<KdDbBlockTableRecord> block(layout->getBlockTableRecordId());
        EXPECT_EQ(block->getLayoutId(), layout->objectId());
        EXPECT_TRUE(block->isLayout());
    }
    EXPECT_TRUE(korra::layoutsOf(contents)[0]->getViewportArray().isEmpty());
    const KdArray<KdDbObjectId> viewports = korra::layoutsOf(contents)[1]->getViewportArray();
    ASSERT_EQ(viewports.length(), 1);
    EXPECT_EQ(ObjectAccess::live<KdDbViewport>(viewports[0])->number(), 1);
    EXPECT_EQ(database.paperSpaceVportId(), viewports[0]);
}

TEST_F(DatabaseTest, EveryDrawingIsMadeWholeByWhatItLacks)
{
    expectWhole(database());
    EXPECT_EQ(database().currentSpaceId(), blockId(L"*Model_Space"));
    const std::size_t objects = contents().slots.size();
    korra::completeDrawing(contents());
    EXPECT_EQ(contents().slots.size(), objects);

    KdDbDatabase empty(false, true);
    KdDbLayerTable* layers = nullptr;
    EXPECT_EQ(empty.getSymbolTable(layers, KdDb::kForRead), Kdapi::eNullObjectId);

    // An old file: a layer table without layer "0", and nothing else.
    const KdDbObjectId id = ObjectAccess::adopt(empty, new KdDbLayerTable, KdDbHandle(0x20));
    empty.contents().tables[static_cast<std::size_t>(TableKind::layer)] = id;
    korra::completeDrawing(empty.contents());
    EXPECT_EQ(empty.layerTableId(), id);
    expectWhole(empty);
}

TEST_F(DatabaseTest, SettingsFallBackToWhatIsThere)
{
    contents().header.setText("$CLAYER", L"Gone", 8);
    EXPECT_EQ(database().clayer(), contents().record(TableKind::layer, L"0"));
    contents().header.setText("$CELTYPE", L"continuous", 6);
    EXPECT_EQ(database().celtype(), database().continuousLinetype());
}

TEST_F(DatabaseTest, TheBlockOfTheCurrentSheetHasTheNameOfPaperSpace)
{
    // A second sheet as a file brings it: a block, bound to a layout when the drawing is completed.
    addEntityToBlock(L"*Paper_Space0", new KdDbLine({0, 0, 0}, {1, 1, 0}));
    korra::completeDrawing(contents());
    const KdDbObjectId model = blockId(L"*Model_Space");
    const KdDbObjectId first = blockId(L"*Paper_Space");
    const KdDbObjectId details = blockId(L"*Paper_Space0");
    const Open<KdDbLayout> second(Open<KdDbBlockTableRecord>(details)->getLayoutId());
    second->setLayoutName(L"Details");

    ASSERT_EQ(korra::setCurrentLayout(contents(), L"DETAILS"), Kdapi::eOk);
    EXPECT_FALSE(database().tilemode());
    EXPECT_EQ(database().currentSpaceId(), details);
    EXPECT_EQ(blockId(L"*Paper_Space0"), first);
    EXPECT_EQ(korra::currentLayout(contents()), second.get());
    EXPECT_EQ(database().paperSpaceVportId(), second->getViewportArray()[0]);
    contents().enteredViewport = second->getViewportArray()[0];
    EXPECT_EQ(database().currentSpaceId(), model);

    EXPECT_EQ(korra::setCurrentLayout(contents(), L"Nowhere"), Kdapi::eKeyNotFound);
    ASSERT_EQ(korra::setCurrentLayout(contents(), L"Layout1"), Kdapi::eOk);
    EXPECT_EQ(database().currentSpaceId(), first);
    EXPECT_EQ(blockId(L"*Paper_Space0"), details);
    ASSERT_EQ(korra::setCurrentLayout(contents(), L"Model"), Kdapi::eOk);
    EXPECT_EQ(database().currentSpaceId(), model);
}

} // namespace
