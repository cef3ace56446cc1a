// What an entity shows moves with it: matrices that carry boxes to boxes carry its box to its box.

#include "dxf_samples.h"
#include "support/ge_samples.h"

namespace {

class EntityTransformTest : public HostTest {
protected:
    /// Moves an entity by matrices that turn boxes into boxes, one after the other.
    static void expectMoves(KdDbEntity& entity, const std::vector<KdGeMatrix3d>& matrices)
    {
        for (const KdGeMatrix3d& matrix : matrices) {
            SCOPED_TRACE(narrow(entity.isA()->name()) + ", matrix " +
                         std::to_string(&matrix - matrices.data()));
            KdDbExtents before, after;
            EXPECT_EQ(entity.getGeomExtents(before), Kdapi::eOk);
            ASSERT_EQ(entity.transformBy(matrix), Kdapi::eOk);
            EXPECT_EQ(entity.getGeomExtents(after), Kdapi::eOk);
            KdGeExtents3d expected;
            expected.addPoint(matrix * before.minPoint());
            expected.addPoint(matrix * before.maxPoint());
            EXPECT_LT(after.minPoint().distanceTo(expected.minPoint()), 1e-9);
            EXPECT_LT(after.maxPoint().distanceTo(expected.maxPoint()), 1e-9);
        }
    }
};

const KdGeMatrix3d kShifted = KdGeMatrix3d::translation({7, -5, 3}) * KdGeMatrix3d::scaling(2.5);
const KdGeMatrix3d kMirrored = KdGeMatrix3d::scaling(KdGeScale3d(-1, 1, 1));
const KdGeMatrix3d kTurned = KdGeMatrix3d::rotation(kPi / 2, KdGeVector3d::kZAxis, {1, 2, 0});
const KdGeMatrix3d kTilted = KdGeMatrix3d::rotation(kPi / 2, KdGeVector3d::kXAxis);
const KdGeMatrix3d kUpsideDown = KdGeMatrix3d::scaling(KdGeScale3d(1, 1, -1));
const KdGeMatrix3d kStretched = KdGeMatrix3d::scaling(KdGeScale3d(2, 3, 4));

TEST_F(EntityTransformTest, TextsMoveInSpaceButKeepTheirShape)
{
    KdDbText line({3, 4, 1}, L"Centre line", 2.5, 0.4);
    line.setHorizontalMode(4);
    line.setAlignmentPoint({-2, 7, 1});
    KdDbMText paragraphs;
    paragraphs.setLocation({5, -3, 2});
    paragraphs.setContents(L"Several words that do not go\\Pinto one line");
    paragraphs.setTextHeight(1.5);
    paragraphs.setWidth(12);
    paragraphs.setAttachment(6);
    paragraphs.setRotation(0.7);
    for (KdDbEntity* entity : std::initializer_list<KdDbEntity*>{&line, &paragraphs}) {
        expectMoves(*entity, {kTurned, kShifted, kMirrored, kTilted, kUpsideDown});
        EXPECT_EQ(entity->transformBy(kStretched), Kdapi::eCannotScaleNonUniformly);
    }
}

TEST_F(EntityTransformTest, RowsAndColumnsOfAReferenceKeepTheirDistances)
{
    const auto drawing = dxf::readWhole(dxf::file(
        "0 SECTION; 2 BLOCKS; 0 BLOCK; 2 B; 0 LINE; 10 0; 20 0; 11 1; 21 1; 0 ENDBLK; 0 ENDSEC\n"
        "0 SECTION; 2 ENTITIES; 0 INSERT; 5 A; 2 B; 70 2; 71 3; 44 7; 45 8; 0 ENDSEC; 0 EOF\n"));
    dxf::changeObject<KdDbBlockReference>(*drawing, 0xA, [](auto& each) {
        expectMoves(each, {kShifted, kMirrored, kTurned});
    });
}

TEST_F(EntityTransformTest, WindowsOfASheetStayUpright)
{
    const std::unique_ptr<KdDbViewport> window(newWindow(2, {10, 20, 0}, 30, 20, 20));
    expectMoves(*window, {kShifted, kMirrored});
}

} // namespace
