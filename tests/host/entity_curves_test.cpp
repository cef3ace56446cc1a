#include "host/recording_sink.h"
#include "support/host_test.h"

#include <cmath>

using namespace tests;

namespace {

constexpr double kPi = 3.14159265358979323846;

class EntityCurvesTest : public HostTest {};

std::unique_ptr<KdDbPolyline> roundedCorner()
{
    auto polyline = std::make_unique<KdDbPolyline>();
    polyline->addVertexAt(0, {0, 0});
    polyline->addVertexAt(1, {10, 0}, std::tan(kPi / 8));
    polyline->addVertexAt(2, {15, 5}, -1.0);
    polyline->addVertexAt(3, {15, 11});
    return polyline;
}

/// A similarity that turns, scales, mirrors and leaves the drawing plane.
KdGeMatrix3d mirroredTurn()
{
    return KdGeMatrix3d::translation({3, -7, 2}) *
           KdGeMatrix3d::rotation(0.7, KdGeVector3d(1, 2, 3)) *
           KdGeMatrix3d::scaling(KdGeScale3d(-2.5, 2.5, 2.5));
}

std::vector<std::unique_ptr<KdDbCurve>> sampleCurves()
{
    std::vector<std::unique_ptr<KdDbCurve>> curves;
    const KdGeVector3d tilted(0.3, -0.4, 0.8);
    curves.push_back(std::make_unique<KdDbLine>(KdGePoint3d(1, 2, 3), KdGePoint3d(-4, 5, 6)));
    curves.push_back(std::make_unique<KdDbArc>(KdGePoint3d(1, 2, 0), 3.0, 5.5, 1.2));
    curves.push_back(std::make_unique<KdDbArc>(KdGePoint3d(1, 2, 3), tilted, 3.0, 0.5, 4.0));
    curves.push_back(std::make_unique<KdDbCircle>(KdGePoint3d(1, 2, 3), tilted, 3.0));
    curves.push_back(roundedCorner());
    auto old = std::make_unique<KdDb2dPolyline>();
    old->appendVertex(new KdDbVertex(KdGePoint3d(0, 0, 0), 0.4));
    old->appendVertex(new KdDbVertex(KdGePoint3d(5, 0, 0), 0.0));
    old->appendVertex(new KdDbVertex(KdGePoint3d(5, 5, 0), -0.8));
    old->appendVertex(new KdDbVertex(KdGePoint3d(0, 9, 0), 0.0));
    curves.push_back(std::move(old));
    auto spatial = std::make_unique<KdDb3dPolyline>();
    for (const KdGePoint3d& point :
         {KdGePoint3d(0, 0, 0), KdGePoint3d(5, 1, 2), KdGePoint3d(3, 3, 9)})
        spatial->appendVertex(new KdDbVertex(point, 0.0));
    curves.push_back(std::move(spatial));
    return curves;
}

TEST_F(EntityCurvesTest, TransformMovesEveryPointOfTheCurve)
{
    const KdGeMatrix3d matrix = mirroredTurn();
    for (const auto& curve : sampleCurves()) {
        SCOPED_TRACE(testing::Message() << std::string(typeid(*curve).name()));
        const auto before = curve->geometry();
        ASSERT_EQ(curve->transformBy(matrix), Kdapi::eOk);
        const auto after = curve->geometry();
        for (int i = 0; i <= 20; ++i) {
            const double part = i / 20.0;
            const double param =
                before->startParam() + part * (before->endParam() - before->startParam());
            const KdGePoint3d moved = matrix * before->evalPoint(param);
            EXPECT_NEAR(after->distanceTo(moved), 0.0, 1e-9) << "part " << part;
        }
        EXPECT_TRUE(after->startPoint().isEqualTo(matrix * before->startPoint(),
                                                  KdGeTol().setEqualPoint(1e-9)) ||
                    KdDbCircle::cast(curve.get()));
        EXPECT_NEAR(after->length(), 2.5 * before->length(), 1e-8);
    }
}

TEST_F(EntityCurvesTest, TransformAndItsInverseGiveTheCurveBack)
{
    for (const auto& curve : sampleCurves()) {
        KdDbExtents before;
        KdDbExtents after;
        ASSERT_EQ(curve->getGeomExtents(before), Kdapi::eOk);
        ASSERT_EQ(curve->transformBy(mirroredTurn()), Kdapi::eOk);
        ASSERT_EQ(curve->transformBy(mirroredTurn().inverse()), Kdapi::eOk);
        ASSERT_EQ(curve->getGeomExtents(after), Kdapi::eOk);
        EXPECT_LT(before.minPoint().distanceTo(after.minPoint()), 1e-9);
        EXPECT_LT(before.maxPoint().distanceTo(after.maxPoint()), 1e-9);
    }
}

TEST_F(EntityCurvesTest, UnequalScalingIsRefusedWhereTheKindCannotCarryIt)
{
    const KdGeMatrix3d stretch = KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1));
    const std::vector<bool> carries = {true, false, false, false, false, false, true};
    const auto curves = sampleCurves();
    ASSERT_EQ(curves.size(), carries.size());
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const auto before = curves[i]->geometry();
        EXPECT_EQ(curves[i]->transformBy(stretch),
                  carries[i] ? Kdapi::eOk : Kdapi::eCannotScaleNonUniformly)
            << "curve " << i;
        if (!carries[i]) {
            EXPECT_TRUE(curves[i]->geometry()->endPoint().isEqualTo(before->endPoint()));
        }
        EXPECT_EQ(curves[i]->transformBy(KdGeMatrix3d::scaling(KdGeScale3d(1, 1, 0))),
                  Kdapi::eInvalidInput);
    }
}

TEST_F(EntityCurvesTest, ExtentsTouchTheTrueCurveAndHoldAllOfIt)
{
    for (const auto& curve : sampleCurves()) {
        KdDbExtents box;
        ASSERT_EQ(curve->getGeomExtents(box), Kdapi::eOk);
        const auto geometry = curve->geometry();
        KdGeExtents3d sampled;
        constexpr int kSteps = 20000;
        for (int i = 0; i <= kSteps; ++i)
            sampled.addPoint(
                geometry->evalPoint(geometry->startParam() +
                                    (geometry->endParam() - geometry->startParam()) * i / kSteps));
        // Between samples a curve of this size rises by less than a millionth.
        EXPECT_LT(box.minPoint().distanceTo(sampled.minPoint()), 1e-6);
        EXPECT_LT(box.maxPoint().distanceTo(sampled.maxPoint()), 1e-6);
        for (unsigned int axis = 0; axis < 3; ++axis) {
            EXPECT_LE(box.minPoint()[axis], sampled.minPoint()[axis] + 1e-12);
            EXPECT_GE(box.maxPoint()[axis], sampled.maxPoint()[axis] - 1e-12);
        }
    }
}

TEST_F(EntityCurvesTest, ClosestPointOfAnExtendedArcLiesOnItsCircle)
{
    const KdDbArc arc({0, 0, 0}, 5.0, 0.0, kPi / 2);
    KdGePoint3d nearest;
    ASSERT_EQ(arc.getClosestPointTo({-9, 0, 0}, nearest, false), Kdapi::eOk);
    EXPECT_TRUE(nearest.isEqualTo({0, 5, 0}));
    ASSERT_EQ(arc.getClosestPointTo({-9, 0, 0}, nearest, true), Kdapi::eOk);
    EXPECT_TRUE(nearest.isEqualTo({-5, 0, 0}));

    const KdDbCircle point({0, 0, 0}, KdGeVector3d::kZAxis, 0.0);
    EXPECT_EQ(point.getClosestPointTo({1, 1, 1}, nearest), Kdapi::eDegenerateGeometry);
    EXPECT_TRUE(nearest.isEqualTo({-5, 0, 0}));
}

TEST_F(EntityCurvesTest, PolylineSegmentsTellTheirKind)
{
    const auto polyline = roundedCorner();
    EXPECT_EQ(polyline->segType(0), KdDbPolyline::kLine);
    EXPECT_EQ(polyline->segType(1), KdDbPolyline::kArc);
    EXPECT_EQ(polyline->segType(3), KdDbPolyline::kEmpty);
    polyline->setClosed(true);
    EXPECT_EQ(polyline->segType(3), KdDbPolyline::kLine);
    polyline->addVertexAt(4, {15, 11});
    EXPECT_EQ(polyline->segType(3), KdDbPolyline::kCoincident);

    KdGeLineSeg3d segment;
    KdGeCircArc3d arc;
    EXPECT_EQ(polyline->getLineSegAt(1, segment), Kdapi::eNotApplicable);
    EXPECT_EQ(polyline->getArcSegAt(0, arc), Kdapi::eNotApplicable);
    EXPECT_EQ(polyline->getArcSegAt(9, arc), Kdapi::eInvalidIndex);
    EXPECT_EQ(polyline->addVertexAt(9, {0, 0}), Kdapi::eInvalidIndex);
}

TEST_F(EntityCurvesTest, ArcSegmentStartsAtItsFirstVertexAndANegativeBulgeTurnsTheNormal)
{
    const auto polyline = roundedCorner();
    KdGeCircArc3d arc;
    ASSERT_EQ(polyline->getArcSegAt(1, arc), Kdapi::eOk);
    EXPECT_TRUE(arc.startPoint().isEqualTo({10, 0, 0}));
    EXPECT_TRUE(arc.endPoint().isEqualTo({15, 5, 0}));
    EXPECT_TRUE(arc.center().isEqualTo({10, 5, 0}));
    EXPECT_GT(arc.normal().z, 0.0);

    ASSERT_EQ(polyline->getArcSegAt(2, arc), Kdapi::eOk);
    EXPECT_TRUE(arc.startPoint().isEqualTo({15, 5, 0}));
    EXPECT_LT(arc.normal().z, 0.0);
    EXPECT_TRUE(arc.evalPoint((arc.startAng() + arc.endAng()) / 2).isEqualTo({12, 8, 0}));
}

TEST_F(EntityCurvesTest, PointOnASegmentTellsWhereAlongIt)
{
    const auto polyline = roundedCorner();
    double param = -1.0;
    EXPECT_TRUE(polyline->onSegAt(0, {2.5, 0}, param));
    EXPECT_DOUBLE_EQ(param, 0.25);
    EXPECT_FALSE(polyline->onSegAt(0, {2.5, 1e-6}, param));
    EXPECT_FALSE(polyline->onSegAt(0, {10.1, 0}, param));
    EXPECT_TRUE(
        polyline->onSegAt(1, {10 + 5 * std::sin(kPi / 4), 5 - 5 * std::cos(kPi / 4)}, param));
    EXPECT_NEAR(param, 1.5, 1e-12);
    EXPECT_FALSE(polyline->onSegAt(3, {15, 11}, param));

    // Closest points of a polyline far from the origin are found on a segment again.
    polyline->transformBy(KdGeMatrix3d::translation({7e6, -3e6, 0}) *
                          KdGeMatrix3d::rotation(0.3, KdGeVector3d::kZAxis));
    for (const KdGePoint3d& given :
         {KdGePoint3d(7e6 + 4.2, -3e6 - 1.3, 0), KdGePoint3d(7e6 + 11.7, -3e6 + 3.1, 0)}) {
        KdGePoint3d nearest;
        ASSERT_EQ(polyline->getClosestPointTo(given, nearest), Kdapi::eOk);
        EXPECT_TRUE(polyline->onSegAt(0, {nearest.x, nearest.y}, param) ||
                    polyline->onSegAt(1, {nearest.x, nearest.y}, param));
    }
}

TEST_F(EntityCurvesTest, EdgesOfAPolylineAreLinesAndArcs)
{
    const KdDbObjectId id = addEntity(roundedCorner().release());
    KdDbPolyline* polyline = nullptr;
    ASSERT_EQ(kddbOpenObject(polyline, id, KdDb::kForRead), Kdapi::eOk);
    KdArray<KdDbFullSubentPath> paths;
    ASSERT_EQ(polyline->getSubentPathsAtGsMarker(KdDb::kEdgeSubentType, 3, {}, {}, paths),
              Kdapi::eOk);
    ASSERT_EQ(paths.length(), 1);
    const std::unique_ptr<KdDbEntity> edge(polyline->subentPtr(paths[0]));
    const KdDbArc* arc = KdDbArc::cast(edge.get());
    ASSERT_NE(arc, nullptr);
    EXPECT_NEAR(arc->radius(), 3.0, 1e-12);
    EXPECT_NEAR(arc->geometry()->distanceTo({12, 8, 0}), 0.0, 1e-12);
    EXPECT_EQ(edge->layerId(), polyline->layerId());

    ASSERT_EQ(polyline->getSubentPathsAtGsMarker(KdDb::kEdgeSubentType, 4, {}, {}, paths),
              Kdapi::eOk);
    EXPECT_TRUE(paths.isEmpty());
    EXPECT_EQ(polyline->getSubentPathsAtGsMarker(KdDb::kFaceSubentType, 1, {}, {}, paths),
              Kdapi::eNotApplicable);
    EXPECT_EQ(polyline->subentPtr(
                  KdDbFullSubentPath(polyline->blockId(), KdDbSubentId(KdDb::kEdgeSubentType, 1))),
              nullptr);
    polyline->close();
}

TEST_F(EntityCurvesTest, VerticesBelongToTheirPolyline)
{
    auto* polyline = new KdDb3dPolyline;
    polyline->appendVertex(new KdDbVertex(KdGePoint3d(0, 0, 0), 0.0));
    polyline->appendVertex(new KdDbVertex(KdGePoint3d(4, 0, 0), 0.0));
    addEntity(polyline);
    const KdDbObjectId vertexId = polyline->vertices()[1]->objectId();
    ASSERT_FALSE(vertexId.isNull());

    KdDbVertex* vertex = nullptr;
    ASSERT_EQ(kddbOpenObject(vertex, vertexId, KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(vertex->ownerId(), polyline->objectId());
    vertex->close();

    // A copy has vertices of its own.
    const std::unique_ptr<KdDb3dPolyline> copy(static_cast<KdDb3dPolyline*>(polyline->clone()));
    ASSERT_EQ(copy->transformBy(KdGeMatrix3d::translation({0, 9, 0})), Kdapi::eOk);
    EXPECT_EQ(copy->vertices().size(), 2u);
    EXPECT_EQ(polyline->vertices()[1]->position().y, 0.0);
    EXPECT_EQ(copy->vertices()[1]->position().y, 9.0);
}

} // namespace
