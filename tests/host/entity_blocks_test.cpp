#include "host/recording_sink.h"
#include "support/host_test.h"

#include "db/contents.h"
#include "gi/extents_sink.h"

#include <cmath>

using namespace tests;

namespace {

class EntityBlocksTest : public HostTest {
protected:
    KdDbObjectId layer(const wchar_t* name)
    {
        KdDbLayerTable* table = nullptr;
        database().getSymbolTable(table, KdDb::kForWrite);
        auto* record = new KdDbLayerTableRecord;
        record->setName(name);
        KdDbObjectId id;
        table->add(id, record);
        record->close();
        table->close();
        return id;
    }

    static void change(KdDbObjectId layerId, const std::function<void(KdDbLayerTableRecord&)>& how)
    {
        KdDbLayerTableRecord* record = nullptr;
        ASSERT_EQ(kddbOpenObject(record, layerId, KdDb::kForWrite), Kdapi::eOk);
        how(*record);
        record->close();
    }

    static KdDbLine* lineOn(KdDbObjectId layerId, double y)
    {
        auto* line = new KdDbLine(KdGePoint3d(0, y, 0), KdGePoint3d(1, y, 0));
        line->setLayer(layerId);
        return line;
    }

    std::size_t linesShown() const
    {
        RecordingSink sink;
        korra::drawBlockContents(database().currentSpaceId(), sink);
        return sink.segments.size();
    }
};

KdDbExtents extentsOf(const KdDbEntity& entity)
{
    KdDbExtents box;
    EXPECT_EQ(entity.getGeomExtents(box), Kdapi::eOk);
    return box;
}

TEST_F(EntityBlocksTest, TransformedReferenceMovesItsContents)
{
    addEntityToBlock(L"Part", new KdDbLine(KdGePoint3d(1, 2, 3), KdGePoint3d(4, -1, 2)));
    addEntityToBlock(L"Part", new KdDbArc(KdGePoint3d(1, 1, 0), 2.0, 0.3, 2.2));
    const KdGeMatrix3d matrices[] = {KdGeMatrix3d::rotation(1.1, KdGeVector3d(1, 1, 0)),
                                     KdGeMatrix3d::scaling(KdGeScale3d(-1, 1, 1)) *
                                         KdGeMatrix3d::rotation(0.4, KdGeVector3d::kZAxis),
                                     KdGeMatrix3d::scaling(KdGeScale3d(2, 2, -2)),
                                     KdGeMatrix3d::translation({5, 6, 7}) *
                                         KdGeMatrix3d::scaling(3.0)};
    for (const KdGeMatrix3d& matrix : matrices) {
        KdDbBlockReference reference(KdGePoint3d(1, 2, 3), blockId(L"Part"));
        reference.setScaleFactors({2, 3, -1});
        reference.setRotation(0.8);
        const KdGeMatrix3d before = reference.blockTransform();
        ASSERT_EQ(reference.transformBy(matrix), Kdapi::eOk);
        EXPECT_TRUE(reference.blockTransform().isEqualTo(
            matrix * before, KdGeTol().setEqualPoint(1e-9).setEqualVector(1e-9)));
    }
}

TEST_F(EntityBlocksTest, ReferenceTakesStretchingAlongItsAxesOnly)
{
    addEntityToBlock(L"Part", new KdDbLine);
    KdDbBlockReference reference(KdGePoint3d(0, 0, 0), blockId(L"Part"));
    const KdGeMatrix3d stretch = KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1));
    EXPECT_EQ(reference.transformBy(stretch), Kdapi::eOk);
    EXPECT_DOUBLE_EQ(reference.scaleFactors().sx, 2.0);
    reference.setRotation(0.5);
    EXPECT_EQ(reference.transformBy(stretch), Kdapi::eCannotScaleNonUniformly);
    EXPECT_DOUBLE_EQ(reference.rotation(), 0.5);
}

TEST_F(EntityBlocksTest, NestedExtentsAreExactUnderTurnsAndUnequalScales)
{
    addEntityToBlock(L"Ring", new KdDbCircle(KdGePoint3d(1, 0, 0), KdGeVector3d::kZAxis, 2.0));
    auto* inner = new KdDbBlockReference(KdGePoint3d(5, 0, 0), blockId(L"Ring"));
    inner->setScaleFactors({3, 1, 1});
    addEntityToBlock(L"Outer", inner);
    KdDbBlockReference outer(KdGePoint3d(10, 20, 0), blockId(L"Outer"));
    outer.setRotation(0.6);

    const KdDbExtents box = extentsOf(outer);
    // The ring becomes an ellipse of half axes 6 and 2 about (8, 0), turned by 0.6.
    const double c = std::cos(0.6);
    const double s = std::sin(0.6);
    EXPECT_NEAR(box.maxPoint().x, 10 + 8 * c + std::hypot(6 * c, 2 * s), 1e-12);
    EXPECT_NEAR(box.minPoint().y, 20 + 8 * s - std::hypot(6 * s, 2 * c), 1e-12);
}

TEST_F(EntityBlocksTest, EmptyReferenceHasNoExtents)
{
    addEntityToBlock(L"Part", new KdDbBlockReference(KdGePoint3d(), KdDbObjectId()));
    const KdDbBlockReference reference(KdGePoint3d(0, 0, 0), blockId(L"Part"));
    KdDbExtents box({1, 1, 1}, {2, 2, 2});
    EXPECT_EQ(reference.getGeomExtents(box), Kdapi::eInvalidExtents);
    EXPECT_EQ(box.maxPoint().x, 2.0);
}

TEST_F(EntityBlocksTest, LayersHideWhatLiesOnThem)
{
    const KdDbObjectId zero = database().contents().record(korra::TableKind::layer, L"0");
    const KdDbObjectId own = layer(L"Own");
    const KdDbObjectId references = layer(L"References");
    addEntityToBlock(L"Part", lineOn(zero, 1));
    addEntityToBlock(L"Part", lineOn(own, 2));
    auto* reference = new KdDbBlockReference(KdGePoint3d(0, 0, 0), blockId(L"Part"));
    reference->setLayer(references);
    addEntity(reference);
    addEntity(lineOn(zero, 3));
    EXPECT_EQ(linesShown(), 3u);

    change(references, [](auto& record) { record.setIsOff(true); });
    EXPECT_EQ(linesShown(), 2u); // what is on "0" inside follows the reference, "Own" does not
    change(references, [](auto& record) { record.setIsOff(false); });
    change(references, [](auto& record) { record.setIsFrozen(true); });
    EXPECT_EQ(linesShown(), 1u);
    change(references, [](auto& record) { record.setIsFrozen(false); });
    change(own, [](auto& record) { record.setIsFrozen(true); });
    EXPECT_EQ(linesShown(), 2u);
}

TEST_F(EntityBlocksTest, InvisibleEntitiesAndErasedOnesAreNotDrawn)
{
    const KdDbObjectId first = addEntity(new KdDbLine(KdGePoint3d(), KdGePoint3d(1, 0, 0)));
    const KdDbObjectId second = addEntity(new KdDbLine(KdGePoint3d(), KdGePoint3d(0, 1, 0)));
    KdDbEntity* entity = nullptr;
    ASSERT_EQ(kddbOpenObject(entity, first, KdDb::kForWrite), Kdapi::eOk);
    entity->setVisibility(KdDb::kInvisible);
    entity->close();
    EXPECT_EQ(linesShown(), 1u);
    ASSERT_EQ(kddbOpenObject(entity, second, KdDb::kForWrite), Kdapi::eOk);
    entity->erase();
    entity->close();
    EXPECT_EQ(linesShown(), 0u);
}

TEST_F(EntityBlocksTest, AttributesShowTheirTextAndTemplatesOnlyOutsideReferences)
{
    addEntityToBlock(L"Title", new KdDbAttributeDefinition({0, 0, 0}, L"default", L"TAG", L"?", 2));
    auto* reference = new KdDbBlockReference(KdGePoint3d(10, 0, 0), blockId(L"Title"));
    addEntity(reference);
    ASSERT_EQ(kddbOpenObject(reference, reference->objectId(), KdDb::kForWrite), Kdapi::eOk);
    KdDbObjectId attributeId;
    auto* attribute = new KdDbAttribute({10, 0, 0}, L"shown", L"TAG", 2);
    ASSERT_EQ(reference->appendAttribute(attributeId, attribute), Kdapi::eOk);
    attribute->close();
    ASSERT_EQ(reference->transformBy(KdGeMatrix3d::translation({0, 5, 0})), Kdapi::eOk);
    reference->close();

    const RecordingSink inReference = drawn(*reference);
    ASSERT_EQ(inReference.texts.size(), 1u);
    EXPECT_EQ(inReference.texts[0].text, L"shown");
    EXPECT_TRUE(attribute->position().isEqualTo({10, 5, 0}));

    RecordingSink definition;
    korra::drawBlockContents(blockId(L"Title"), definition);
    ASSERT_EQ(definition.texts.size(), 1u);
    EXPECT_EQ(definition.texts[0].text, L"TAG");

    std::unique_ptr<KdDbObjectIterator> iterator(reference->attributeIterator());
    ASSERT_FALSE(iterator->done());
    EXPECT_EQ(iterator->objectId(), attributeId);
    iterator->step();
    EXPECT_TRUE(iterator->done());
}

TEST_F(EntityBlocksTest, ABlockThatContainsItselfStillEnds)
{
    addEntityToBlock(L"Loop", new KdDbLine(KdGePoint3d(), KdGePoint3d(1, 0, 0)));
    // Only a damaged drawing has this: appending refuses it.
    auto* record = korra::ObjectAccess::live<KdDbBlockTableRecord>(blockId(L"Loop"));
    auto* inside = new KdDbBlockReference(KdGePoint3d(1, 0, 0), blockId(L"Loop"));
    const KdDbObjectId id =
        korra::ObjectAccess::adopt(database(), inside, blockId(L"Loop"), {}, false);
    korra::ObjectAccess::entities(*record).push_back(id);

    korra::ExtentsSink sink;
    korra::drawBlockContents(blockId(L"Loop"), sink);
    EXPECT_GT(sink.extents().maxPoint().x, 50.0);
}

} // namespace
