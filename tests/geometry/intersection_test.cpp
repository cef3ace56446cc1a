#include "orvex/intersection.h"

#include "support/ge_samples.h"
#include "support/room_test.h"

#include <memory>

namespace {

using Points = std::vector<KdGePoint3d>;

class IntersectionTest : public HostTest {
protected:
    /// The points of a list, each a record of the right type, after as many as were counted.
    static Points common(KdDbObjectId first, KdDbObjectId second)
    {
        kds_name names[2] = {};
        kddbGetKdsName(names[0], first);
        kddbGetKdsName(names[1], second);
        resbuf* list = nullptr;
        const int count = kds_intersect(names[0], names[1], &list);
        Points points;
        for (const resbuf* record = list; record; record = record->rbnext) {
            EXPECT_EQ(record->restype, RT3DPOINT);
            const double* const at = record->resval.rpoint;
            points.emplace_back(at[0], at[1], at[2]);
        }
        EXPECT_EQ(static_cast<std::size_t>(count), points.size());
        kdutRelRb(list);
        return points;
    }

    static void expectPoints(const Points& actual, const Points& expected)
    {
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_LE(actual[i].distanceTo(expected[i]), 1e-12) << "point " << i;
    }
};

} // namespace

TEST_F(IntersectionTest, PointsFollowTheFirstEntityAndLieOnIt)
{
    const auto line = addEntity(new KdDbLine({9, 0, 5}, {-9, 0, 5}));
    const auto circle = addEntity(new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 4));
    expectPoints(common(line, circle), {{4, 0, 5}, {-4, 0, 5}}); // one above the other
    expectPoints(common(circle, line), {{4, 0, 0}, {-4, 0, 0}});

    // A standing circle shows itself whole along its normal, to others edge-on.
    const auto standing = addEntity(new KdDbCircle({0, 7, 0}, -KdGeVector3d::kYAxis, 5));
    const auto chord = addEntity(new KdDbLine({-9, 0, 3}, {9, 0, 3}));
    expectPoints(common(standing, chord), {{4, 7, 3}, {-4, 7, 3}});
    expectPoints(common(chord, standing), {});
    const auto above = addEntity(new KdDbLine({-9, 7, 8}, {9, 7, 8}));
    expectPoints(common(above, standing), {{-5, 7, 8}, {5, 7, 8}});
    expectPoints(common(addEntity(new KdDbLine({3, 0, 0}, {3, 9, 0})), standing), {{3, 7, 0}});
}

TEST_F(IntersectionTest, AnEmptyAnswerLeavesTheListAsItIs)
{
    const auto line = addEntity(new KdDbLine({0, 0, 0}, {9, 0, 0}));
    const auto parallel = addEntity(new KdDbLine({0, 1, 0}, {9, 1, 0}));
    expectPoints(common(line, parallel), {});
    const auto across = addEntity(new KdDbLine({3, -1, 0}, {3, 1, 0}));
    expectPoints(common(line, across), {{3, 0, 0}});

    kds_name names[2] = {};
    kddbGetKdsName(names[0], line);
    kddbGetKdsName(names[1], across);
    resbuf taken{};
    resbuf* list = &taken;
    EXPECT_EQ(kds_intersect(names[0], names[1], &list), 0);
    EXPECT_EQ(list, &taken);
    EXPECT_EQ(kds_intersect(names[0], names[1], nullptr), 0);

    Open<KdDbEntity>(across)->erase();
    expectPoints(common(line, across), {});
    expectPoints(common(across, line), {});
}

TEST_F(IntersectionTest, WhateverIsShownMeets)
{
    const auto upright = addEntity(new KdDbLine({3, -50, 0}, {3, 50, 0}));
    auto* const text = new KdDbText;
    text->setTextString(L"wide enough");
    text->setHeight(10);
    expectPoints(common(upright, addEntity(text)), {{3, 0, 0}, {3, 10, 0}});

    addEntityToBlock(L"PART", new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 1));
    auto* const reference = new KdDbBlockReference({0, 0, 0}, blockId(L"PART"));
    reference->setScaleFactors(KdGeScale3d(5, 10, 1)); // an ellipse
    expectPoints(common(upright, addEntity(reference)), {{3, -8, 0}, {3, 8, 0}});

    expectPoints(
        common(upright, addEntity(new KdDbFace({0, 20, 0}, {9, 20, 0}, {9, 30, 0}, {0, 30, 0}))),
        {{3, 20, 0}, {3, 30, 0}});
    expectPoints(common(upright, addEntity(new KdDbXline({0, 0, 0}, {1, 1, 0}))), {{3, 3, 0}});
    expectPoints(common(upright, addEntity(new KdDbPoint({3, 40, 0}))), {{3, 40, 0}});
}

TEST_F(IntersectionTest, AnUnevenCopyOfAnArcIsAnEllipse)
{
    KdDbArc arc({1, 0, 0}, 2, 0, kPi / 2);
    KdCmColor red;
    red.setColorIndex(1);
    arc.setColor(red);
    KdGeMatrix3d wide;
    wide(0, 0) = 3.0;
    KdDbEntity* copy = nullptr;
    ASSERT_EQ(arc.getTransformedCopy(wide, copy), Kdapi::eOk);
    const std::unique_ptr<KdDbEntity> owner(copy);
    const KdDbEllipse* const ellipse = KdDbEllipse::cast(copy);
    ASSERT_TRUE(ellipse);
    EXPECT_EQ(ellipse->color().colorIndex(), 1);
    KdGePoint3d start;
    KdGePoint3d end;
    ellipse->getStartPoint(start);
    ellipse->getEndPoint(end);
    expectPoints({start, end}, {{9, 0, 0}, {3, 2, 0}});

    wide(0, 0) = 0.0;
    copy = nullptr;
    EXPECT_EQ(arc.getTransformedCopy(wide, copy), Kdapi::eInvalidInput);
    EXPECT_EQ(copy, nullptr);
}

TEST_F(IntersectionTest, EveryEntityHasAPlaneOfItsKind)
{
    struct Case {
        const char* name;
        KdDbEntity* entity;
        KdDb::Planarity planarity;
        KdGeVector3d normal;
    };

    const KdGeVector3d down = -KdGeVector3d::kZAxis;
    const Case cases[] = {
        {"line", new KdDbLine({1, 2, 3}, {4, 5, 3}), KdDb::kLinear, KdGeVector3d::kZAxis},
        {"rising line", new KdDbLine({0, 0, 0}, {3, 0, 4}), KdDb::kLinear, {-0.8, 0, 0.6}},
        {"circle", new KdDbCircle({1, 2, 3}, down, 4), KdDb::kPlanar, down},
        {"point", new KdDbPoint({1, 2, 3}), KdDb::kPlanar, KdGeVector3d::kZAxis},
        {"leaning face", new KdDbFace({0, 0, 0}, {4, 0, 0}, {4, 4, 4}, {0, 4, 4}), KdDb::kPlanar,
         KdGeVector3d(0, -1, 1).normal()},
        {"bent face", new KdDbFace({0, 0, 0}, {4, 0, 0}, {4, 4, 4}, {0, 4, 0}), KdDb::kNonPlanar,
         KdGeVector3d::kZAxis},
    };
    for (const Case& c : cases) {
        const Open<KdDbEntity> entity(addEntity(c.entity));
        KdGePlane plane;
        KdDb::Planarity planarity = KdDb::kNonPlanar;
        EXPECT_EQ(entity->getPlane(plane, planarity), Kdapi::eOk) << c.name;
        EXPECT_EQ(planarity, c.planarity) << c.name;
        EXPECT_LE((plane.normal() - c.normal).length(), 1e-12) << c.name;
        KdDbExtents extents;
        entity->getGeomExtents(extents);
        const KdGePoint3d middle =
            extents.minPoint() + (extents.maxPoint() - extents.minPoint()) / 2.0;
        if (planarity != KdDb::kNonPlanar) {
            EXPECT_LE(plane.distanceTo(middle), 1e-12) << c.name;
        }
    }
    KdGePlane plane;
    KdDb::Planarity planarity = KdDb::kNonPlanar;
    EXPECT_EQ(KdDbText().getPlane(plane, planarity), Kdapi::eNotApplicable);
}
