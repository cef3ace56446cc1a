// What objects refer to and own: other drawings, names of records, erasing and copies.

#include "support/room_test.h"

#include "objects/contents.h"
#include "objects/deep_copy.h"
#include "objects/references.h"

#include <memory>

using korra::ObjectAccess;

namespace {

class ReferencesTest : public HostTest {
protected:
    std::unique_ptr<KdDbDatabase> other_ = std::make_unique<KdDbDatabase>(true, true);
};

TEST_F(ReferencesTest, SettersTakeWhatIsInTheDrawingAndOfTheKind)
{
    const Open<KdDbLine> line(addEntity(new KdDbLine));
    const Open<KdDbText> text(addEntity(new KdDbText));
    const Open<KdDbMText> mtext(addEntity(new KdDbMText));
    const Open<KdDbDimension> dimension(addEntity(new KdDbAlignedDimension));
    const Open<KdDbLayerTableRecord> layer(database().clayer());
    const Open<KdDbDimStyleTableRecord> style(database().dimstyle());

    struct {
        const char* name;
        std::function<Kdapi::ErrorStatus(KdDbObjectId)> set;
        KdDbObjectId (KdDbDatabase::*own)() const;
    } const setters[] = {
        {"layer", [&](auto id) { return line->setLayer(id); }, &KdDbDatabase::clayer},
        {"linetype", [&](auto id) { return line->setLinetype(id); }, &KdDbDatabase::celtype},
        {"text", [&](auto id) { return text->setTextStyle(id); }, &KdDbDatabase::textstyle},
        {"mtext", [&](auto id) { return mtext->setTextStyle(id); }, &KdDbDatabase::textstyle},
        {"style", [&](auto id) { return dimension->setDimensionStyle(id); },
         &KdDbDatabase::dimstyle},
        {"of a layer", [&](auto id) { return layer->setLinetypeObjectId(id); },
         &KdDbDatabase::celtype},
        {"of a style", [&](auto id) { return style->setDimtxsty(id); }, &KdDbDatabase::textstyle},
        {"current", [&](auto id) { return database().setClayer(id); }, &KdDbDatabase::clayer},
    };

    for (const auto& [name, set, own] : setters) {
        EXPECT_EQ(set((database().*own)()), Kdapi::eOk) << name;
        EXPECT_EQ(set((*other_.*own)()), Kdapi::eWrongDatabase) << name;
        EXPECT_EQ(set(database().blockTableId()), Kdapi::eNotThatKindOfClass) << name;
        EXPECT_EQ(set({}), Kdapi::eNullObjectId) << name;
    }
    EXPECT_EQ(line->layerId(), database().clayer());
    const Open<KdDbViewportTableRecord> tile(
        database().contents().record(korra::TableKind::viewport, L"*Active"));
    EXPECT_EQ(tile->setUcs(other_->clayer()), Kdapi::eWrongDatabase);
    EXPECT_EQ(KdDbLine().setLayer(other_->clayer()), Kdapi::eOk);
}

TEST_F(ReferencesTest, WhatEntersADrawingRefersToNoOther)
{
    const KdDbObjectId block =
        addRecord<KdDbBlockTable, KdDbBlockTableRecord>(L"Theirs", other_.get());
    KdDbLine foreign, wrongKind;
    foreign.setLayer(other_->clayer());
    wrongKind.setLayer(database().textstyle());
    KdDb3dPolyline foreignPart;
    auto vertex = std::make_unique<KdDbVertex>();
    vertex->setLayer(other_->clayer());
    foreignPart.appendVertex(vertex.release());
    KdDbBlockReference foreignBlock({0, 0, 0}, block);

    const auto append = [&](KdDbEntity& entity) {
        return Open<KdDbBlockTableRecord>(database().currentSpaceId())->appendKdDbEntity(&entity);
    };
    EXPECT_EQ(append(foreign), Kdapi::eWrongDatabase);
    EXPECT_EQ(append(foreignPart), Kdapi::eWrongDatabase);
    EXPECT_EQ(append(foreignBlock), Kdapi::eWrongDatabase);
    EXPECT_EQ(append(wrongKind), Kdapi::eNotThatKindOfClass);

    KdDbLayerTableRecord layer;
    layer.setName(L"Walls");
    layer.setLinetypeObjectId(other_->continuousLinetype());
    KdDbObjectId id;
    EXPECT_EQ(Open<KdDbLayerTable>(database().layerTableId())->add(id, &layer),
              Kdapi::eWrongDatabase);

    const Open<KdDb3dPolyline> resident(addEntity(new KdDb3dPolyline));
    KdDbVertex theirs;
    theirs.setLayer(other_->clayer());
    EXPECT_EQ(resident->appendVertex(&theirs), Kdapi::eWrongDatabase);
    EXPECT_TRUE(resident->vertices().isEmpty());
}

TEST_F(ReferencesTest, ACopyTakesRecordsOfItsNewDrawingByName)
{
    const auto walls = addLayer(L"Walls", other_.get());
    const auto narrow = addTextStyle(L"Narrow", other_.get());
    const auto dashed =
        addRecord<KdDbLinetypeTable, KdDbLinetypeTableRecord>(L"Dashed", other_.get());
    const auto ownWalls = addLayer(L"WALLS");
    KdDbText text({0, 0, 0}, L"a", 1.0);
    text.setLayer(walls);
    text.setTextStyle(narrow);
    text.setLinetype(dashed);

    const Open<KdDbText> resident(addEntity(static_cast<KdDbText*>(text.clone())));
    EXPECT_EQ(resident->layerId(), ownWalls);
    EXPECT_EQ(resident->textStyle(), database().textstyle());
    EXPECT_EQ(resident->linetypeId(), database().celtype());
    const Open<KdDbText> taking(addEntity(new KdDbText));
    EXPECT_EQ(taking->copyFrom(&text), Kdapi::eOk);
    EXPECT_EQ(taking->layerId(), ownWalls);

    KdDb3dPolyline polyline;
    auto* const vertex = new KdDbVertex;
    vertex->setLayer(walls);
    polyline.appendVertex(vertex);
    const Open<KdDb3dPolyline> copied(addEntity(static_cast<KdDbEntity*>(polyline.clone())));
    EXPECT_EQ(copied->vertices()[0]->layerId(), ownWalls);
}

TEST_F(ReferencesTest, ADeepCopyTakesAlongWhatItNeeds)
{
    const auto walls = addLayer(L"Walls");
    const auto circle =
        addEntityToBlock(L"Inner", new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 1.0));
    addEntityToBlock(L"Outer", new KdDbBlockReference(KdGePoint3d(1, 2, 3), blockId(L"Inner")));
    const auto dimension =
        addEntityToBlock(L"Outer", new KdDbAlignedDimension({0, 0, 0}, {4, 0, 0}, {0, 2, 0}));
    Open<KdDbLine>(addEntityToBlock(L"Outer", new KdDbLine))->setLayer(walls);
    // As the dimension's graphics here.
    addRecord<KdDbBlockTable, KdDbBlockTableRecord>(L"*D1", other_.get());
    const auto theirs = addLayer(L"WALLS", other_.get());

    korra::IdMap map;
    korra::deepCopy({blockId(L"Outer")}, *ObjectAccess::object(other_->blockTableId()), map);
    EXPECT_EQ(map.at(walls), theirs);
    EXPECT_FALSE(other_->contents().record(korra::TableKind::block, L"Inner").isNull());
    EXPECT_EQ(map.at(circle).database(), other_.get());
    const auto graphics = ObjectAccess::live<KdDbDimension>(map.at(dimension))->dimBlockId();
    EXPECT_NE(ObjectAccess::live<KdDbBlockTableRecord>(graphics)->name(), L"*D1");
    for (const auto& [source, copy] : map)
        EXPECT_EQ(
            checkReferences(*ObjectAccess::object(copy), *other_, korra::ForeignNames::refused),
            Kdapi::eOk);
}

TEST_F(ReferencesTest, NewRecordsHaveNamesThatFilesAndUsersCanRead)
{
    const std::wstring longest(255, L'n');
    for (const std::wstring& name : {std::wstring(L"Walls 1"), std::wstring(L"*U7"), longest})
        EXPECT_EQ(KdDbLayerTableRecord().setName(name.c_str()), Kdapi::eOk) << name.size();
    EXPECT_EQ(KdDbLayerTableRecord().setName((longest + L"n").c_str()), Kdapi::eInvalidKey);
    for (const wchar_t character : std::wstring(L"<>/\\\":;?|,=`*"))
        EXPECT_EQ(KdDbLayerTableRecord().setName((std::wstring(L"a") + character).c_str()),
                  Kdapi::eInvalidKey);
}

} // namespace
