// Symbol tables, block definitions and draw order.

#include "blocks/draw_order.h"
#include "drawing/user_systems.h"
#include "support/host_test.h"
#include "support/objects.h"

#include "objects/contents.h"

#include <memory>

using ::testing::ElementsAre;

namespace tests {
namespace {

KdDbObjectId addLayer(const wchar_t* name)
{
    return addRecord<KdDbLayerTable, KdDbLayerTableRecord>(name);
}

class TableTest : public HostTest {
protected:
    Open<KdDbLayerTable> layers(KdDb::OpenMode mode = KdDb::kForRead)
    {
        return Open<KdDbLayerTable>(database().layerTableId(), mode);
    }
};

TEST_F(TableTest, RecordsAreFoundWithoutCaseUnlessErased)
{
    const KdDbObjectId walls = addLayer(L"Wände");
    const auto found = [&](const wchar_t* name, bool erasedToo = false) {
        KdDbObjectId id;
        const Kdapi::ErrorStatus status = layers()->getAt(name, id, erasedToo);
        EXPECT_EQ(status, id.isNull() ? Kdapi::eKeyNotFound : Kdapi::eOk);
        return id;
    };
    EXPECT_EQ(found(L"WÄNDE"), walls);
    EXPECT_EQ(found(L"Wänd"), KdDbObjectId());
    KdDbObjectId id = walls;
    EXPECT_EQ(layers()->getAt(nullptr, id), Kdapi::eInvalidKey);
    EXPECT_EQ(id, walls) << "untouched";

    erase(walls);
    EXPECT_EQ(found(L"Wände"), KdDbObjectId());
    EXPECT_EQ(found(L"Wände", true), walls);
    const KdDbObjectId again = addLayer(L"wände"); // the name of an erased record is free
    EXPECT_NE(again, walls);
    EXPECT_EQ(found(L"Wände", true), again) << "what is there goes before what is erased";
    EXPECT_EQ(Open<KdDbLayerTableRecord>(again)->linetypeObjectId(),
              database().continuousLinetype());
}

TEST_F(TableTest, ARefusedRecordStaysTheCallers)
{
    addLayer(L"Walls");
    const auto refuse = [&](KdDbSymbolTableRecord* record, Kdapi::ErrorStatus expected,
                            KdDb::OpenMode mode = KdDb::kForWrite) {
        KdDbObjectId id;
        EXPECT_EQ(layers(mode)->add(id, record), expected);
        EXPECT_TRUE(id.isNull());
        delete record;
    };
    const auto named = [](KdDbSymbolTableRecord* record, const wchar_t* name) {
        record->setName(name);
        return record;
    };
    refuse(named(new KdDbLayerTableRecord, L"WALLS"), Kdapi::eDuplicateKey);
    refuse(new KdDbLayerTableRecord, Kdapi::eInvalidKey);
    refuse(named(new KdDbTextStyleTableRecord, L"Roman"), Kdapi::eNotThatKindOfClass);
    refuse(nullptr, Kdapi::eNullObjectPointer);
    refuse(named(new KdDbLayerTableRecord, L"Doors"), Kdapi::eNotOpenForWrite, KdDb::kForRead);
}

TEST_F(TableTest, NamesStayUniqueWhenTheyChange)
{
    addLayer(L"Walls");
    const Open<KdDbLayerTableRecord> record(addLayer(L"Doors"), KdDb::kForRead);
    EXPECT_EQ(record->setName(L"Gates"), Kdapi::eNotOpenForWrite);
    record->upgradeOpen();
    EXPECT_EQ(record->setName(L"WALLS"), Kdapi::eDuplicateKey);
    EXPECT_EQ(record->setName(L""), Kdapi::eInvalidKey);
    database().setClayer(record->objectId());
    EXPECT_EQ(record->setName(L"DOORS"), Kdapi::eOk); // its own name in another case
    EXPECT_EQ(record->setName(L"Gates"), Kdapi::eOk);
    EXPECT_EQ(database().clayer(), record->objectId()) << "settings follow";
    erase(addLayer(L"Gone"));
    EXPECT_EQ(record->setName(L"gone"), Kdapi::eOk) << "the name of an erased record is free";
    EXPECT_EQ(record->setName(L"DOORS"), Kdapi::eOk);
    EXPECT_EQ(record->name(), std::wstring(L"DOORS"));
}

TEST_F(TableTest, IteratorsWalkBothWaysAndSkipWhatIsErased)
{
    const KdDbObjectId zero = database().clayer();
    const KdDbObjectId a = addLayer(L"A");
    const KdDbObjectId b = addLayer(L"B");
    const KdDbObjectId c = addLayer(L"C");
    const KdDbObjectId last = addLayer(L"Last");
    erase(b);
    erase(last);
    const auto walk = [&](bool forward, bool skipErased) {
        KdDbSymbolTableIterator* created = nullptr;
        EXPECT_EQ(layers()->newIterator(created, forward, skipErased), Kdapi::eOk);
        const std::unique_ptr<KdDbSymbolTableIterator> iterator(created);
        std::vector<KdDbObjectId> ids;
        KdDbObjectId id;
        for (; !iterator->done(); iterator->step(forward, skipErased)) {
            EXPECT_EQ(iterator->getRecordId(id), Kdapi::eOk);
            ids.push_back(id);
        }
        EXPECT_EQ(iterator->getRecordId(id), Kdapi::eIteratorDone);
        EXPECT_EQ(id, ids.back()) << "untouched";
        return ids;
    };
    EXPECT_THAT(walk(true, true), ElementsAre(zero, a, c));
    EXPECT_THAT(walk(true, false), ElementsAre(zero, a, b, c, last));
    EXPECT_THAT(walk(false, true), ElementsAre(c, a, zero));
    EXPECT_THAT(walk(false, false), ElementsAre(last, c, b, a, zero));
}

TEST_F(TableTest, TheUcsOfTheActiveTileIsTheCurrentOne)
{
    const KdDbObjectId saved = addRecord<KdDbUCSTable, KdDbUCSTableRecord>(L"Slope");
    {
        const Open<KdDbUCSTableRecord> system(saved);
        system->setOrigin({1, 2, 3});
        system->setXAxis({0, 1, 0});
        system->setYAxis({-1, 0, 0});
    }
    const Open<KdDbViewportTableRecord> tile(
        database().contents().record(korra::TableKind::viewport, L"*ACTIVE"));
    EXPECT_EQ(tile->setUcs(saved), Kdapi::eOk);
    EXPECT_EQ(database().ucsname(), saved);
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d(1, 2, 3));
    EXPECT_EQ(korra::currentUcs(database()).yAxis, KdGeVector3d(-1, 0, 0));

    EXPECT_EQ(tile->setUcs({4, 5, 6}, KdGeVector3d::kXAxis, KdGeVector3d::kYAxis), Kdapi::eOk);
    EXPECT_TRUE(database().ucsname().isNull());
    EXPECT_EQ(tile->setUcs(KdDbObjectId()), Kdapi::eNullObjectId);
    EXPECT_EQ(tile->setUcs(database().clayer()), Kdapi::eNotThatKindOfClass);
    erase(saved);
    EXPECT_EQ(tile->setUcs(saved), Kdapi::eWasErased);
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d(4, 5, 6));
}

TEST_F(TableTest, AViewKeepsItsWidthWhenItsHeightChangesAndIsNeverFlat)
{
    const auto id = addRecord<KdDbViewportTable, KdDbViewportTableRecord>(L"Saved");
    const Open<KdDbViewportTableRecord> tile(id);
    EXPECT_EQ(tile->setHeight(4), Kdapi::eOk);
    EXPECT_EQ(tile->setWidth(6), Kdapi::eOk);
    EXPECT_EQ(tile->setHeight(0.5), Kdapi::eOk);
    EXPECT_DOUBLE_EQ(tile->width(), 6.0);
    EXPECT_EQ(tile->setWidth(0.25), Kdapi::eOk);
    EXPECT_DOUBLE_EQ(tile->height(), 0.5);
    EXPECT_EQ(tile->setHeight(0), Kdapi::eInvalidView);
    EXPECT_EQ(tile->setWidth(0), Kdapi::eInvalidView);
    EXPECT_EQ(tile->setViewDirection({0, 0, 0}), Kdapi::eInvalidView);
    EXPECT_DOUBLE_EQ(tile->width() / tile->height(), 0.5);

    EXPECT_EQ(tile->setUcs({7, 8, 9}, KdGeVector3d::kXAxis, KdGeVector3d::kYAxis), Kdapi::eOk);
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d()) << "not the active view's";
}

TEST_F(TableTest, FontsOfAStyleComeBackAndLeaveOtherData)
{
    const auto id = addRecord<KdDbTextStyleTable, KdDbTextStyleTableRecord>(L"Notes");
    const Open<KdDbTextStyleTableRecord> style(id);
    auto& data = korra::ObjectAccess::extras(*style).xData;
    const std::vector<korra::TypedValue> other = {{1001, std::wstring(L"OTHER")},
                                                  {1000, std::wstring(L"note")}};
    data = other;
    const std::wstring longest(31, L'x');
    const std::wstring tooLong(32, L'x');

    struct {
        const wchar_t* face;
        bool bold, italic;
        int characterSet, pitch, family;
        Kdapi::ErrorStatus status;
    } const cases[] = {{L"Roman", false, true, 0, 2, 16, Kdapi::eOk},
                       {longest.c_str(), true, false, 255, 15, 240, Kdapi::eOk},
                       {L"Roman", true, true, 134, 0, 0, Kdapi::eOk},
                       {tooLong.c_str(), false, false, 0, 0, 0, Kdapi::eInvalidInput},
                       {L"A", false, false, 256, 0, 0, Kdapi::eInvalidInput},
                       {L"A", false, false, 0, -1, 0, Kdapi::eInvalidInput},
                       {L"A", false, false, 0, 0, 256, Kdapi::eInvalidInput},
                       {nullptr, false, false, 0, 0, 0, Kdapi::eInvalidInput}};

    for (const auto& each : cases) {
        EXPECT_EQ(style->setFont(each.face, each.bold, each.italic, each.characterSet, each.pitch,
                                 each.family),
                  each.status);
        if (each.status != Kdapi::eOk)
            continue;
        std::wstring face;
        bool bold = false;
        bool italic = false;
        int numbers[3] = {};
        style->font(face, bold, italic, numbers[0], numbers[1], numbers[2]);
        EXPECT_EQ(face, each.face);
        EXPECT_EQ(std::pair(bold, italic), std::pair(each.bold, each.italic));
        EXPECT_THAT(numbers, ElementsAre(each.characterSet, each.pitch, each.family));
    }
    EXPECT_EQ(data.size(), 5u);
    EXPECT_EQ(style->setFont(L"", false, false, 0, 0, 0), Kdapi::eOk);
    EXPECT_EQ(data, other);
}

class BlockTest : public HostTest {
protected:
    using Block = Open<KdDbBlockTableRecord>;

    static Kdapi::ErrorStatus insert(KdDbObjectId into, const wchar_t* inserted)
    {
        auto reference =
            std::make_unique<KdDbBlockReference>(KdGePoint3d::kOrigin, blockId(inserted));
        const Kdapi::ErrorStatus status = Block(into)->appendKdDbEntity(reference.get());
        if (status == Kdapi::eOk)
            reference.release()->close();
        return status;
    }

    KdDbObjectId addLineTo(const wchar_t* block)
    {
        return addEntityToBlock(block, new KdDbLine({0, 0, 0}, {1, 0, 0}));
    }

    std::vector<KdDbObjectId> drawOrder() { return korra::drawOrder(*Block(blockId(L"B"))); }

    static Kdapi::ErrorStatus reorder(const std::vector<KdDbObjectId>& sequence)
    {
        const Block block(blockId(L"B"));
        KdDbSortentsTable* table = nullptr;
        EXPECT_EQ(block->getSortentsTable(table, KdDb::kForWrite, true), Kdapi::eOk);
        KdArray<KdDbObjectId> ids;
        for (const KdDbObjectId id : sequence)
            ids.append(id);
        const Kdapi::ErrorStatus status = table->setRelativeDrawOrder(ids);
        table->close();
        return status;
    }
};

TEST_F(BlockTest, IteratorsOpenTheEntitiesInTheirOrder)
{
    const KdDbObjectId a = addLineTo(L"Bolt");
    const KdDbObjectId b = addLineTo(L"Bolt");
    const KdDbObjectId c = addLineTo(L"Bolt");
    erase(b);
    const auto walk = [](bool skipErased) {
        KdDbBlockTableRecordIterator* created = nullptr;
        EXPECT_EQ(Block(blockId(L"BOLT"))->newIterator(created, true, skipErased), Kdapi::eOk);
        const std::unique_ptr<KdDbBlockTableRecordIterator> iterator(created);
        std::vector<KdDbObjectId> ids;
        for (; !iterator->done(); iterator->step(true, skipErased)) {
            KdDbEntity* entity = nullptr;
            EXPECT_EQ(iterator->getEntity(entity, KdDb::kForRead, !skipErased), Kdapi::eOk);
            ids.push_back(entity->objectId());
            EXPECT_EQ(entity->blockId(), blockId(L"Bolt"));
            entity->close();
        }
        return ids;
    };
    EXPECT_THAT(walk(true), ElementsAre(a, c));
    EXPECT_THAT(walk(false), ElementsAre(a, b, c));
}

TEST_F(BlockTest, WhatABlockRefusesStaysTheCallers)
{
    addLineTo(L"Bolt");
    const Block block(blockId(L"Bolt"), KdDb::kForRead);
    auto line = std::make_unique<KdDbLine>();
    EXPECT_EQ(block->appendKdDbEntity(line.get()), Kdapi::eNotOpenForWrite);
    block->upgradeOpen();
    EXPECT_EQ(block->appendKdDbEntity(nullptr), Kdapi::eNullObjectPointer);
    KdDbLine* const added = line.release();
    EXPECT_EQ(block->appendKdDbEntity(added), Kdapi::eOk);
    EXPECT_EQ(block->appendKdDbEntity(added), Kdapi::eAlreadyInDb);
    added->close();
    KdDbLine mine;
    EXPECT_EQ(KdDbBlockTableRecord().appendKdDbEntity(&mine), Kdapi::eNotInDatabase);
}

TEST_F(BlockTest, NoBlockContainsItselfAtWhateverDepth)
{
    for (const wchar_t* name : {L"Inner", L"Middle", L"Outer"})
        addLineTo(name);
    EXPECT_EQ(insert(blockId(L"Middle"), L"Inner"), Kdapi::eOk);
    EXPECT_EQ(insert(blockId(L"Outer"), L"Middle"), Kdapi::eOk);
    EXPECT_EQ(insert(blockId(L"Outer"), L"Inner"), Kdapi::eOk);
    for (const wchar_t* name : {L"Inner", L"Middle", L"Outer"})
        EXPECT_EQ(insert(blockId(L"Inner"), name), Kdapi::eSelfReference) << name;
    EXPECT_EQ(insert(database().currentSpaceId(), L"Outer"), Kdapi::eOk);
}

TEST_F(BlockTest, AnonymousIsWhatBeginsWithAStarAndIsNoSpace)
{
    addLineTo(L"*U7");
    addLineTo(L"Bolt");
    for (const auto& [name, anonymous] :
         {std::pair(L"*U7", true), std::pair(L"*Model_Space", false),
          std::pair(L"*Paper_Space", false), std::pair(L"Bolt", false)})
        EXPECT_EQ(Block(blockId(name))->isAnonymous(), anonymous);
}

TEST_F(BlockTest, DrawOrderMovesOnlyWhatItIsGiven)
{
    const KdDbObjectId a = addLineTo(L"B");
    const KdDbObjectId b = addLineTo(L"B");
    const KdDbObjectId c = addLineTo(L"B");
    const KdDbObjectId d = addLineTo(L"B");
    EXPECT_EQ(reorder({d, b}), Kdapi::eOk);
    EXPECT_THAT(drawOrder(), ElementsAre(a, d, c, b));
    EXPECT_EQ(reorder({b, a, d, c}), Kdapi::eOk);
    EXPECT_THAT(drawOrder(), ElementsAre(b, a, d, c));

    const KdDbObjectId late = addLineTo(L"B"); // what comes later is drawn on top
    erase(a);
    EXPECT_THAT(drawOrder(), ElementsAre(b, d, c, late));
    EXPECT_EQ(reorder({b, database().clayer()}), Kdapi::eInvalidInput);
    EXPECT_EQ(reorder({b, b}), Kdapi::eInvalidInput);
    EXPECT_THAT(drawOrder(), ElementsAre(b, d, c, late));
}

TEST_F(BlockTest, TheDrawOrderTableIsMadeOnRequestOnly)
{
    addLineTo(L"B");
    const Block block(blockId(L"B"), KdDb::kForRead);
    KdDbSortentsTable* table = nullptr;
    EXPECT_EQ(block->getSortentsTable(table, KdDb::kForRead, false), Kdapi::eKeyNotFound);
    EXPECT_EQ(block->getSortentsTable(table, KdDb::kForRead, true), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(table, nullptr);
    block->upgradeOpen();
    ASSERT_EQ(block->getSortentsTable(table, KdDb::kForRead, true), Kdapi::eOk);
    KdDbSortentsTable* second = nullptr;
    EXPECT_EQ(block->getSortentsTable(second, KdDb::kForWrite, true), Kdapi::eWasOpenForRead);
    table->close();
}

} // namespace
} // namespace tests
