#include "blocks/draw_block.h"
#include "objects/object_access.h"
#include "support/room_test.h"

#include "sinks/pick_sink.h"

#include <cmath>

using korra::PickHit;
using korra::PickSink;

namespace {

class PickSinkTest : public HostTest {
protected:
    std::vector<PickHit> pick(double x, double y,
                              PickSink::Keep keep = PickSink::Keep::nearest) const
    {
        PickSink sink(toPixels_, {toPixels_(0, 0) * x, toPixels_(1, 1) * y}, 3.0, keep);
        korra::drawBlockContents(database().currentSpaceId(), sink);
        return sink.hits();
    }

    /// The only hit of a pick.
    PickHit hitAt(double x, double y) const
    {
        const std::vector<PickHit> hits = pick(x, y);
        EXPECT_EQ(hits.size(), 1u) << "at " << x << ", " << y;
        return hits.empty() ? PickHit() : hits[0];
    }

    /// Ten pixels a unit, y downwards.
    KdGeMatrix3d toPixels_ = KdGeMatrix3d::scaling(KdGeScale3d(10, -10, 1));
};

TEST_F(PickSinkTest, NearestCurveWins)
{
    const auto low = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    const auto high = addEntity(new KdDbLine({0, 0.4, 0}, {10, 0.4, 0}));
    EXPECT_EQ(hitAt(5, 0.15).entity, low);
    EXPECT_NEAR(hitAt(5, 0.15).distance, 1.5, 1e-9);
    EXPECT_EQ(hitAt(5, 0.2).entity, high); // equally near: drawn last
    EXPECT_TRUE(pick(5, -0.31).empty());
    EXPECT_EQ(pick(5, -0.3).size(), 1u); // the border of the box belongs to it
    EXPECT_EQ(pick(5, 0.2, PickSink::Keep::all).size(), 2u);
}

TEST_F(PickSinkTest, TheBoxIsASquare)
{
    addEntity(new KdDbLine({-1, 1, 0}, {1, -1, 0}));
    // 2.9 pixels each way from the diagonal's nearest point: 4.1 pixels off, yet under the box.
    EXPECT_NEAR(hitAt(0.29, 0.29).distance, 2.9 * std::sqrt(2.0), 1e-9);
    EXPECT_TRUE(pick(0.31, 0.31).empty());
}

TEST_F(PickSinkTest, CurvesAreMeasuredByTheirTrueImageAndMarkedBySegments)
{
    addEntity(new KdDbCircle(KdGePoint3d(0, 0, 0), KdGeVector3d::kZAxis, 50.0));
    for (const double angle : {0.0, 0.37, 1.85})
        EXPECT_NEAR(hitAt(50.1 * std::cos(angle), 50.1 * std::sin(angle)).distance, 1.0, 1e-5);
    EXPECT_TRUE(pick(49.5 * std::cos(0.8), 49.5 * std::sin(0.8)).empty());

    auto* const polyline = newPolyline({{0, 0}, {10, 0, 1.0}, {10, 10}});
    polyline->setClosed(true);
    addEntity(polyline);
    EXPECT_EQ(hitAt(15, 5).marker, 2);
    EXPECT_EQ(hitAt(5, 5).marker, 3);
}

TEST_F(PickSinkTest, LeadersShowTheirPiecesAndAnArrowWhereThatFits)
{
    const auto add = [](std::initializer_list<KdGePoint3d> vertices, KdDbExtents& extents) {
        auto* const leader = new KdDbLeader;
        for (const KdGePoint3d& vertex : vertices)
            leader->appendVertex(vertex);
        const KdDbObjectId id = addEntity(leader);
        Open<KdDbLeader>(id)->getGeomExtents(extents);
        return id;
    };
    KdDbExtents extents;
    const auto leader = add({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, extents);
    EXPECT_EQ(hitAt(10.1, 5).entity, leader);
    EXPECT_EQ(hitAt(10.1, 5).marker, 2);
    EXPECT_DOUBLE_EQ(extents.minPoint().y, -0.18 / 6.0);
    add({{0, 100, 0}, {0.3, 100, 0}, {9, 100, 0}}, extents);
    EXPECT_EQ(extents.minPoint().y, 100.0) << "no room for an arrow";
}

TEST_F(PickSinkTest, LinesWithoutAnEndAreFoundHoweverFarTheyGo)
{
    addEntityToBlock(L"PART", new KdDbRay({1, 0, 0}, {2, 0, 0}));
    for (int i = 0; i < 200; ++i) // enough for a tree of boxes
        addEntityToBlock(L"PART", new KdDbLine({i * 1.0, -9, 0}, {i + 0.5, -9, 0}));
    auto* const reference = new KdDbBlockReference({3, 0, 0}, blockId(L"PART"));
    reference->setScaleFactors(KdGeScale3d(2, -1, 1));
    reference->setRotation(1.5707963267948966);
    const auto turned = addEntity(reference);
    const auto line = addEntity(new KdDbXline({0, 50, 0}, {1, 1, 0}));
    EXPECT_NEAR(hitAt(3.2, 1e5).distance, 2, 1e-6);
    EXPECT_THAT(hitAt(3, 1e5).containers, ElementsAre(turned));
    EXPECT_NEAR(hitAt(3, 1.9).distance, 1, 1e-9) << "before its start, near enough";
    EXPECT_TRUE(pick(3, 1.6).empty());
    EXPECT_EQ(hitAt(-950, -900).entity, line);
    EXPECT_EQ(hitAt(950, 1000.1).entity, line);
    EXPECT_TRUE(pick(950, 1000.8).empty());
    addEntity(new KdDbRay({7, 7, 3}, KdGeVector3d::kZAxis));
    EXPECT_NEAR(hitAt(7.1, 7).distance, 1, 1e-9) << "seen from its end";

    KdDbExtents extents;
    EXPECT_EQ(Open<KdDbEntity>(line)->getGeomExtents(extents), Kdapi::eInvalidExtents);
    EXPECT_EQ(Open<KdDbEntity>(turned)->getGeomExtents(extents), Kdapi::eOk);
    EXPECT_EQ(extents.maxPoint().y, 399);

    // Seen from 100 above: what goes down vanishes, what comes up leaves the view.
    toPixels_(3, 2) = -0.01;
    const auto sinking = addEntity(new KdDbRay({400, 400, 0}, {1, 0, -1}));
    EXPECT_EQ(hitAt(250, 200).entity, sinking) << "twice as far away";
    EXPECT_EQ(hitAt(100.3, 0.4).entity, sinking) << "nearly where it vanishes";
    EXPECT_TRUE(pick(99.4, -0.8).empty());
    EXPECT_TRUE(pick(403, 404).empty()) << "before its start";
    const auto rising = addEntity(new KdDbRay({600, 600, 0}, {1, 0, 1}));
    EXPECT_EQ(hitAt(650 / 0.5, 600 / 0.5).entity, rising);
    EXPECT_EQ(hitAt(5000, 5050).entity, line);
}

TEST_F(PickSinkTest, AreasAndFacesAreHitAtTheirOutlines)
{
    const auto solid = addEntity(new KdDbSolid({0, 0, 0}, {10, 0, 0}, {0, 8, 0}, {10, 8, 0}));
    for (const auto& [x, y, marker] :
         {std::tuple(5, 0, 1), std::tuple(10, 4, 2), std::tuple(5, 8, 3), std::tuple(0, 4, 4)})
        EXPECT_EQ(hitAt(x, y).marker, marker);
    EXPECT_TRUE(pick(5, 4).empty());
    EXPECT_EQ(Open<KdDbSolid>(solid)->transformBy(KdGeMatrix3d::scaling(KdGeScale3d(-1, 2, 1))),
              Kdapi::eOk);
    KdGePoint3d corner;
    EXPECT_EQ(Open<KdDbSolid>(solid)->getPointAt(3, corner), Kdapi::eOk);
    EXPECT_TRUE(corner.isEqualTo({-10, 16, 0}));
    EXPECT_EQ(Open<KdDbSolid>(solid)->getPointAt(4, corner), Kdapi::eInvalidIndex);
    EXPECT_EQ(hitAt(-10, 8).marker, 2);

    const auto face = addEntity(new KdDbFace({20, 0, 1}, {30, 0, 2}, {30, 8, 3}, {20, 8, 4}));
    EXPECT_EQ(hitAt(30, 4).marker, 2);
    Open<KdDbFace>(face)->transformBy(KdGeMatrix3d::translation({0, 50, 0}));
    EXPECT_EQ(hitAt(25, 58).marker, 3);
    EXPECT_EQ(hitAt(20, 54).entity, face);
}

TEST_F(PickSinkTest, APerspectiveIsFollowedUpToTheEye)
{
    // The eye is at (0,0,10); at height 0 a unit is ten pixels.
    toPixels_ = KdGeMatrix3d::scaling(10.0);
    toPixels_(3, 2) = -0.1;
    const auto expectHit = [&](double x, double y, KdDbObjectId id, double pixels) {
        const PickHit hit = hitAt(x, y);
        EXPECT_EQ(hit.entity, id) << "at " << x << ", " << y;
        EXPECT_NEAR(hit.distance, pixels, 1e-4) << "at " << x << ", " << y;
    };
    expectHit(7, 4.1, addEntity(new KdDbLine({0, 2, 5}, {4, 2, 5})), 1.0);
    expectHit(-50, 50, addEntity(new KdDbLine({-1, 1, 0}, {-1, 1, 20})), 0.0);
    EXPECT_TRUE(pick(1, -1).empty()) << "behind the eye";

    expectHit(10.1 * std::cos(0.3), -60 + 10.1 * std::sin(0.3),
              addEntity(new KdDbCircle({0, -30, 5}, KdGeVector3d::kZAxis, 5)), 1.0);
    expectHit(-10, -10, addEntity(new KdDbPoint({-20, -20, -10})), 0.0);
    expectHit(66, -1, addEntity(new KdDbText({30, -3, 5}, L"HHHHHHHH", 5.0, 0.0)), 0.0);
    addEntity(new KdDbPoint({20, 20, 20}));
    addEntity(new KdDbText({30, 30, 20}, L"HHHHHHHH", 5.0, 0.0));
    for (const double at : {-20.0, -31.0})
        EXPECT_TRUE(pick(at, at).empty()) << "behind the eye";
}

TEST_F(PickSinkTest, AttributesAreInnermostInTheirReference)
{
    auto* reference = new KdDbBlockReference(KdGePoint3d(50, 0, 0), KdDbObjectId());
    KdDbObjectId attribute;
    ASSERT_EQ(
        reference->appendAttribute(attribute, new KdDbAttribute({50, 5, 0}, L"HHHH", L"TAG", 2.0)),
        Kdapi::eOk);
    const auto referenceId = addEntity(reference);
    const PickHit hit = hitAt(52, 6);
    EXPECT_TRUE(KdDbAttribute::cast(korra::ObjectAccess::object(hit.entity)));
    EXPECT_EQ(hit.containers, std::vector{referenceId});
    EXPECT_TRUE(hit.transform.isEqualTo(KdGeMatrix3d::kIdentity));
}

TEST_F(PickSinkTest, PointsAndTextsAreHitWhereTheyAre)
{
    const auto point = addEntity(new KdDbPoint(KdGePoint3d(0, 0, 7)));
    EXPECT_EQ(hitAt(0.2, -0.2).entity, point);
    EXPECT_TRUE(pick(0.4, 0).empty());

    const auto text = addEntity(new KdDbText({0, 20, 0}, L"HHHHHHHH", 5.0, 0.5));
    EXPECT_EQ(hitAt(6, 26).entity, text);
    EXPECT_TRUE(pick(6, 20).empty());
}

} // namespace
