#include "orvex/planar.h"

#include "support/ge_samples.h"
#include "support/room_test.h"

#include <cmath>

namespace {

constexpr double kFullTurn = 6.283185307179586;
const double kNan = std::nan("");

class PlanarTest : public HostTest {};

TEST_F(PlanarTest, AnAngleIsNormalisedTurnByTurnUpToAMillionTurns)
{
    // From 1e5 on a remainder would differ; in the end only that ends.
    const std::pair<double, double> cases[] = {
        {-0.5, kFullTurn - 0.5},  {kFullTurn, 0.0},          {1.5, 1.5},
        {-1e-20, kFullTurn},      {1e5, 3.1058362263486714}, {-1e5, 3.177349080830915},
        {6e6, 4.137799049907969}, {1e18, 6.113645647067365}, {-1e18, 0.1695396601122212},
        {-HUGE_VAL, -HUGE_VAL}};
    for (auto [angle, expected] : cases) {
        EXPECT_EQ(NormAngle(angle), expected);
        EXPECT_EQ(angle, expected);
    }
}

TEST_F(PlanarTest, AnArcHasWhatLiesBetweenItsEndsOrJustBesideThem)
{
    const std::tuple<double, double, double, int> cases[] = {
        {0.0, 5.0, 1.0, 1},   {3.0, 5.0, 1.0, 0},     {6.0, 5.0, 1.0, 1},   {2.0, 1.0, 3.0, 1},
        {0.5, 1.0, 3.0, 0},   {4.0, 1.0, 3.0, 0},     {0.995, 1.0, 3.0, 1}, {0.985, 1.0, 3.0, 0},
        {3.005, 1.0, 3.0, 1}, {3.015, 1.0, 3.0, 0},   {2.005, 2.0, 2.0, 1}, {4.0, 2.0, 2.0, 0},
        {-4.0, 1.0, 3.0, 1},  {0.2, 7.0, 3.0, 0},     {4.0, 1.0, 9.0, 0},   {kNan, 1.0, 3.0, 0},
        {0.5, 5.0, 1.0, 1},   {0.004, 6.28, 6.281, 0}};
    for (const auto& [angle, start, end, expected] : cases)
        EXPECT_EQ(BetweenArc(angle, start, end), expected) << angle << ' ' << start << ' ' << end;
}

TEST_F(PlanarTest, AnArcStartsAtTheSameEndInWhateverOrderItsEndsAreGiven)
{
    const KdGePoint3d center(3, -2, 5);
    const auto at = [&](double angle) {
        return center + KdGeVector3d(std::cos(angle), std::sin(angle), 0) * 4;
    };
    for (double start = 0.1; start < kFullTurn; start += 0.7) {
        for (const double sweep : {0.4, 2.5, 6.0}) {
            const KdGePoint3d first = at(start), second = at(start + sweep);
            const KdGePoint3d through = at(start + 0.3 * sweep);
            EXPECT_NEAR(GetArcStartAngle(center, first, second, through), start, 1e-12);
            EXPECT_NEAR(GetArcStartAngle(center, second, first, through), start, 1e-12);
        }
    }
    EXPECT_EQ(GetArcStartAngle(0.5, 2.0, 2.0), 0.5) << "through the second end itself";
    EXPECT_EQ(GetArcStartAngle(0.5, 2.0, 0.5), 0.5) << "through the first end itself";
}

TEST_F(PlanarTest, ASegmentHasItsEndsAndWhatIsHardlyADetour)
{
    const KdGePoint3d start(1, 2, 3), end(1, 2, 13); // beside the middle: detours 0.0007, 0.0013
    for (const KdGePoint3d& point : {start, end, {1.06, 2, 8}, {1, 2, 2.9996}})
        EXPECT_EQ(PointOnLine(start, end, point), 1) << point.x << ' ' << point.z;
    for (const KdGePoint3d& point : {KdGePoint3d(1.08, 2, 8), {1, 2, 14}, {1, 2, 2}, {kNan, 2, 8}})
        EXPECT_EQ(PointOnLine(start, end, point), 0) << point.x << ' ' << point.z;
}

TEST_F(PlanarTest, FootDistanceAndImageAreThoseOfTheProjection)
{
    const KdGeTol tolerance = KdGeTol().setEqualPoint(1e-8);
    for (const KdGeMatrix3d& matrix : similarities()) {
        const KdGePoint3d start = matrix * KdGePoint3d(1, 2, 3),
                          end = matrix * KdGePoint3d(4, 2, 7);
        const KdGePoint3d point = matrix * KdGePoint3d(9, -4, 2); // beyond the end
        const KdGeVector3d span = end - start;
        const KdGePoint3d expected =
            start + span * ((point - start).dotProduct(span) / span.dotProduct(span));

        KdGePoint3d foot, image, replaced = point;
        EXPECT_TRUE(GetPerpendPoint(point, addEntity(new KdDbLine(start, end)), foot));
        EXPECT_TRUE(foot.isEqualTo(expected, tolerance));
        EXPECT_NEAR(Dist_PntToLine(replaced, start, end, replaced), point.distanceTo(foot), 1e-8);
        EXPECT_EQ(replaced, foot);
        GetMirrorPoint(point, start, span * 0.25, image);
        EXPECT_TRUE(image.isEqualTo(expected + (expected - point), tolerance));
    }
}

TEST_F(PlanarTest, WhereThereIsNoLineTheFootStays)
{
    const KdDbObjectId erased = addLines(1).front();
    erase(erased);
    const KdDbObjectId circle = addEntity(new KdDbCircle({}, KdGeVector3d::kZAxis, 2));
    KdGePoint3d point(1, 2, 2), foot(1, 2, 7);
    for (const KdDbObjectId id : {KdDbObjectId(), erased, circle, drawing()->clayer()})
        EXPECT_FALSE(GetPerpendPoint(point, id, foot));
    EXPECT_FALSE(GetPerpendPoint(point, {5, 5, 5}, {kNan, 5, 5}, foot));
    EXPECT_FALSE(GetPerpendPoint({1e300, HUGE_VAL, 0}, {0, 0, 0}, {1, 1, 1}, foot));
    EXPECT_EQ(Dist_PntToLine(point, {5, 5, 5}, {5, 5, 5}, foot), 5.0);
    EXPECT_EQ(foot, KdGePoint3d(1, 2, 7));
    GetMirrorPoint(point, {5, 5, 5}, {}, point);
    EXPECT_EQ(point, KdGePoint3d(-1, -2, -2)) << "reflected in the origin";
}

TEST_F(PlanarTest, MiddlesAndFramesMayReplaceWhatTheyAreMadeOf)
{
    KdGePoint3d point(4, 6, 1), origin(1, 2, 5), mid = point;
    GetMidPoint(mid, origin, mid);
    EXPECT_EQ(mid, KdGePoint3d(2.5, 4, 3));
    ZBXTransform(point, point, origin, 0.7);
    EXPECT_TRUE(point.isEqualTo(KdGePoint3d(3, 4, 5).rotateBy(-0.7, KdGeVector3d::kZAxis)));
    ZBXTransform({4, 6, 1}, origin, origin, 0.7);
    EXPECT_EQ(origin, point);
}

} // namespace
