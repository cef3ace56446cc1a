// What an entity shows moves with it: matrices that carry boxes to boxes carry its box to its box.

#include "support/host_test.h"
#include "support/modules.h"

#include <numbers>

using namespace tests;

namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2;

KdDbText* alignedText()
{
    auto* entity = new KdDbText({3, 4, 1}, L"Centre line", 2.5, 0.4);
    entity->setHorizontalMode(4);
    entity->setAlignmentPoint({-2, 7, 1});
    return entity;
}

KdDbMText* paragraphs(short attachment)
{
    auto* entity = new KdDbMText;
    entity->setLocation({5, -3, 2});
    entity->setContents(L"Several words that do not go\\Pinto one line");
    entity->setTextHeight(1.5);
    entity->setWidth(12);
    entity->setAttachment(attachment);
    entity->setRotation(0.7);
    return entity;
}

KdGeExtents3d boxOf(const KdDbEntity& entity)
{
    KdDbExtents box;
    EXPECT_EQ(entity.getGeomExtents(box), Kdapi::eOk);
    KdGeExtents3d result;
    result.addPoint(box.minPoint());
    result.addPoint(box.maxPoint());
    return result;
}

class EntityTransformTest : public HostTest {
protected:
    /// Moves an entity by matrices that turn boxes into boxes, one after the other.
    static void expectMoves(KdDbEntity& entity, const std::vector<KdGeMatrix3d>& matrices)
    {
        for (const KdGeMatrix3d& matrix : matrices) {
            SCOPED_TRACE(narrow(entity.isA()->name()) + ", matrix " +
                         std::to_string(&matrix - matrices.data()));
            const KdGeExtents3d before = boxOf(entity);
            KdGeExtents3d expected;
            expected.addPoint(matrix * before.minPoint());
            expected.addPoint(matrix * before.maxPoint());
            ASSERT_EQ(entity.transformBy(matrix), Kdapi::eOk);
            EXPECT_LT(boxOf(entity).minPoint().distanceTo(expected.minPoint()), 1e-9);
            EXPECT_LT(boxOf(entity).maxPoint().distanceTo(expected.maxPoint()), 1e-9);
        }
    }
};

const KdGeMatrix3d kShifted = KdGeMatrix3d::translation({7, -5, 3}) * KdGeMatrix3d::scaling(2.5);
const KdGeMatrix3d kMirrored = KdGeMatrix3d::scaling(KdGeScale3d(-1, 1, 1));
const KdGeMatrix3d kTurned = KdGeMatrix3d::rotation(kQuarterTurn, KdGeVector3d::kZAxis, {1, 2, 0});
const KdGeMatrix3d kTilted = KdGeMatrix3d::rotation(kQuarterTurn, KdGeVector3d::kXAxis);
const KdGeMatrix3d kUpsideDown = KdGeMatrix3d::scaling(KdGeScale3d(1, 1, -1));

TEST_F(EntityTransformTest, TextsMoveInSpaceButKeepTheirShape)
{
    std::vector<std::unique_ptr<KdDbEntity>> entities;
    entities.emplace_back(alignedText());
    for (short attachment = 1; attachment <= 9; ++attachment)
        entities.emplace_back(paragraphs(attachment));
    for (const auto& entity : entities) {
        expectMoves(*entity, {kTurned, kShifted, kMirrored, kTilted, kUpsideDown});
        EXPECT_EQ(entity->transformBy(KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1))),
                  Kdapi::eCannotScaleNonUniformly);
    }
}

TEST_F(EntityTransformTest, PointsGoWhereverTheMatrixTakesThem)
{
    KdDbVertex vertex({1, 2, 3}, 0.5);
    KdDbPoint point({1, 2, 3});
    const KdGeMatrix3d stretched = KdGeMatrix3d::scaling(KdGeScale3d(2, 3, 4));
    expectMoves(vertex, {kTilted, stretched});
    expectMoves(point, {kTilted, stretched});
}

TEST_F(EntityTransformTest, WindowsOfASheetStayUpright)
{
    KdDbViewport window;
    window.setCenterPoint({10, 20, 0});
    window.setWidth(30);
    window.setHeight(20);
    window.setNumber(2);
    expectMoves(window, {kShifted, kMirrored});
}

} // namespace
