// What objects refer to and own: other drawings, names of records, erasing and copies.

#include "support/host_test.h"
#include "support/objects.h"

#include "korra/host.h"
#include "objects/contents.h"
#include "objects/deep_copy.h"
#include "objects/references.h"
#include "platform/text.h"

#include <memory>
#include <string>
#include <vector>

using korra::ObjectAccess;
using testing::Each;

namespace tests {
namespace {

template <class Table, class Record>
KdDbObjectId addTo(KdDbDatabase& database, const wchar_t* name)
{
    auto* record = new Record;
    EXPECT_EQ(record->setName(name), Kdapi::eOk);
    Table* table = nullptr;
    EXPECT_EQ(database.getSymbolTable(table, KdDb::kForWrite), Kdapi::eOk);
    KdDbObjectId id;
    EXPECT_EQ(table->add(id, record), Kdapi::eOk);
    record->close();
    table->close();
    return id;
}

class ReferencesTest : public HostTest {
protected:
    /// What adding an entity to the current space comes to; one that is refused is deleted.
    Kdapi::ErrorStatus append(std::unique_ptr<KdDbEntity> entity)
    {
        const Open<KdDbBlockTableRecord> space(database().currentSpaceId());
        const Kdapi::ErrorStatus status = space->appendKdDbEntity(entity.get());
        EXPECT_EQ(entity->database(), status == Kdapi::eOk ? &database() : nullptr);
        if (status == Kdapi::eOk)
            entity.release()->close();
        return status;
    }

    std::unique_ptr<KdDbDatabase> other_ = std::make_unique<KdDbDatabase>(true, true);

    void TearDown() override
    {
        other_.reset();
        HostTest::TearDown();
    }
};

TEST_F(ReferencesTest, SettersTakeWhatIsInTheDrawingAndOfTheKind)
{
    auto* const line = new KdDbLine({0, 0, 0}, {1, 0, 0});
    auto* const text = new KdDbText({0, 0, 0}, L"a", 1.0);
    auto* const mtext = new KdDbMText;
    auto* const dimension = new KdDbAlignedDimension({0, 0, 0}, {4, 0, 0}, {0, 2, 0});
    for (KdDbEntity* entity :
         {static_cast<KdDbEntity*>(line), static_cast<KdDbEntity*>(text),
          static_cast<KdDbEntity*>(mtext), static_cast<KdDbEntity*>(dimension)})
        addEntity(entity);
    const Open<KdDbObject> openLine(line->objectId());
    const Open<KdDbObject> openText(text->objectId());
    const Open<KdDbObject> openMText(mtext->objectId());
    const Open<KdDbObject> openDimension(dimension->objectId());
    const Open<KdDbLayerTableRecord> layer(database().clayer());
    const Open<KdDbDimStyleTableRecord> style(database().dimstyle());

    struct Setter {
        const char* name;
        std::function<Kdapi::ErrorStatus(KdDbObjectId)> set;
        KdDbObjectId (*own)(const KdDbDatabase&);
    };

    const auto textstyle = [](const KdDbDatabase& drawing) { return drawing.textstyle(); };
    const auto linetype = [](const KdDbDatabase& drawing) { return drawing.celtype(); };
    const Setter setters[] = {
        {"layer", [=](KdDbObjectId id) { return line->setLayer(id); },
         [](const KdDbDatabase& drawing) { return drawing.clayer(); }},
        {"linetype", [=](KdDbObjectId id) { return line->setLinetype(id); }, linetype},
        {"text", [=](KdDbObjectId id) { return text->setTextStyle(id); }, textstyle},
        {"mtext", [=](KdDbObjectId id) { return mtext->setTextStyle(id); }, textstyle},
        {"dimension", [=](KdDbObjectId id) { return dimension->setDimensionStyle(id); },
         [](const KdDbDatabase& drawing) { return drawing.dimstyle(); }},
        {"layer record", [&](KdDbObjectId id) { return layer->setLinetypeObjectId(id); }, linetype},
        {"dimension style", [&](KdDbObjectId id) { return style->setDimtxsty(id); }, textstyle},
    };
    for (const Setter& setter : setters) {
        EXPECT_EQ(setter.set(setter.own(database())), Kdapi::eOk) << setter.name;
        EXPECT_EQ(setter.set(setter.own(*other_)), Kdapi::eWrongDatabase) << setter.name;
        EXPECT_EQ(setter.set(database().blockTableId()), Kdapi::eNotThatKindOfClass) << setter.name;
        EXPECT_EQ(setter.set({}), Kdapi::eNullObjectId) << setter.name;
    }
    EXPECT_EQ(line->layerId(), database().clayer());
    EXPECT_EQ(std::make_unique<KdDbLine>()->setLayer(other_->clayer()), Kdapi::eOk);
}

TEST_F(ReferencesTest, WhatEntersADrawingRefersToNoOther)
{
    auto foreign = std::make_unique<KdDbLine>();
    foreign->setLayer(other_->clayer());
    EXPECT_EQ(append(std::move(foreign)), Kdapi::eWrongDatabase);

    auto wrongKind = std::make_unique<KdDbLine>();
    wrongKind->setLayer(database().textstyle());
    EXPECT_EQ(append(std::move(wrongKind)), Kdapi::eNotThatKindOfClass);

    auto foreignPart = std::make_unique<KdDb3dPolyline>();
    auto vertex = std::make_unique<KdDbVertex>();
    vertex->setLayer(other_->clayer());
    foreignPart->appendVertex(vertex.release());
    EXPECT_EQ(append(std::move(foreignPart)), Kdapi::eWrongDatabase);

    const KdDbObjectId block = addTo<KdDbBlockTable, KdDbBlockTableRecord>(*other_, L"Theirs");
    EXPECT_EQ(append(std::make_unique<KdDbBlockReference>(KdGePoint3d(), block)),
              Kdapi::eWrongDatabase);
    EXPECT_EQ(append(std::make_unique<KdDbBlockReference>(KdGePoint3d(), database().clayer())),
              Kdapi::eNotThatKindOfClass);

    KdDbLayerTableRecord layer;
    layer.setName(L"Walls");
    layer.setLinetypeObjectId(other_->continuousLinetype());
    KdDbObjectId id;
    EXPECT_EQ(Open<KdDbLayerTable>(database().layerTableId())->add(id, &layer),
              Kdapi::eWrongDatabase);
    EXPECT_TRUE(id.isNull());

    const Open<KdDb3dPolyline> resident(addEntity(new KdDb3dPolyline));
    const auto theirs = std::make_unique<KdDbVertex>();
    theirs->setLayer(other_->clayer());
    EXPECT_EQ(resident->appendVertex(theirs.get()), Kdapi::eWrongDatabase);
    EXPECT_TRUE(resident->vertices().isEmpty());
}

TEST_F(ReferencesTest, ACopyTakesRecordsOfItsNewDrawingByName)
{
    const auto walls = addTo<KdDbLayerTable, KdDbLayerTableRecord>(*other_, L"Walls");
    const auto narrow = addTo<KdDbTextStyleTable, KdDbTextStyleTableRecord>(*other_, L"Narrow");
    const auto dashed = addTo<KdDbLinetypeTable, KdDbLinetypeTableRecord>(*other_, L"Dashed");
    const auto ownWalls = addTo<KdDbLayerTable, KdDbLayerTableRecord>(database(), L"WALLS");
    KdDbText text({0, 0, 0}, L"a", 1.0);
    text.setLayer(walls);
    text.setTextStyle(narrow);
    text.setLinetype(dashed);

    const auto copyText = [&] {
        return std::unique_ptr<KdDbText>(static_cast<KdDbText*>(text.clone()));
    };
    const auto target = copyText();
    const Open<KdDbText> resident(addEntity(copyText().release()));
    for (const KdDbText* entered : {&*resident}) {
        EXPECT_EQ(entered->layerId(), ownWalls);
        EXPECT_EQ(entered->textStyle(), database().textstyle());
        EXPECT_EQ(entered->linetypeId(), database().celtype());
    }
    resident->setLayer(database().clayer());
    EXPECT_EQ(resident->copyFrom(target.get()), Kdapi::eOk);
    EXPECT_EQ(resident->layerId(), ownWalls);
    EXPECT_EQ(target->layerId(), walls);

    auto* const polyline = new KdDb3dPolyline;
    auto* const vertex = new KdDbVertex;
    vertex->setLayer(walls);
    polyline->appendVertex(vertex);
    const std::unique_ptr<KdDb3dPolyline> original(polyline);
    const Open<KdDb3dPolyline> copied(addEntity(static_cast<KdDbEntity*>(original->clone())));
    EXPECT_EQ(copied->vertices()[0]->layerId(), ownWalls);
}

TEST_F(ReferencesTest, ACopiedDimensionGetsGraphicsInItsNewDrawing)
{
    KdDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(kddbOpenObject(space, other_->currentSpaceId(), KdDb::kForWrite), Kdapi::eOk);
    auto* const original = new KdDbAlignedDimension({0, 0, 0}, {4, 0, 0}, {0, 2, 0});
    space->appendKdDbEntity(original);
    original->close();
    space->close();
    const Open<KdDbDimension> copy(addEntity(static_cast<KdDbEntity*>(original->clone())));
    EXPECT_EQ(copy->dimBlockId().database(), &database());
    EXPECT_EQ(copy->dimensionStyle(), database().dimstyle());
    EXPECT_FALSE(original->dimBlockId().isErased());
}

/// The only entity of a block that is of the class.
template <class T>
T* onlyIn(KdDbObjectId block)
{
    std::vector<T*> found;
    for (KdDbEntity* entity :
         ObjectAccess::entities(*ObjectAccess::live<KdDbBlockTableRecord>(block)).each()) {
        if (auto* const wanted = T::cast(entity); wanted && !wanted->isErased())
            found.push_back(wanted);
    }
    EXPECT_EQ(found.size(), 1u);
    return found.empty() ? nullptr : found.front();
}

TEST_F(ReferencesTest, ADeepCopyTakesAlongWhatItNeeds)
{
    // A block with a line, a dimension and a nested block; the drawing has a block of one's name.
    const auto walls = addRecord<KdDbLayerTable, KdDbLayerTableRecord>(L"Walls");
    addRecord<KdDbRegAppTable, KdDbRegAppTableRecord>(L"SHAPES");
    addEntityToBlock(L"Inner", new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 1.0));
    auto* const line = new KdDbLine({0, 0, 0}, {1, 0, 0});
    line->setLayer(walls);
    addEntityToBlock(L"Outer", line);
    addEntityToBlock(L"Outer", new KdDbAlignedDimension({0, 0, 0}, {4, 0, 0}, {0, 2, 0}));
    addEntityToBlock(L"Outer", new KdDbBlockReference(KdGePoint3d(1, 2, 3), blockId(L"Inner")));
    {
        const Open<KdDbLine> writer(line->objectId());
        const std::wstring handle = platform::fromUtf8(traceForm(walls));
        resbuf* const pointing = kdutBuildList(1001, L"SHAPES", 1005, handle.c_str(), 0);
        EXPECT_EQ(writer->setXData(pointing), Kdapi::eOk);
        kdutRelRb(pointing);
        writer->createExtensionDictionary();
    }
    const auto theirs = addTo<KdDbLayerTable, KdDbLayerTableRecord>(*other_, L"WALLS");
    addTo<KdDbBlockTable, KdDbBlockTableRecord>(*other_, L"*D1");
    KdDbDatabase& target = *other_;

    korra::IdMap map;
    korra::deepCopy({blockId(L"Outer")}, *ObjectAccess::object(target.blockTableId()), map);

    const KdDbObjectId outer = target.contents().record(korra::TableKind::block, L"Outer");
    ASSERT_FALSE(outer.isNull());
    EXPECT_EQ(map.at(blockId(L"Outer")), outer);
    const auto* const copiedLine = onlyIn<KdDbLine>(outer);
    EXPECT_EQ(copiedLine->layerId(), theirs);
    EXPECT_EQ(copiedLine->endPoint(), KdGePoint3d(1, 0, 0));
    EXPECT_EQ(copiedLine->extensionDictionary().database(), &target);
    resbuf* const data = copiedLine->xData(L"SHAPES");
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(platform::toUtf8(data->rbnext->resval.rstring), traceForm(theirs));
    kdutRelRb(data);
    const auto* const dimension = onlyIn<KdDbDimension>(outer);
    EXPECT_EQ(dimension->dimBlockId().database(), &target);
    EXPECT_NE(ObjectAccess::live<KdDbBlockTableRecord>(dimension->dimBlockId())->name(), L"*D1");
    EXPECT_EQ(dimension->dimensionStyle(), target.dimstyle());
    const KdDbObjectId inner = onlyIn<KdDbBlockReference>(outer)->blockTableRecord();
    EXPECT_EQ(inner.database(), &target);
    EXPECT_EQ(onlyIn<KdDbCircle>(inner)->radius(), 1.0);
    for (const auto& [source, copy] : map)
        EXPECT_EQ(
            checkReferences(*ObjectAccess::object(copy), target, korra::ForeignNames::refused),
            Kdapi::eOk);

    KdDbDatabase again(false, true); // what was copied is whole in its file, too
    EXPECT_TRUE(korra::readDrawingText(again, korra::drawingText(target), "copied").done);
    EXPECT_EQ(
        onlyIn<KdDbCircle>(again.contents().record(korra::TableKind::block, L"Inner"))->radius(),
        1.0);
}

TEST_F(ReferencesTest, NewRecordsHaveNamesThatFilesAndUsersCanRead)
{
    const std::wstring longest(255, L'n');
    for (const std::wstring& name : {std::wstring(L"Walls 1"), std::wstring(L"*U7"), longest})
        EXPECT_EQ(KdDbLayerTableRecord().setName(name.c_str()), Kdapi::eOk) << name.size();
    std::vector<std::wstring> refused = {L"", longest + L"n", L"a*", L"**"};
    for (const wchar_t character : std::wstring(L"<>/\\\":;?|,=`"))
        refused.push_back(std::wstring(L"a") + character);
    for (const std::wstring& name : refused)
        EXPECT_EQ(KdDbLayerTableRecord().setName(name.c_str()), Kdapi::eInvalidKey) << name.size();
}

TEST_F(ReferencesTest, AnErasedBlockTakesItsEntitiesAlongAndBringsThemBack)
{
    const KdDbObjectId kept = addEntityToBlock(L"B", new KdDbLine);
    const KdDbObjectId gone = addEntityToBlock(L"B", new KdDbLine);
    const KdDbObjectId block = blockId(L"B");
    erase(gone);
    const Open<KdDbObject> record(block);
    ASSERT_EQ(record->erase(), Kdapi::eOk);
    EXPECT_TRUE(kept.isErased());
    ASSERT_EQ(record->erase(false), Kdapi::eOk);
    EXPECT_FALSE(kept.isErased());
    EXPECT_TRUE(gone.isErased()); // it was erased before, by itself
}

} // namespace
} // namespace tests
