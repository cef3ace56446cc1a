#include "host/recording_sink.h"
#include "support/ge_samples.h"
#include "support/room_test.h"

#include "blocks/draw_block.h"
#include "objects/contents.h"

#include <cmath>

namespace {

class EntityBlocksTest : public HostTest {
protected:
    static KdDbLine* lineOn(KdDbObjectId layerId)
    {
        auto* line = new KdDbLine({0, 0, 0}, {1, 0, 0});
        line->setLayer(layerId);
        return line;
    }

    std::size_t linesShown() const
    {
        return drawnBlock(database().currentSpaceId()).segments.size();
    }
};

TEST_F(EntityBlocksTest, TransformedReferenceMovesItsContents)
{
    addEntityToBlock(L"Part", new KdDbLine);
    for (const KdGeMatrix3d& matrix : similarities()) {
        KdDbBlockReference reference({1, 2, 3}, blockId(L"Part"));
        reference.setScaleFactors({2, 3, -1});
        reference.setRotation(0.8);
        const KdGeMatrix3d expected = matrix * reference.blockTransform();
        ASSERT_EQ(reference.transformBy(matrix), Kdapi::eOk);
        EXPECT_TRUE(reference.blockTransform().isEqualTo(expected, KdGeTol().setEqualPoint(1e-8)));
    }

    // Stretching is taken along its axes only.
    KdDbBlockReference reference({0, 0, 0}, blockId(L"Part"));
    const KdGeMatrix3d stretch = KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1));
    EXPECT_EQ(reference.transformBy(stretch), Kdapi::eOk);
    EXPECT_DOUBLE_EQ(reference.scaleFactors().sx, 2.0);
    reference.setRotation(0.5);
    EXPECT_EQ(reference.transformBy(stretch), Kdapi::eCannotScaleNonUniformly);
}

TEST_F(EntityBlocksTest, NestedExtentsAreExactUnderTurnsAndUnequalScales)
{
    addEntityToBlock(L"Ring", new KdDbCircle(KdGePoint3d(1, 0, 0), KdGeVector3d::kZAxis, 2.0));
    auto* inner = new KdDbBlockReference({5, 0, 0}, blockId(L"Ring"));
    inner->setScaleFactors({3, 1, 1});
    addEntityToBlock(L"Outer", inner);
    KdDbBlockReference outer({10, 20, 0}, blockId(L"Outer"));
    outer.setRotation(0.6);
    KdDbExtents box;
    ASSERT_EQ(outer.getGeomExtents(box), Kdapi::eOk);
    // The ring becomes an ellipse of half axes 6 and 2 about (8, 0), turned by 0.6.
    const double c = std::cos(0.6);
    const double s = std::sin(0.6);
    EXPECT_NEAR(box.maxPoint().x, 10 + 8 * c + std::hypot(6 * c, 2 * s), 1e-12);
    EXPECT_NEAR(box.minPoint().y, 20 + 8 * s - std::hypot(6 * s, 2 * c), 1e-12);

    box.addPoint({99, 0, 0});
    EXPECT_EQ(box.maxPoint().x, 99);

    addEntityToBlock(L"Empty", new KdDbBlockReference(KdGePoint3d(), KdDbObjectId()));
    const KdDbBlockReference empty({0, 0, 0}, blockId(L"Empty"));
    EXPECT_EQ(empty.getGeomExtents(box), Kdapi::eInvalidExtents);
}

TEST_F(EntityBlocksTest, WhatIsErasedInvisibleOrOnHiddenLayersIsNotDrawn)
{
    const KdDbObjectId zero = database().contents().record(korra::TableKind::layer, L"0");
    const KdDbObjectId own = addLayer(L"Own");
    const KdDbObjectId references = addLayer(L"References");
    addEntityToBlock(L"Part", lineOn(zero));
    addEntityToBlock(L"Part", lineOn(own));
    auto* reference = new KdDbBlockReference({0, 0, 0}, blockId(L"Part"));
    reference->setLayer(references);
    addEntityToBlock(L"Whole", reference);
    addEntity(new KdDbBlockReference({0, 0, 0}, blockId(L"Whole")));
    const KdDbObjectId line = addEntity(lineOn(zero));
    EXPECT_EQ(linesShown(), 3u);

    using Layer = Open<KdDbLayerTableRecord>;
    Layer(references)->setIsOff(true);
    EXPECT_EQ(linesShown(), 2u); // what is on "0" follows the reference around it, "Own" does not
    Layer(references)->setIsFrozen(true);
    EXPECT_EQ(linesShown(), 1u);
    const auto dashed = addRecord<KdDbLinetypeTable, KdDbLinetypeTableRecord>(L"Dashed");
    Layer(zero)->setLinetypeObjectId(dashed);
    RecordingSink shown;
    korra::drawEntity(*Open<KdDbEntity>(line), shown);
    EXPECT_EQ(shown.segments.at(0).traits.linetype, dashed);
    Open<KdDbEntity>(line)->setVisibility(KdDb::kInvisible);
    EXPECT_EQ(linesShown(), 0u);
    Open<KdDbEntity>(line)->setVisibility(KdDb::kVisible);
    EXPECT_EQ(linesShown(), 1u);
    erase(line);
    EXPECT_EQ(linesShown(), 0u);
}

TEST_F(EntityBlocksTest, AttributesShowTheirTextAndTemplatesOnlyOutsideReferences)
{
    addEntityToBlock(L"Title", new KdDbAttributeDefinition({0, 0, 0}, L"default", L"TAG", L"?", 2));
    auto* attribute = new KdDbAttribute({10, 0, 0}, L"shown", L"TAG", 2);
    const Open<KdDbBlockReference> reference(
        addEntity(new KdDbBlockReference({10, 0, 0}, blockId(L"Title"))));
    KdDbObjectId attributeId;
    ASSERT_EQ(reference->appendAttribute(attributeId, attribute), Kdapi::eOk);
    attribute->close();
    ASSERT_EQ(reference->transformBy(KdGeMatrix3d::translation({0, 5, 0})), Kdapi::eOk);
    EXPECT_TRUE(attribute->position().isEqualTo({10, 5, 0}));

    EXPECT_EQ(drawn(*reference).texts.size(), 1u);
    EXPECT_EQ(drawn(*reference).texts.at(0).text, L"shown");
    EXPECT_EQ(drawnBlock(blockId(L"Title")).texts.at(0).text, L"TAG");
}

} // namespace
