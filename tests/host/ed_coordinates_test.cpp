#include "ed/views.h"

#include "support/room_test.h"

#include <numbers>

namespace {

resbuf numbered(short system)
{
    return {nullptr, RTSHORT, {.rint = system}};
}

resbuf normalOf(double x, double y, double z)
{
    return {nullptr, RT3DPOINT, {.rpoint = {x, y, z}}};
}

KdGePoint3d translated(const KdGePoint3d& point, const resbuf& from, const resbuf& to,
                       bool displacement = false)
{
    double array[3] = {point.x, point.y, point.z};
    EXPECT_EQ(kdedTrans(array, &from, &to, displacement, array), RTNORM);
    return {array[0], array[1], array[2]};
}

const resbuf kWorld = numbered(0);
const resbuf kUser = numbered(1);
const resbuf kDisplay = numbered(2);
const resbuf kSheetDisplay = numbered(3);

void setActiveView(const KdGeVector3d& direction, const KdGePoint3d& target, double twist)
{
    const Open<KdDbViewportTableRecord> tile(kdedGetCurViewportObjectId());
    tile->setViewDirection(direction);
    tile->setTarget(target);
    tile->setViewTwist(twist);
}

class EdCoordinatesTest : public HostTest {};

TEST_F(EdCoordinatesTest, ThereAndBackIsTheSamePointAndVector)
{
    ASSERT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::rotation(0.7, {1, 2, 3}, {10, 20, 30})), Kdapi::eOk);
    setActiveView({1, -2, 3}, {5, 6, 7}, 0.4);
    const resbuf above = normalOf(0, 0, 1), below = normalOf(0, 0, -1);
    const resbuf systems[] = {kWorld, kUser, kDisplay, above, below, normalOf(1, 2, 3)};
    const KdGePoint3d point(1.5, -2.5, 3.5);
    for (const resbuf& from : systems) {
        for (const resbuf& to : systems) {
            EXPECT_TRUE(translated(translated(point, from, to), to, from).isEqualTo(point));
            const KdGePoint3d vector = translated(point, from, to, true);
            EXPECT_NEAR(vector.asVector().length(), point.asVector().length(), 1e-10);
            EXPECT_TRUE(translated(vector, to, from, true).isEqualTo(point));
        }
    }
}

TEST_F(EdCoordinatesTest, TheDisplaySystemStandsAtTheTargetLooksAlongTheDirectionAndTwists)
{
    const KdGeVector3d directions[] = {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {1, -2, 3}, {0, 1e-3, 1}};
    for (const KdGeVector3d& direction : directions) {
        setActiveView(direction, {5, 6, 7}, 0.0);
        EXPECT_TRUE(translated({5, 6, 7}, kWorld, kDisplay).isEqualTo({0, 0, 0}));
        const KdGePoint3d eye = translated(KdGePoint3d(5, 6, 7) + direction, kWorld, kDisplay);
        EXPECT_TRUE(eye.isEqualTo({0, 0, direction.length()}));
        // The x axis of the display lies level.
        EXPECT_NEAR(translated({1, 0, 0}, kDisplay, kWorld, true).z, 0.0, 1e-12);
    }
    setActiveView({0, 0, -1}, {}, 0.0);
    EXPECT_TRUE(translated({10, 1, 0}, kWorld, kDisplay).isEqualTo({-10, 1, 0}));
    setActiveView({0, 0, 1}, {}, std::numbers::pi / 2); // turns what is seen counter-clockwise
    EXPECT_TRUE(translated({1, 0, 0}, kWorld, kDisplay).isEqualTo({0, 1, 0}));
}

TEST_F(EdCoordinatesTest, WhatIsNoSystemIsRefusedAndLeavesTheResult)
{
    const resbuf unknown = numbered(4);
    const double point[3] = {1, 2, 3};
    double result[3] = {7, 8, 9};
    for (const auto& [from, to] : {std::pair(&unknown, &kWorld),
                                   {nullptr, &kWorld},
                                   {&kWorld, &kSheetDisplay},
                                   {&kDisplay, &kSheetDisplay}}) // the last on a sheet alone
        EXPECT_EQ(kdedTrans(point, from, to, 0, result), RTERROR);
    EXPECT_THAT(result, ElementsAre(7, 8, 9));

    KdGeMatrix3d skew, mirrored, current;
    skew(0, 1) = 0.5;
    mirrored(2, 2) = -1.0;
    for (const KdGeMatrix3d& wrong : {skew, mirrored})
        EXPECT_EQ(kdedSetCurrentUCS(wrong), Kdapi::eInvalidInput);
    EXPECT_EQ(kdedGetCurrentUCS(current), Kdapi::eOk);
    EXPECT_EQ(current, KdGeMatrix3d::kIdentity);
}

TEST_F(EdCoordinatesTest, TheSheetAndAnEnteredViewportHaveTheirOwnViews)
{
    // A window of 4 by 3 at (6, 5) on the model around (100, 50), scale 1:2.
    ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
    auto* const window = newWindow(2, {6, 5, 0}, 4, 3, 6);
    window->setViewTarget({100, 50, 0});
    const KdDbObjectId viewport = addEntity(window);
    EXPECT_EQ(kdedGetCurViewportObjectId(), database().paperSpaceVportId());
    EXPECT_TRUE(translated({1, 2, 3}, kDisplay, kSheetDisplay).isEqualTo({1, 2, 3}));

    ASSERT_FALSE(korra::setVariable("CVPORT", "3"));
    ASSERT_TRUE(korra::setVariable("CVPORT", "2"));
    EXPECT_EQ(kdedGetCurViewportObjectId(), viewport);
    EXPECT_EQ(database().currentSpaceId(), blockId(L"*Model_Space"));
    EXPECT_TRUE(translated({101, 50, 0}, kWorld, kDisplay).isEqualTo({1, 0, 0}));
    EXPECT_TRUE(translated({1, 0, 0}, kDisplay, kSheetDisplay).isEqualTo({6.5, 5, 0}));
    const auto pixels = korra::ed::currentPixels(database());
    EXPECT_NEAR(pixels.width / pixels.height, 4.0 / 3.0, 1e-12);
    EXPECT_LT(pixels.height, 600.0);

    // What is asked for is shown whole, in a window of whatever shape.
    ASSERT_EQ(Open<KdDbViewport>(viewport)->setWidth(1.5), Kdapi::eOk);
    const auto shownHeight = [&] {
        return Open<KdDbViewport>(viewport, KdDb::kForRead)->viewHeight();
    };
    EXPECT_TRUE(korra::ed::setCurrentWindow(database(), {2, 3}, 8.0, 3.0));
    EXPECT_DOUBLE_EQ(shownHeight(), 16.0);
    EXPECT_EQ(Open<KdDbViewport>(viewport, KdDb::kForRead)->viewCenter(), KdGePoint2d(2, 3));
    addEntityToBlock(L"*Model_Space", new KdDbLine({110, 50, 0}, {118, 52, 0}));
    EXPECT_TRUE(korra::ed::zoomExtents(database()));
    EXPECT_DOUBLE_EQ(shownHeight(), 16.0);
    ASSERT_TRUE(korra::setVariable("CVPORT", "1"));
    EXPECT_EQ(kdedGetCurViewportObjectId(), database().paperSpaceVportId());
}

} // namespace
