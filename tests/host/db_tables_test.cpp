// Symbol tables, block definitions and draw order.

#include "support/host_test.h"

#include "db/contents.h"

#include <memory>

using ::testing::ElementsAre;

namespace tests {
namespace {

class TableTest : public HostTest {
protected:
    template <class Table>
    Table* open(KdDb::OpenMode mode)
    {
        Table* table = nullptr;
        EXPECT_EQ(database().getSymbolTable(table, mode), Kdapi::eOk);
        return table;
    }

    template <class Table, class Record>
    KdDbObjectId add(const wchar_t* name)
    {
        auto* table = open<Table>(KdDb::kForWrite);
        auto* record = new Record;
        EXPECT_EQ(record->setName(name), Kdapi::eOk);
        KdDbObjectId id;
        EXPECT_EQ(table->add(id, record), Kdapi::eOk);
        record->close();
        table->close();
        return id;
    }

    KdDbObjectId addLayer(const wchar_t* name)
    {
        return add<KdDbLayerTable, KdDbLayerTableRecord>(name);
    }

    static void erase(KdDbObjectId id)
    {
        KdDbObject* object = nullptr;
        ASSERT_EQ(kddbOpenObject(object, id, KdDb::kForWrite), Kdapi::eOk);
        EXPECT_EQ(object->erase(), Kdapi::eOk);
        object->close();
    }
};

TEST_F(TableTest, RecordsAreFoundWithoutCaseUnlessErased)
{
    const KdDbObjectId walls = addLayer(L"Wände");
    auto* layers = open<KdDbLayerTable>(KdDb::kForRead);
    KdDbObjectId found;
    EXPECT_EQ(layers->getAt(L"WÄNDE", found), Kdapi::eOk);
    EXPECT_EQ(found, walls);
    EXPECT_EQ(layers->getAt(L"Wänd", found), Kdapi::eKeyNotFound);
    EXPECT_EQ(layers->getAt(nullptr, found), Kdapi::eInvalidKey);

    erase(walls);
    EXPECT_EQ(layers->getAt(L"Wände", found), Kdapi::eKeyNotFound);
    EXPECT_EQ(layers->getIdAt(L"Wände", found, true), Kdapi::eOk);
    layers->close();

    const KdDbObjectId again = addLayer(L"wände"); // the name of an erased record is free
    EXPECT_NE(again, walls);
}

TEST_F(TableTest, ARefusedRecordStaysTheCallers)
{
    addLayer(L"Walls");
    auto* layers = open<KdDbLayerTable>(KdDb::kForWrite);
    const auto refuse = [&](KdDbSymbolTableRecord* record, Kdapi::ErrorStatus expected) {
        KdDbObjectId id;
        EXPECT_EQ(layers->add(id, record), expected);
        EXPECT_TRUE(id.isNull());
        delete record;
    };
    auto* taken = new KdDbLayerTableRecord;
    taken->setName(L"WALLS");
    refuse(taken, Kdapi::eDuplicateKey);
    refuse(new KdDbLayerTableRecord, Kdapi::eInvalidKey);
    auto* otherClass = new KdDbTextStyleTableRecord;
    otherClass->setName(L"Roman");
    refuse(otherClass, Kdapi::eNotThatKindOfClass);
    refuse(nullptr, Kdapi::eNullObjectPointer);
    layers->close();

    auto* reading = open<KdDbLayerTable>(KdDb::kForRead);
    auto record = std::make_unique<KdDbLayerTableRecord>();
    record->setName(L"Doors");
    KdDbObjectId id;
    EXPECT_EQ(reading->add(id, record.get()), Kdapi::eNotOpenForWrite);
    reading->close();
}

TEST_F(TableTest, NamesStayUniqueWhenTheyChange)
{
    addLayer(L"Walls");
    const KdDbObjectId doors = addLayer(L"Doors");
    KdDbLayerTableRecord* record = nullptr;
    kddbOpenObject(record, doors, KdDb::kForRead);
    EXPECT_EQ(record->setName(L"Gates"), Kdapi::eNotOpenForWrite);
    record->upgradeOpen();
    EXPECT_EQ(record->setName(L"WALLS"), Kdapi::eDuplicateKey);
    EXPECT_EQ(record->setName(L""), Kdapi::eInvalidKey);
    EXPECT_EQ(record->setName(L"DOORS"), Kdapi::eOk); // its own name in another case
    const wchar_t* name = nullptr;
    EXPECT_EQ(record->getName(name), Kdapi::eOk);
    EXPECT_STREQ(name, L"DOORS");
    record->close();
}

TEST_F(TableTest, IteratorsWalkBothWaysAndSkipWhatIsErased)
{
    const KdDbObjectId zero = database().clayer();
    const KdDbObjectId a = addLayer(L"A");
    const KdDbObjectId b = addLayer(L"B");
    const KdDbObjectId c = addLayer(L"C");
    erase(b);
    auto* layers = open<KdDbLayerTable>(KdDb::kForRead);
    const auto walk = [&](bool forward, bool skipErased) {
        KdDbSymbolTableIterator* created = nullptr;
        EXPECT_EQ(layers->newIterator(created, forward, skipErased), Kdapi::eOk);
        const std::unique_ptr<KdDbSymbolTableIterator> iterator(created);
        std::vector<KdDbObjectId> ids;
        for (; !iterator->done(); iterator->step(forward, skipErased)) {
            KdDbObjectId id;
            EXPECT_EQ(iterator->getRecordId(id), Kdapi::eOk);
            ids.push_back(id);
        }
        KdDbObjectId untouched = a;
        EXPECT_EQ(iterator->getRecordId(untouched), Kdapi::eIteratorDone);
        EXPECT_EQ(untouched, a);
        return ids;
    };
    EXPECT_THAT(walk(true, true), ElementsAre(zero, a, c));
    EXPECT_THAT(walk(true, false), ElementsAre(zero, a, b, c));
    EXPECT_THAT(walk(false, true), ElementsAre(c, a, zero));
    layers->close();
}

TEST_F(TableTest, TheUcsOfTheActiveTileIsTheCurrentOne)
{
    const KdDbObjectId saved = add<KdDbUCSTable, KdDbUCSTableRecord>(L"Slope");
    KdDbUCSTableRecord* system = nullptr;
    kddbOpenObject(system, saved, KdDb::kForWrite);
    system->setOrigin({1, 2, 3});
    system->setXAxis({0, 1, 0});
    system->setYAxis({-1, 0, 0});
    system->close();
    const KdDbObjectId active =
        database().contents().record(korra::TableKind::viewport, L"*ACTIVE");
    KdDbViewportTableRecord* tile = nullptr;
    ASSERT_EQ(kddbOpenObject(tile, active, KdDb::kForWrite), Kdapi::eOk);

    EXPECT_EQ(tile->setUcs(saved), Kdapi::eOk);
    EXPECT_EQ(database().ucsname(), saved);
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d(1, 2, 3));
    EXPECT_EQ(korra::currentUcs(database()).yAxis, KdGeVector3d(-1, 0, 0));

    EXPECT_EQ(tile->setUcs({4, 5, 6}, KdGeVector3d::kXAxis, KdGeVector3d::kYAxis), Kdapi::eOk);
    EXPECT_TRUE(database().ucsname().isNull());
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d(4, 5, 6));

    EXPECT_EQ(tile->setUcs(KdDbObjectId()), Kdapi::eNullObjectId);
    EXPECT_EQ(tile->setUcs(database().clayer()), Kdapi::eNotThatKindOfClass);
    erase(saved);
    EXPECT_EQ(tile->setUcs(saved), Kdapi::eWasErased);
    EXPECT_EQ(korra::currentUcs(database()).origin, KdGePoint3d(4, 5, 6));
    tile->close();
}

class BlockTest : public TableTest {
protected:
    static KdDbBlockTableRecord* openBlock(KdDbObjectId id, KdDb::OpenMode mode)
    {
        KdDbBlockTableRecord* block = nullptr;
        EXPECT_EQ(kddbOpenObject(block, id, mode), Kdapi::eOk);
        return block;
    }

    static Kdapi::ErrorStatus insert(KdDbObjectId into, KdDbObjectId inserted)
    {
        KdDbBlockTableRecord* block = openBlock(into, KdDb::kForWrite);
        auto reference = std::make_unique<KdDbBlockReference>(KdGePoint3d::kOrigin, inserted);
        const Kdapi::ErrorStatus status = block->appendKdDbEntity(reference.get());
        if (status == Kdapi::eOk)
            reference.release()->close();
        block->close();
        return status;
    }

    KdDbObjectId addLineTo(const wchar_t* block)
    {
        return addEntityToBlock(block, new KdDbLine({0, 0, 0}, {1, 0, 0}));
    }

    std::vector<KdDbObjectId> drawOrder(const wchar_t* block)
    {
        return korra::drawOrder(*database().contents().block(block));
    }

    static Kdapi::ErrorStatus reorder(const wchar_t* block, std::vector<KdDbObjectId> sequence)
    {
        KdDbBlockTableRecord* record = openBlock(blockId(block), KdDb::kForWrite);
        KdDbSortentsTable* table = nullptr;
        EXPECT_EQ(record->getSortentsTable(table, KdDb::kForWrite, true), Kdapi::eOk);
        KdArray<KdDbObjectId> ids;
        for (const KdDbObjectId id : sequence)
            ids.append(id);
        const Kdapi::ErrorStatus status = table->setRelativeDrawOrder(ids);
        table->close();
        record->close();
        return status;
    }
};

TEST_F(BlockTest, AnEntityIsOwnedByTheBlockAndComplete)
{
    const KdDbObjectId id = addLineTo(L"Bolt");
    KdDbEntity* line = nullptr;
    ASSERT_EQ(kddbOpenObject(line, id, KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(line->blockId(), blockId(L"BOLT"));
    EXPECT_EQ(line->layerId(), database().clayer());
    EXPECT_FALSE(line->linetypeId().isNull());
    line->close();
}

TEST_F(BlockTest, WhatABlockRefusesStaysTheCallers)
{
    addLineTo(L"Bolt");
    KdDbBlockTableRecord* block = openBlock(blockId(L"Bolt"), KdDb::kForRead);
    auto line = std::make_unique<KdDbLine>();
    EXPECT_EQ(block->appendKdDbEntity(line.get()), Kdapi::eNotOpenForWrite);
    block->upgradeOpen();
    EXPECT_EQ(block->appendKdDbEntity(nullptr), Kdapi::eNullObjectPointer);
    KdDbLine* added = line.release();
    EXPECT_EQ(block->appendKdDbEntity(added), Kdapi::eOk);
    EXPECT_EQ(block->appendKdDbEntity(added), Kdapi::eAlreadyInDb);
    added->close();
    block->close();

    KdDbBlockTableRecord freeStanding;
    KdDbLine mine;
    EXPECT_EQ(freeStanding.appendKdDbEntity(&mine), Kdapi::eNotInDatabase);
}

TEST_F(BlockTest, NoBlockContainsItselfAtWhateverDepth)
{
    for (const wchar_t* name : {L"Inner", L"Middle", L"Outer"})
        addLineTo(name);
    EXPECT_EQ(insert(blockId(L"Middle"), blockId(L"Inner")), Kdapi::eOk);
    EXPECT_EQ(insert(blockId(L"Outer"), blockId(L"Middle")), Kdapi::eOk);
    EXPECT_EQ(insert(blockId(L"Outer"), blockId(L"Inner")), Kdapi::eOk);

    EXPECT_EQ(insert(blockId(L"Inner"), blockId(L"Inner")), Kdapi::eSelfReference);
    EXPECT_EQ(insert(blockId(L"Inner"), blockId(L"Middle")), Kdapi::eSelfReference);
    EXPECT_EQ(insert(blockId(L"Inner"), blockId(L"Outer")), Kdapi::eSelfReference);
    EXPECT_EQ(insert(database().currentSpaceId(), blockId(L"Outer")), Kdapi::eOk);
}

TEST_F(BlockTest, PartsComeIntoTheDrawingWithTheirOwner)
{
    addLineTo(L"Title");
    auto* reference = new KdDbBlockReference(KdGePoint3d::kOrigin, blockId(L"Title"));
    KdDbObjectId ignored;
    reference->appendAttribute(ignored, new KdDbAttribute({0, 0, 0}, L"42", L"NUMBER", 2.5));
    const KdDbObjectId id = addEntity(reference);

    KdDbBlockReference* opened = nullptr;
    ASSERT_EQ(kddbOpenObject(opened, id, KdDb::kForRead), Kdapi::eOk);
    const std::unique_ptr<KdDbObjectIterator> attributes(opened->attributeIterator());
    KdDbAttribute* attribute = nullptr;
    ASSERT_EQ(kddbOpenObject(attribute, attributes->objectId(), KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(attribute->ownerId(), id);
    EXPECT_STREQ(attribute->tag(), L"NUMBER");
    attribute->close();
    opened->close();
}

TEST_F(BlockTest, AnonymousIsWhatBeginsWithAStarAndIsNoSpace)
{
    for (const auto& [name, anonymous] :
         {std::pair(L"*U7", true), std::pair(L"*D1", true), std::pair(L"*Model_Space", false),
          std::pair(L"*Paper_Space", false), std::pair(L"Bolt", false)}) {
        if (blockId(name).isNull())
            addLineTo(name);
        EXPECT_EQ(database().contents().block(name)->isAnonymous(), anonymous);
    }
}

TEST_F(BlockTest, DrawOrderMovesOnlyWhatItIsGiven)
{
    const KdDbObjectId a = addLineTo(L"B");
    const KdDbObjectId b = addLineTo(L"B");
    const KdDbObjectId c = addLineTo(L"B");
    const KdDbObjectId d = addLineTo(L"B");
    EXPECT_THAT(drawOrder(L"B"), ElementsAre(a, b, c, d));

    EXPECT_EQ(reorder(L"B", {d, b}), Kdapi::eOk);
    EXPECT_THAT(drawOrder(L"B"), ElementsAre(a, d, c, b));
    EXPECT_EQ(reorder(L"B", {b, a, d, c}), Kdapi::eOk);
    EXPECT_THAT(drawOrder(L"B"), ElementsAre(b, a, d, c));

    const KdDbObjectId late = addLineTo(L"B"); // what comes later is drawn on top
    erase(a);
    EXPECT_THAT(drawOrder(L"B"), ElementsAre(b, d, c, late));

    EXPECT_EQ(reorder(L"B", {b, database().clayer()}), Kdapi::eInvalidInput);
    EXPECT_EQ(reorder(L"B", {b, b}), Kdapi::eInvalidInput);
    EXPECT_THAT(drawOrder(L"B"), ElementsAre(b, d, c, late));
}

TEST_F(BlockTest, TheDrawOrderTableIsMadeOnRequestOnly)
{
    addLineTo(L"B");
    KdDbBlockTableRecord* block = openBlock(blockId(L"B"), KdDb::kForRead);
    KdDbSortentsTable* table = nullptr;
    EXPECT_EQ(block->getSortentsTable(table, KdDb::kForRead, false), Kdapi::eKeyNotFound);
    EXPECT_EQ(block->getSortentsTable(table, KdDb::kForRead, true), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(table, nullptr);
    block->upgradeOpen();
    ASSERT_EQ(block->getSortentsTable(table, KdDb::kForRead, true), Kdapi::eOk);
    KdArray<KdDbObjectId> order;
    EXPECT_EQ(table->getFullDrawOrder(order), Kdapi::eOk);
    EXPECT_EQ(order.length(), 1);
    KdDbSortentsTable* second = nullptr;
    EXPECT_EQ(block->getSortentsTable(second, KdDb::kForWrite, true), Kdapi::eWasOpenForRead);
    table->close();
    block->close();
}

} // namespace
} // namespace tests
