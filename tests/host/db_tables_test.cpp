// Symbol tables, block definitions and draw order.

#include "drawing/user_systems.h"
#include "host/recording_sink.h"
#include "support/room_test.h"

#include "objects/contents.h"

#include <memory>

namespace {

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
    KdDbObjectId id;
    EXPECT_EQ(layers()->getAt(nullptr, id), Kdapi::eInvalidKey);

    erase(walls);
    EXPECT_EQ(found(L"Wände"), KdDbObjectId());
    EXPECT_EQ(found(L"Wände", true), walls);
    const KdDbObjectId again = addLayer(L"wände"); // the name of an erased record is free
    EXPECT_NE(again, walls);
    EXPECT_EQ(found(L"Wände", true), again) << "what is there goes before what is erased";
}

TEST_F(TableTest, ARefusedRecordStaysTheCallers)
{
    addLayer(L"Walls");
    KdDbLayerTableRecord twin, nameless;
    twin.setName(L"WALLS");
    KdDbTextStyleTableRecord style;
    style.setName(L"Roman");
    const std::pair<KdDbSymbolTableRecord*, Kdapi::ErrorStatus> refused[] = {
        {&twin, Kdapi::eDuplicateKey},
        {&nameless, Kdapi::eInvalidKey},
        {&style, Kdapi::eNotThatKindOfClass},
        {nullptr, Kdapi::eNullObjectPointer}};
    KdDbObjectId id;
    for (const auto& [record, status] : refused)
        EXPECT_EQ(layers(KdDb::kForWrite)->add(id, record), status);
    twin.setName(L"Doors");
    EXPECT_EQ(layers()->add(id, &twin), Kdapi::eNotOpenForWrite);
    EXPECT_TRUE(id.isNull());
}

TEST_F(TableTest, NamesStayUniqueWhenTheyChange)
{
    addLayer(L"Walls");
    const Open<KdDbLayerTableRecord> record(addLayer(L"Doors"), KdDb::kForRead);
    EXPECT_EQ(record->setName(L"Gates"), Kdapi::eNotOpenForWrite);
    record->upgradeOpen();
    database().setClayer(record->objectId());
    erase(addLayer(L"Gone"));
    for (const auto& [name, status] :
         {std::pair(L"WALLS", Kdapi::eDuplicateKey),
          {L"", Kdapi::eInvalidKey},
          {L"DOORS", Kdapi::eOk},
          {L"gone", Kdapi::eOk}}) // its own, and that of an erased record
        EXPECT_EQ(record->setName(name), status) << name;
    EXPECT_EQ(record->name(), std::wstring(L"gone"));
    EXPECT_EQ(database().clayer(), record->objectId()) << "settings follow";
}

TEST_F(TableTest, IteratorsWalkBothWaysAndSkipWhatIsErased)
{
    const KdDbObjectId zero = database().clayer();
    const KdDbObjectId a = addLayer(L"A"), b = addLayer(L"B"), c = addLayer(L"C");
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
        return ids;
    };
    EXPECT_THAT(walk(true, true), ElementsAre(zero, a, c));
    EXPECT_THAT(walk(true, false), ElementsAre(zero, a, b, c, last));
    EXPECT_THAT(walk(false, false), ElementsAre(last, c, b, a, zero));
}

TEST_F(TableTest, TheUcsOfTheActiveTileIsTheCurrentOne)
{
    const KdDbObjectId saved = addRecord<KdDbUCSTable, KdDbUCSTableRecord>(L"Slope");
    {
        const Open<KdDbUCSTableRecord> system(saved);
        system->setXAxis({0, 1, 0});
        system->setYAxis({-1, 0, 0});
    }
    const Open<KdDbViewportTableRecord> tile(
        database().contents().record(korra::TableKind::viewport, L"*ACTIVE"));
    EXPECT_EQ(tile->setUcs(saved), Kdapi::eOk);
    EXPECT_EQ(database().ucsname(), saved);
    EXPECT_EQ(korra::currentUcs(database()).yAxis, KdGeVector3d(-1, 0, 0));

    EXPECT_EQ(tile->setUcs({4, 5, 6}, KdGeVector3d::kXAxis, KdGeVector3d::kYAxis), Kdapi::eOk);
    EXPECT_TRUE(database().ucsname().isNull());
    erase(saved);
    EXPECT_EQ(tile->setUcs(saved), Kdapi::eWasErased);
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d(4, 5, 6));
}

class BlockTest : public HostTest {
protected:
    using Block = Open<KdDbBlockTableRecord>;

    KdDbObjectId addLineTo(const wchar_t* block)
    {
        return addEntityToBlock(block, new KdDbLine({0, 0, 0}, {1, 0, 0}));
    }

    static std::vector<KdDbObjectId> drawOrder() { return drawnBlock(blockId(L"B")).entities; }

    static Kdapi::ErrorStatus reorder(const std::vector<KdDbObjectId>& sequence)
    {
        const Block block(blockId(L"B"));
        KdDbSortentsTable* table = nullptr;
        EXPECT_EQ(block->getSortentsTable(table, KdDb::kForWrite, true), Kdapi::eOk);
        const Kdapi::ErrorStatus status = table->setRelativeDrawOrder(arrayOf(sequence));
        table->close();
        return status;
    }
};

TEST_F(BlockTest, IteratorsOpenTheEntitiesInTheirOrder)
{
    const KdDbObjectId a = addLineTo(L"Bolt"), b = addLineTo(L"Bolt"), c = addLineTo(L"Bolt");
    erase(b);
    KdDbBlockTableRecordIterator* created = nullptr;
    EXPECT_EQ(Block(blockId(L"BOLT"))->newIterator(created), Kdapi::eOk);
    const std::unique_ptr<KdDbBlockTableRecordIterator> iterator(created);
    for (const KdDbObjectId id : {a, c}) {
        KdDbEntity* entity = nullptr;
        EXPECT_EQ(iterator->getEntity(entity, KdDb::kForRead), Kdapi::eOk);
        EXPECT_EQ(entity->objectId(), id);
        entity->close();
        iterator->step();
    }
    EXPECT_TRUE(iterator->done());
}

TEST_F(BlockTest, WhatABlockRefusesStaysTheCallers)
{
    const KdDbObjectId inBlock = addLineTo(L"Bolt");
    const Block block(blockId(L"Bolt"), KdDb::kForRead);
    KdDbLine line;
    EXPECT_EQ(block->appendKdDbEntity(&line), Kdapi::eNotOpenForWrite);
    block->upgradeOpen();
    EXPECT_EQ(block->appendKdDbEntity(nullptr), Kdapi::eNullObjectPointer);
    EXPECT_EQ(block->appendKdDbEntity(Open<KdDbLine>(inBlock).get()), Kdapi::eAlreadyInDb);
}

TEST_F(BlockTest, NoBlockContainsItselfAtWhateverDepthOrThroughTheGraphicsOfADimension)
{
    const auto insert = [](const wchar_t* into, const wchar_t* inserted) {
        addEntityToBlock(into, new KdDbBlockReference({0, 0, 0}, blockId(inserted)));
    };
    addLineTo(L"Inner");
    insert(L"Middle", L"Inner");
    insert(L"Outer", L"Middle");
    insert(L"Outer", L"Inner");
    for (const wchar_t* name : {L"Inner", L"Middle", L"Outer"}) {
        KdDbBlockReference reference({0, 0, 0}, blockId(name));
        EXPECT_EQ(Block(blockId(L"Inner"))->appendKdDbEntity(&reference), Kdapi::eSelfReference);
    }

    const KdDbObjectId dimension = addEntityToBlock(L"Part", newDimension());
    const KdDbObjectId graphics = Open<KdDbDimension>(dimension, KdDb::kForRead)->dimBlockId();
    KdDbBlockReference reference({0, 0, 0}, blockId(L"Part"));
    EXPECT_EQ(Block(graphics)->appendKdDbEntity(&reference), Kdapi::eSelfReference);
}

TEST_F(BlockTest, DrawOrderMovesOnlyWhatItIsGiven)
{
    KdDbObjectId a, b, c, d;
    for (KdDbObjectId* line : {&a, &b, &c, &d})
        *line = addLineTo(L"B");
    KdDbSortentsTable* none = nullptr;
    EXPECT_EQ(Block(blockId(L"B"))->getSortentsTable(none, KdDb::kForRead, false),
              Kdapi::eKeyNotFound);
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

} // namespace
