#include "orvex/viewports.h"

#include "support/room_test.h"

#include <cmath>
#include <numbers>

namespace {

/// A square window of 100 about (100, 100) that shows 50 model units from above.
KdDbViewport* newViewport()
{
    return newWindow(2, {100, 100, 0}, 100, 100, 50);
}

/// Where a viewport shows a model point on its sheet.
KdGePoint3d shown(KdDbViewport& viewport, const KdGePoint3d& point)
{
    KdGeMatrix3d matrix;
    ms2ps(&viewport, matrix);
    return matrix * point;
}

class ViewportsTest : public HostTest {};

TEST_F(ViewportsTest, ShowsModelPointsWhereTheViewPutsThem)
{
    // The view's direction, centre, target and twist; a model point and where the sheet shows it.
    const std::tuple<const char*, KdGeVector3d, KdGePoint2d, KdGePoint3d, double, KdGePoint3d,
                     KdGePoint2d>
        cases[] = {
            {"from above", {0, 0, 1}, {}, {}, 0, {10, 5, 0}, {120, 110}},
            {"from below, mirrored", {0, 0, -1}, {}, {}, 0, {10, 5, 0}, {80, 110}},
            {"from the front", {0, -3, 0}, {}, {}, 0, {10, 99, 5}, {120, 110}},
            {"from the right", {1, 0, 0}, {}, {}, 0, {99, 10, 5}, {120, 110}},
            {"view centre", {0, 0, 1}, {10, 0}, {}, 0, {10, 5, 0}, {100, 110}},
            {"target", {0, 0, 1}, {}, {10, 5, 7}, 0, {10, 5, 0}, {100, 100}},
            {"twist", {0, 0, 1}, {}, {}, std::numbers::pi / 2, {10, 0, 0}, {100, 120}},
        };

    for (const auto& [what, direction, center, target, twist, model, sheet] : cases) {
        const std::unique_ptr<KdDbViewport> viewport(newViewport());
        viewport->setViewDirection(direction);
        viewport->setViewCenter(center);
        viewport->setViewTarget(target);
        viewport->setTwistAngle(twist);
        const KdGePoint3d seen = shown(*viewport, model);
        EXPECT_TRUE(KdGePoint2d(seen.x, seen.y).isEqualTo(sheet)) << what;
    }
}

TEST_F(ViewportsTest, PerspectiveMeasuresTheCameraByTheRawDirection)
{
    const std::unique_ptr<KdDbViewport> viewport(newViewport());
    viewport->setPerspectiveOn(true);
    viewport->setLensLength(50);
    // A point of the target's plane keeps its scale where the camera is one focal length away; at
    // the distance L it is seen L / f times smaller.
    const double focus = std::sqrt(2.0) * 50 * 50 / 42;
    for (const double distance : {200.0, 100.0}) {
        viewport->setViewDirection({0, 0, distance});
        EXPECT_NEAR(shown(*viewport, {10, 0, 0}).x, 100 + 2 * 10 * focus / distance, 1e-9);
    }
}

TEST_F(ViewportsTest, OnlyViewportsHaveAMatrix)
{
    const KdGeMatrix3d untouched = KdGeMatrix3d::translation({1, 2, 3});
    KdDbObjectId null, layer = database().clayer(), viewport = addEntity(newViewport());
    for (auto* function : {static_cast<int (*)(KdDbObjectId&, KdGeMatrix3d&)>(ms2ps),
                           static_cast<int (*)(KdDbObjectId&, KdGeMatrix3d&)>(ps2ms)}) {
        KdGeMatrix3d matrix = untouched;
        EXPECT_EQ(function(null, matrix), 0);
        EXPECT_EQ(function(layer, matrix), 0);
        EXPECT_EQ(matrix, untouched);
        EXPECT_EQ(function(viewport, matrix), 1);
        EXPECT_NE(matrix, untouched);
    }
    KdGeMatrix3d matrix = untouched;
    EXPECT_EQ(ms2ps(matrix), 0) << "the model tab has tiles";
    EXPECT_EQ(ps2ms(matrix), 0);
    EXPECT_EQ(matrix, untouched);
}

TEST_F(ViewportsTest, TheBorderIsOutside)
{
    const std::unique_ptr<KdDbViewport> viewport(newViewport());
    const std::pair<KdGePoint3d, int> cases[] = {
        {{100, 100, 500}, 1}, {{50.001, 149.999, 0}, 1}, {{50, 100, 0}, 0}, {{100, 150, 0}, 0}};
    for (const auto& [point, isInside] : cases)
        EXPECT_EQ(isPointInViewPort(point, viewport.get()), isInside) << point.x;
    EXPECT_EQ(isPointInViewPort({100, 100, 0}, nullptr), 0);
}

TEST_F(ViewportsTest, TheLastViewportAtAPointWinsOnTheSheetAlone)
{
    KdDbObjectId found = database().clayer();
    const KdDbObjectId layer = found;
    double scale = 7;
    const auto find = [&](double x) {
        return getViewPortIdIdByPoint(found, scale, {x, 100, 0}, &database());
    };
    EXPECT_EQ(find(80), 0);
    EXPECT_TRUE(found == layer && scale == 7) << "untouched on the model tab";

    EXPECT_TRUE(korra::setVariable("TILEMODE", "0"));
    KdDbObjectId first = addEntity(newViewport());
    const KdDbObjectId second = addEntity(newWindow(3, {160, 100, 0}, 100, 100, 25));
    EXPECT_EQ(find(1e9), 0);
    EXPECT_EQ(find(80), 1);
    EXPECT_EQ(found, first);
    EXPECT_DOUBLE_EQ(scale, 2.0);
    EXPECT_EQ(find(130), 1);
    EXPECT_EQ(found, second);
    EXPECT_DOUBLE_EQ(scale, 4.0);

    korra::queueInput("80,100");
    ASSERT_TRUE(korra::runCommand("MSPACE"));
    EXPECT_EQ(find(80), 0) << "hidden by the one that was entered";
    KdGeMatrix3d current, ofFirst, back;
    EXPECT_TRUE(ms2ps(current) == 1 && ms2ps(first, ofFirst) == 1 && ps2ms(back) == 1);
    EXPECT_EQ(current, ofFirst);
    EXPECT_TRUE((current * back).isEqualTo(KdGeMatrix3d::kIdentity));
}

} // namespace
