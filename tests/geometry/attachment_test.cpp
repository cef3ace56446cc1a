#include "orvex/attachment.h"

#include "support/ge_samples.h"
#include "support/room_test.h"

#include <cmath>

namespace {

constexpr double kUntouched = 99.0;

struct Attached {
    bool found = false;
    KdGePoint3d point{kUntouched, 0, 0};
    double angle = kUntouched;
};

Attached attach(KdDbObjectId id, const KdGePoint3d& pickPoint,
                const KdGeMatrix3d& xform = KdGeMatrix3d::kIdentity)
{
    Attached made;
    made.found = GetAttachedParam(made.point, made.angle, id, xform, pickPoint);
    return made;
}

class AttachmentTest : public HostTest {
protected:
    /// Expects the nearest point, and the direction that has the pick point on its left.
    static void expectAt(const Attached& made, const KdGePoint3d& point, double angle)
    {
        EXPECT_TRUE(made.found);
        EXPECT_NEAR(made.point.distanceTo(point), 0, 1e-12);
        EXPECT_NEAR(made.angle, angle, 1e-12);
    }

    /// A block with a line and a circle in a block of its own, inserted with two attributes.
    struct Nested {
        KdDbObjectId line, circle, inner, outer, first, second;
    };

    static Nested nested()
    {
        Nested made;
        made.circle = addEntityToBlock(L"NUT", new KdDbCircle({1, 0, 0}, KdGeVector3d::kZAxis, 2));
        made.line = addEntityToBlock(L"BOLT", new KdDbLine({0, 0, 0}, {5, 0, 0}));
        auto* const inner = new KdDbBlockReference({10, 0, 0}, blockId(L"NUT"));
        inner->setRotation(kPi / 2);
        made.inner = addEntityToBlock(L"BOLT", inner);
        auto* const outer = new KdDbBlockReference({0, 100, 0}, blockId(L"BOLT"));
        outer->setScaleFactors(KdGeScale3d(2, 2, 2));
        made.outer = addEntity(outer);
        const Open<KdDbBlockReference> reference(made.outer);
        for (KdDbObjectId* id : {&made.first, &made.second}) {
            auto* const attribute = new KdDbAttribute;
            reference->appendAttribute(*id, attribute);
            attribute->close();
        }
        return made;
    }
};

TEST_F(AttachmentTest, TransformsAreMultipliedOnTheWayToTheTarget)
{
    const Nested made = nested();
    const auto transformOf = [](KdDbObjectId id) {
        return Open<KdDbBlockReference>(id, KdDb::kForRead)->blockTransform();
    };
    const KdGeMatrix3d begin = KdGeMatrix3d::rotation(0.3, {1, 2, 3});
    const KdGeMatrix3d outer = begin * transformOf(made.outer);
    const std::pair<KdDbObjectId, KdGeMatrix3d> targets[] = {
        {made.first, outer},
        {made.second, outer},
        {made.line, outer},
        {made.inner, outer},
        {made.circle, outer * transformOf(made.inner)}};
    for (const auto& [target, expected] : targets) {
        KdGeMatrix3d xform = begin;
        EXPECT_TRUE(GetComplexEntTransform(made.outer, target, xform));
        EXPECT_TRUE(xform.isEqualTo(expected));
    }
    const KdDbObjectId elsewhere = addLines(1)[0];
    for (const KdDbObjectId container : {made.outer, made.line, KdDbObjectId()}) {
        KdGeMatrix3d xform = begin;
        EXPECT_FALSE(GetComplexEntTransform(container, elsewhere, xform));
        EXPECT_EQ(xform, begin);
        EXPECT_TRUE(GetComplexEntTransform(container, container, xform));
        EXPECT_EQ(xform, KdGeMatrix3d::kIdentity);
    }
    KdGeMatrix3d xform = begin;
    EXPECT_TRUE(GetComplexEntTransform(made.outer, KdDbObjectId(), xform));
    EXPECT_EQ(xform, KdGeMatrix3d::kIdentity);
}

TEST_F(AttachmentTest, AReferenceIsMadeOfAttributesAndOfWhatNestedOnesAreMadeOf)
{
    const Nested made = nested();
    addEntityToBlock(L"BOLT", new KdDbBlockReference({0, 0, 0}, blockId(L"NUT")));
    const Open<KdDbLine> unreadable(addEntityToBlock(L"BOLT", new KdDbLine));
    KdArray<KdDbObjectId> ids = arrayOf({made.outer});
    const Open<KdDbBlockReference> reference(made.outer, KdDb::kForRead);
    EXPECT_TRUE(GetSubIdsFromBlockRef(reference.get(), ids));
    EXPECT_EQ(ids,
              arrayOf({made.outer, made.first, made.second, made.line, made.circle, made.circle}));
    EXPECT_TRUE(GetSubIdsFromBlockRef(nullptr, ids));
}

TEST_F(AttachmentTest, LinesCirclesAndArcsGiveTheNearestPointWithThePickOnTheLeft)
{
    const auto line = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    expectAt(attach(line, {4, 3, 0}), {4, 0, 0}, 0);
    expectAt(attach(line, {4, -3, 0}), {4, 0, 0}, kPi);
    expectAt(attach(line, {40, 3, 7}), {40, 0, 0}, kPi);
    const KdGeMatrix3d turned = KdGeMatrix3d::rotation(kPi / 2, KdGeVector3d::kZAxis);
    expectAt(attach(line, {-1, 4, 0}, turned), {0, 4, 0}, kPi / 2);
    const auto nothing = addEntity(new KdDbLine({1, 2, 0}, {1, 2, 0}));
    expectAt(attach(nothing, {5, 2, 0}), {1, 2, 0}, 0);

    const auto circle = addEntity(new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 5));
    expectAt(attach(circle, {0, 10, 0}), {0, 5, 0}, 0);
    expectAt(attach(circle, {0, 1, 0}), {0, 5, 0}, kPi);
    expectAt(attach(circle, {30, 0, 0}, KdGeMatrix3d::scaling(2)), {10, 0, 0}, 3 * kPi / 2);

    const auto arc = addEntity(new KdDbArc({0, 0, 0}, 1, 0, kPi / 2));
    const auto at = [](double angle) { return KdGePoint3d(std::cos(angle), std::sin(angle), 0); };
    expectAt(attach(arc, KdGePoint3d() + at(0.5).asVector() * 0.5), at(0.5), 0.5 + kPi / 2);
    expectAt(attach(arc, KdGePoint3d() + at(1).asVector() * 4), at(1), 1 + 3 * kPi / 2);
    expectAt(attach(arc, {2, -0.2, 0}), {1, 0, 0}, 3 * kPi / 2);
    expectAt(attach(arc, {-1, 2.2, 0}), {0, 1, 0}, 0);
    expectAt(attach(arc, {-1, -1.01, 0}), {1, 0, 0}, kPi / 2);
    expectAt(attach(arc, {-1.01, -1, 0}), {0, 1, 0}, kPi);
}

TEST_F(AttachmentTest, PolylinesAttachByTheirNearestSegmentAndOtherKindsNotAtAll)
{
    const auto id = addEntity(newPolyline({{0, 0}, {10, 0, 1}, {10, 4}, {0, 4}}));
    expectAt(attach(id, {13, 2, 0}), {12, 2, 0}, 3 * kPi / 2);
    expectAt(attach(id, {3, 5, 0}), {3, 4, 0}, 0);
    expectAt(attach(id, {3, 1, 0}), {3, 0, 0}, 0);
    const KdGeMatrix3d doubled = KdGeMatrix3d::scaling(2);
    expectAt(attach(id, {26, 4, 0}, doubled), {24, 4, 0}, 3 * kPi / 2);

    const Attached empty = attach(addEntity(new KdDbPolyline), {1, 1, 0});
    EXPECT_TRUE(empty.found);
    EXPECT_EQ(empty.point, KdGePoint3d::kOrigin);
    EXPECT_EQ(empty.angle, kUntouched);
    for (const KdDbObjectId other :
         {addEntity(new KdDbEllipse({0, 0, 0}, KdGeVector3d::kZAxis, {8, 0, 0}, 0.5)),
          drawing()->layerTableId(), KdDbObjectId()}) {
        const Attached made = attach(other, {1, 1, 0});
        EXPECT_FALSE(made.found);
        EXPECT_EQ(made.point, KdGePoint3d(kUntouched, 0, 0));
        EXPECT_EQ(made.angle, kUntouched);
    }
}

} // namespace
