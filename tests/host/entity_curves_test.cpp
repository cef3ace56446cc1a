#include "support/ge_samples.h"
#include "support/room_test.h"

#include <cmath>

namespace {

class EntityCurvesTest : public HostTest {};

std::unique_ptr<KdDbPolyline> roundedCorner()
{
    return std::unique_ptr<KdDbPolyline>(
        newPolyline({{0, 0}, {10, 0, std::tan(kPi / 8)}, {15, 5, -1.0}, {15, 11}}));
}

std::vector<std::unique_ptr<KdDbCurve>> sampleCurves()
{
    std::vector<std::unique_ptr<KdDbCurve>> curves;
    const KdGeVector3d tilted(0.3, -0.4, 0.8);
    curves.push_back(std::make_unique<KdDbLine>(KdGePoint3d(1, 2, 3), KdGePoint3d(-4, 5, 6)));
    curves.push_back(std::make_unique<KdDbArc>(KdGePoint3d(1, 2, 0), 3.0, 5.5, 1.2));
    curves.push_back(std::make_unique<KdDbArc>(KdGePoint3d(1, 2, 3), tilted, 0.4, 0.5, 4.0));
    curves.push_back(std::make_unique<KdDbCircle>(KdGePoint3d(1, 2, 3), tilted, 3.0));
    curves.push_back(roundedCorner());
    auto bulged = std::make_unique<KdDb2dPolyline>();
    auto spatial = std::make_unique<KdDb3dPolyline>();
    for (const double x : {0.0, 5.0, 7.0}) {
        bulged->appendVertex(new KdDbVertex({x, x * x, 0}, 0.4 - 0.2 * x));
        spatial->appendVertex(new KdDbVertex({x, x * x, 2 - x}, 0.0));
    }
    curves.push_back(std::move(bulged));
    curves.push_back(std::move(spatial));
    return curves;
}

TEST_F(EntityCurvesTest, TransformMovesEveryPointOfTheCurve)
{
    // Turns, scales, mirrors and leaves the drawing plane.
    const KdGeMatrix3d matrix = KdGeMatrix3d::translation({3, -7, 2}) *
                                KdGeMatrix3d::rotation(0.7, KdGeVector3d(1, 2, 3)) *
                                KdGeMatrix3d::scaling(KdGeScale3d(-2.5, 2.5, 2.5));
    for (const auto& curve : sampleCurves())
        for (const char* when : {"once", "again, out of another plane"}) {
            SCOPED_TRACE(std::string(typeid(*curve).name()) + " " + when);
            const auto before = curve->geometry();
            ASSERT_EQ(curve->transformBy(matrix), Kdapi::eOk);
            const auto after = curve->geometry();
            for (int i = 0; i <= 20; ++i) {
                const double param = std::lerp(before->startParam(), before->endParam(), i / 20.0);
                const KdGePoint3d moved = matrix * before->evalPoint(param);
                EXPECT_NEAR(after->distanceTo(moved), 0.0, 1e-9) << "point " << i << " of 20";
            }
            EXPECT_TRUE(after->startPoint().isEqualTo(matrix * before->startPoint(),
                                                      KdGeTol().setEqualPoint(1e-9)) ||
                        KdDbCircle::cast(curve.get()));
            EXPECT_NEAR(after->length(), 2.5 * before->length(), 1e-8);
        }
}

TEST_F(EntityCurvesTest, UnequalScalingIsRefusedWhereTheKindCannotCarryIt)
{
    for (const auto& curve : sampleCurves()) {
        SCOPED_TRACE(typeid(*curve).name());
        const bool carries = KdDbLine::cast(curve.get()) || KdDb3dPolyline::cast(curve.get());
        const KdGePoint3d before = curve->geometry()->endPoint();
        EXPECT_EQ(curve->transformBy(KdGeMatrix3d::scaling(KdGeScale3d(2, 1, 1))),
                  carries ? Kdapi::eOk : Kdapi::eCannotScaleNonUniformly);
        EXPECT_NE(curve->geometry()->endPoint().isEqualTo(before), carries);
        EXPECT_EQ(curve->transformBy(KdGeMatrix3d::scaling(KdGeScale3d(1, 1, 0))),
                  Kdapi::eInvalidInput);
    }
}

TEST_F(EntityCurvesTest, ParametersAndDistancesLeadToEachOther)
{
    for (const auto& curve : sampleCurves()) {
        SCOPED_TRACE(typeid(*curve).name());
        const auto geometry = curve->geometry();
        double start = 0, end = 0, length = 0;
        EXPECT_EQ(curve->getStartParam(start), Kdapi::eOk);
        EXPECT_EQ(curve->getEndParam(end), Kdapi::eOk);
        EXPECT_EQ(curve->getDistAtParam(end, length), Kdapi::eOk);
        EXPECT_EQ(length, geometry->length());
        for (int i = 0; i <= 4; ++i) {
            const double param = std::lerp(start, end, i / 4.0);
            KdGePoint3d point, again;
            double distance = -1, found = -1;
            EXPECT_EQ(curve->getPointAtParam(param, point), Kdapi::eOk);
            EXPECT_EQ(point, geometry->evalPoint(param));
            EXPECT_EQ(curve->getDistAtParam(param, distance), Kdapi::eOk);
            EXPECT_NEAR(distance, geometry->length(start, param), 1e-12);
            EXPECT_EQ(curve->getDistAtPoint(point, found), Kdapi::eOk);
            EXPECT_NEAR(found, curve->isClosed() && i == 4 ? 0 : distance, 1e-12);
            EXPECT_EQ(curve->getPointAtDist(std::min(distance, length), again), Kdapi::eOk);
            EXPECT_NEAR(again.distanceTo(point), 0, 1e-12);
        }
        const KdGePoint3d untouched(9, 9, 9);
        KdGePoint3d point = untouched;
        double distance = -1;
        const double beyond = std::nextafter(end, HUGE_VAL);
        EXPECT_EQ(curve->getPointAtParam(beyond, point), Kdapi::eInvalidInput);
        EXPECT_EQ(curve->getPointAtParam(std::nan(""), point), Kdapi::eInvalidInput);
        EXPECT_EQ(curve->getDistAtParam(std::nextafter(start, -9), distance), Kdapi::eInvalidInput);
        EXPECT_EQ(curve->getPointAtDist(-1e-300, point), Kdapi::eInvalidInput);
        EXPECT_EQ(curve->getPointAtDist(std::nextafter(length, 1e9), point), Kdapi::eInvalidInput);
        EXPECT_EQ(curve->getDistAtPoint({50, 50, 50}, distance), Kdapi::ePointNotOnCurve);
        EXPECT_EQ(point, untouched);
        EXPECT_EQ(distance, -1);
    }
    KdDbCircle nothing({0, 0, 0}, KdGeVector3d::kZAxis, 0);
    double param = -1;
    EXPECT_EQ(nothing.getEndParam(param), Kdapi::eDegenerateGeometry);
}

TEST_F(EntityCurvesTest, KeptGeometryFollowsEveryChange)
{
    const auto lengthOf = [](const KdDbCurve& curve) {
        double end = 0, length = -1;
        curve.getEndParam(end);
        curve.getDistAtParam(end, length);
        return length;
    };
    KdDbLine free({0, 0, 0}, {3, 0, 0});
    EXPECT_EQ(lengthOf(free), 3);
    free.setEndPoint({5, 0, 0});
    EXPECT_EQ(lengthOf(free), 5);

    const KdDbObjectId id = addEntity(new KdDbLine({0, 0, 0}, {3, 0, 0}));
    EXPECT_EQ(lengthOf(*Open<KdDbLine>(id)), 3);
    database().transactionManager()->startTransaction();
    Open<KdDbLine>(id)->transformBy(KdGeMatrix3d::scaling(2));
    EXPECT_EQ(lengthOf(*Open<KdDbLine>(id)), 6);
    Open<KdDbLine>(id)->copyFrom(&free);
    EXPECT_EQ(lengthOf(*Open<KdDbLine>(id)), 5);
    database().transactionManager()->abortTransaction();
    EXPECT_EQ(lengthOf(*Open<KdDbLine>(id)), 3);

    auto* const polyline = new KdDb3dPolyline;
    auto* const end = new KdDbVertex({4, 0, 0}, 0);
    polyline->appendVertex(new KdDbVertex({0, 0, 0}, 0));
    polyline->appendVertex(end);
    EXPECT_EQ(lengthOf(*polyline), 4);
    end->transformBy(KdGeMatrix3d::scaling(2));
    EXPECT_EQ(lengthOf(*polyline), 8) << "a free-standing part changed";
    const KdDbObjectId owner = addEntity(polyline);
    EXPECT_EQ(lengthOf(*Open<KdDb3dPolyline>(owner)), 8);
    Open<KdDbVertex>(end->objectId())->transformBy(KdGeMatrix3d::scaling(2));
    EXPECT_EQ(lengthOf(*Open<KdDb3dPolyline>(owner)), 16) << "a part changed";
    {
        const Open<KdDb3dPolyline> open(owner);
        open->appendVertex(new KdDbVertex({16, 2, 0}, 0));
        EXPECT_EQ(lengthOf(*open), 18);
    }
    erase(end->objectId());
    EXPECT_NEAR(lengthOf(*Open<KdDb3dPolyline>(owner)), std::hypot(16, 2), 1e-14);
}

TEST_F(EntityCurvesTest, PolylinesExplodeIntoTheirSegmentsAndSimpleCurvesDoNot)
{
    for (const auto& curve : sampleCurves()) {
        SCOPED_TRACE(typeid(*curve).name());
        curve->setColor(colorOf(3));
        KdArray<KdDbEntity*> pieces;
        pieces.append(nullptr); // what was there stays
        const auto* const whole = dynamic_cast<const KdGeCompositeCurve3d*>(curve->keptGeometry());
        EXPECT_EQ(curve->explode(pieces), whole ? Kdapi::eOk : Kdapi::eCannotExplode);
        ASSERT_EQ(pieces.length(), whole ? 1 + whole->numPieces() : 1);
        for (int i = 1; i < pieces.length(); ++i) {
            const std::unique_ptr<KdDbEntity> piece(pieces[i]);
            const auto shape = KdDbCurve::cast(piece.get())->geometry();
            const KdGeCurve3d& segment = whole->piece(i - 1);
            EXPECT_NEAR(shape->length(), segment.length(), 1e-12);
            EXPECT_NEAR(segment.distanceTo(shape->startPoint()), 0, 1e-12);
            EXPECT_EQ(piece->color(), colorOf(3));
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

    EXPECT_EQ(KdDbArc({0, 0, 0}, 0.0, 0.0, 1.0).geometry(), nullptr);
    const KdDbCircle point({0, 0, 0}, KdGeVector3d::kZAxis, 0.0);
    EXPECT_EQ(point.getClosestPointTo({1, 1, 1}, nearest), Kdapi::eDegenerateGeometry);
    EXPECT_FALSE(point.isClosed() || arc.isClosed());
}

TEST_F(EntityCurvesTest, PolylineSegmentsTellTheirKindAndShape)
{
    const auto polyline = roundedCorner();
    KdGeLineSeg3d segment;
    KdGeCircArc3d arc;
    EXPECT_EQ(polyline->getArcSegAt(0, arc), Kdapi::eNotApplicable);
    EXPECT_EQ(polyline->segType(1), KdDbPolyline::kArc);
    EXPECT_EQ(polyline->getLineSegAt(1, segment), Kdapi::eNotApplicable);
    EXPECT_EQ(polyline->segType(3), KdDbPolyline::kEmpty);
    EXPECT_EQ(polyline->getArcSegAt(9, arc), Kdapi::eInvalidIndex);
    EXPECT_EQ(polyline->addVertexAt(9, {0, 0}), Kdapi::eInvalidIndex);

    // A bulge below zero turns the normal; the segment starts at its first vertex all the same.
    ASSERT_EQ(polyline->getArcSegAt(2, arc), Kdapi::eOk);
    EXPECT_TRUE(arc.startPoint().isEqualTo({15, 5, 0}));
    EXPECT_LT(arc.normal().z, 0.0);
    EXPECT_TRUE(arc.evalPoint((arc.startAng() + arc.endAng()) / 2).isEqualTo({12, 8, 0}));

    polyline->setClosed(true);
    EXPECT_EQ(polyline->segType(3), KdDbPolyline::kLine);
}

TEST_F(EntityCurvesTest, PointOnASegmentTellsWhereAlongIt)
{
    const auto polyline = roundedCorner();
    double param = -1.0;
    EXPECT_TRUE(polyline->onSegAt(0, {2.5, 0}, param));
    EXPECT_DOUBLE_EQ(param, 0.25);
    EXPECT_FALSE(polyline->onSegAt(0, {2.5, 1e-6}, param));
    EXPECT_FALSE(polyline->onSegAt(0, {10.1, 0}, param));
    EXPECT_FALSE(polyline->onSegAt(3, {15, 11}, param));

    // Closest points of a polyline far from the origin are found on a segment again.
    polyline->transformBy(KdGeMatrix3d::translation({7e6, -3e6, 0}) *
                          KdGeMatrix3d::rotation(0.3, KdGeVector3d::kZAxis));
    KdGePoint3d nearest;
    ASSERT_EQ(polyline->getClosestPointTo({7e6 + 4.2, -3e6 - 1.3, 0}, nearest), Kdapi::eOk);
    EXPECT_TRUE(polyline->onSegAt(0, {nearest.x, nearest.y}, param));
    ASSERT_EQ(polyline->getClosestPointTo({7e6 + 11.7, -3e6 + 3.1, 0}, nearest), Kdapi::eOk);
    EXPECT_TRUE(polyline->onSegAt(1, {nearest.x, nearest.y}, param));
    EXPECT_TRUE(param > 1.0 && param < 2.0);
}

} // namespace
