#include "support/host_test.h"

#include "gi/pick_sink.h"

#include <chrono>
#include <cmath>

using namespace tests;
using korra::PickHit;
using korra::PickSink;

namespace {

class PickSinkTest : public HostTest {
protected:
    std::vector<PickHit> pick(double x, double y, double reach = 3.0,
                              PickSink::Keep keep = PickSink::Keep::nearest) const
    {
        // Ten pixels a unit, y downwards.
        const KdGeMatrix3d toPixels = KdGeMatrix3d::scaling(KdGeScale3d(10, -10, 1));
        PickSink sink(toPixels, KdGePoint2d(10 * x, -10 * y), reach, keep);
        korra::drawBlockContents(database().currentSpaceId(), sink);
        return sink.hits();
    }
};

TEST_F(PickSinkTest, NearestCurveWins)
{
    const auto low = addEntity(new KdDbLine(KdGePoint3d(0, 0, 0), KdGePoint3d(10, 0, 0)));
    const auto high = addEntity(new KdDbLine(KdGePoint3d(0, 0.4, 0), KdGePoint3d(10, 0.4, 0)));
    ASSERT_EQ(pick(5, 0.15).size(), 1u);
    EXPECT_EQ(pick(5, 0.15)[0].entity, low);
    EXPECT_NEAR(pick(5, 0.15)[0].distance, 1.5, 1e-9);
    EXPECT_EQ(pick(5, 0.25)[0].entity, high);
    EXPECT_EQ(pick(5, 0.2)[0].entity, high); // equally near: drawn last
    EXPECT_TRUE(pick(5, -0.31).empty());
    EXPECT_EQ(pick(5, -0.3).size(), 1u); // the border of the box belongs to it
    EXPECT_EQ(pick(5, 0.2, 3, PickSink::Keep::all).size(), 2u);
}

TEST_F(PickSinkTest, TheBoxIsASquare)
{
    addEntity(new KdDbLine(KdGePoint3d(-1, 1, 0), KdGePoint3d(1, -1, 0)));
    // 2.9 pixels each way from the diagonal's nearest point: 4.1 pixels off, yet under the box.
    EXPECT_NEAR(pick(0.29, 0.29)[0].distance, 2.9 * std::sqrt(2.0), 1e-9);
    EXPECT_TRUE(pick(0.31, 0.31).empty());
}

TEST_F(PickSinkTest, CurvesAreMeasuredByTheirTrueImage)
{
    addEntity(new KdDbCircle(KdGePoint3d(0, 0, 0), KdGeVector3d::kZAxis, 50.0));
    for (int i = 0; i < 7; ++i) {
        const double angle = 0.37 * i;
        const auto hits = pick(50.1 * std::cos(angle), 50.1 * std::sin(angle));
        ASSERT_EQ(hits.size(), 1u) << angle;
        EXPECT_NEAR(hits[0].distance, 1.0, 1e-5) << angle;
    }
    EXPECT_TRUE(pick(0, 0).empty());
    EXPECT_TRUE(pick(49.5 * std::cos(0.8), 49.5 * std::sin(0.8)).empty());
}

TEST_F(PickSinkTest, TurnedEntitiesAreSeenInTheirProjection)
{
    // A circle seen from its side is a line.
    addEntity(new KdDbCircle(KdGePoint3d(0, 0, 0), KdGeVector3d::kYAxis, 5.0));
    EXPECT_EQ(pick(2, 0.1).size(), 1u);
    EXPECT_TRUE(pick(5.5, 0).empty());
}

TEST_F(PickSinkTest, MarkersCountTheSegments)
{
    auto* polyline = new KdDbPolyline;
    polyline->addVertexAt(0, {0, 0});
    polyline->addVertexAt(1, {10, 0}, 1.0);
    polyline->addVertexAt(2, {10, 10});
    polyline->setClosed(true);
    addEntity(polyline);
    EXPECT_EQ(pick(5, 0)[0].marker, 1);
    EXPECT_EQ(pick(15, 5)[0].marker, 2);
    EXPECT_EQ(pick(5, 5)[0].marker, 3);
}

TEST_F(PickSinkTest, ReferencesAreSeenThrough)
{
    const auto line =
        addEntityToBlock(L"Inner", new KdDbLine(KdGePoint3d(0, 0, 0), KdGePoint3d(1, 0, 0)));
    auto* middle = new KdDbBlockReference(KdGePoint3d(2, 0, 0), blockId(L"Inner"));
    const auto middleId = addEntityToBlock(L"Outer", middle);
    auto* top = new KdDbBlockReference(KdGePoint3d(0, 30, 0), blockId(L"Outer"));
    top->setRotation(std::acos(0.0));
    top->setScaleFactors({2, 2, 2});
    const auto topId = addEntity(top);

    const auto hits = pick(0, 35); // the inner line runs from (0, 34) to (0, 36)
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits[0].entity, line);
    EXPECT_EQ(hits[0].containers, (std::vector<KdDbObjectId>{middleId, topId}));
    EXPECT_TRUE((hits[0].transform * KdGePoint3d(1, 0, 0)).isEqualTo({0, 36, 0}));
}

TEST_F(PickSinkTest, VerticesAndAttributesAreTheInnermost)
{
    auto* polyline = new KdDb2dPolyline;
    polyline->appendVertex(new KdDbVertex(KdGePoint3d(0, 0, 0), 0.0));
    polyline->appendVertex(new KdDbVertex(KdGePoint3d(10, 0, 0), 0.0));
    polyline->appendVertex(new KdDbVertex(KdGePoint3d(10, 10, 0), 0.0));
    addEntity(polyline);
    EXPECT_EQ(pick(10, 5)[0].entity, polyline->vertices()[1]->objectId());
    EXPECT_EQ(pick(10, 5)[0].marker, 2);
    EXPECT_TRUE(pick(10, 5)[0].containers.empty());

    addEntityToBlock(L"Title", new KdDbLine(KdGePoint3d(0, 0, 0), KdGePoint3d(1, 0, 0)));
    auto* reference = new KdDbBlockReference(KdGePoint3d(50, 0, 0), blockId(L"Title"));
    KdDbObjectId ignored;
    auto* attribute = new KdDbAttribute({50, 5, 0}, L"HHHH", L"TAG", 2.0);
    ASSERT_EQ(reference->appendAttribute(ignored, attribute), Kdapi::eOk);
    const auto referenceId = addEntity(reference);
    const auto hits = pick(52, 6);
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits[0].entity, attribute->objectId());
    EXPECT_EQ(hits[0].distance, 0.0);
    EXPECT_EQ(hits[0].containers, std::vector<KdDbObjectId>{referenceId});
    EXPECT_TRUE(hits[0].transform.isEqualTo(KdGeMatrix3d::kIdentity));
}

TEST_F(PickSinkTest, DimensionIsPickedWholeAlsoInABlock)
{
    auto* dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
    const auto id = addEntityToBlock(L"Part", dimension);
    const auto top = addEntity(new KdDbBlockReference(KdGePoint3d(100, 0, 0), blockId(L"Part")));
    const auto hits = pick(105, 10);
    ASSERT_EQ(hits.size(), 1u);
    EXPECT_EQ(hits[0].entity, id);
    EXPECT_EQ(hits[0].containers, std::vector<KdDbObjectId>{top});
    EXPECT_EQ(pick(120, 10)[0].entity, id); // its text
    EXPECT_TRUE((hits[0].transform * KdGePoint3d()).isEqualTo({100, 0, 0}));
}

TEST_F(PickSinkTest, PointsAndTextsAreHitWhereTheyAre)
{
    const auto point = addEntity(new KdDbPoint(KdGePoint3d(0, 0, 7)));
    EXPECT_EQ(pick(0.2, -0.2)[0].entity, point);
    EXPECT_TRUE(pick(0.4, 0).empty());

    const auto text = addEntity(new KdDbText(KdGePoint3d(0, 20, 0), L"HHHHHHHH", 5.0, 0.5));
    const KdGePoint3d middle(8 * std::cos(0.5) - 2 * std::sin(0.5),
                             20 + 8 * std::sin(0.5) + 2 * std::cos(0.5), 0);
    EXPECT_EQ(pick(middle.x, middle.y)[0].entity, text);
    EXPECT_TRUE(pick(middle.x, 20).empty());
}

TEST_F(PickSinkTest, OneHundredThousandLinesArePickedFast)
{
    KdDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(kddbOpenObject(space, database().currentSpaceId(), KdDb::kForWrite), Kdapi::eOk);
    for (int i = 0; i < 100'000; ++i) {
        auto* line = new KdDbLine(KdGePoint3d(i, 0, 0), KdGePoint3d(i, 1 + i % 7, 0));
        space->appendKdDbEntity(line);
        line->close();
    }
    space->close();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(pick(5000, 0.5, 3).size(), 1u);
    const auto spent = std::chrono::steady_clock::now() - start;
    // A microsecond each without sanitizers; the bound leaves room for them and for a busy machine.
    EXPECT_LT(spent, std::chrono::seconds(2));
}

} // namespace
