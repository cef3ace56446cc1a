#include "orvex/view_tolerances.h"

#include "korra/host.h"
#include "support/room_test.h"

namespace {

/// The result of a call that cannot read the first, second or third of its variables.
double failing(std::size_t reading, double (*call)())
{
    platform::failCall(reading, platform::Fault::status);
    const double result = call();
    EXPECT_TRUE(platform::faultDelivered());
    platform::releaseCalls();
    return result;
}

class ViewTolerancesTest : public HostTest {
protected:
    ViewTolerancesTest() { show(500); }

    /// A screen of this height with a view 100 units high, grips of 7 pixels, a pick box of 3.
    static void show(int height)
    {
        korra::stopHost();
        korra::startHost({.screenWidth = 1000, .screenHeight = height, .recordFatalStops = true});
        korra::newDocument();
        give({"0,0", "0.1,100"});
        EXPECT_TRUE(korra::runCommand("ZOOM") && korra::setVariable("GRIPSIZE", "7") &&
                    korra::setVariable("PICKBOX", "3"));
    }
};

TEST_F(ViewTolerancesTest, TolerancesAreSizesInPixels)
{
    for (const auto& [height, screen] : {std::pair(500, 500), {81, 81}, {80, 800}}) {
        show(height);
        EXPECT_DOUBLE_EQ(GetPixelHeight(), 100.0 / height);
        EXPECT_DOUBLE_EQ(GetGripFusionLength(), 1400.0 / height);
        EXPECT_DOUBLE_EQ(GetLeaderTol(), 1400.0 / height);
        EXPECT_DOUBLE_EQ(GetGripPointTol().equalPoint(), 1400.0 / height);
        EXPECT_DOUBLE_EQ(GetSelectBoxLength(), 300.0 / screen);
    }
    EXPECT_EQ(GetGripPointTol().equalVector(), KdGeTol().equalVector());
    show(0);
    EXPECT_EQ(GetPixelHeight(), -1.0);
}

TEST_F(ViewTolerancesTest, WhatCannotBeReadEachReplacesInItsOwnWay)
{
    for (const std::size_t reading : {1u, 2u}) {
        EXPECT_EQ(failing(reading, GetPixelHeight), -1.0);
        EXPECT_EQ(failing(reading, GetGripFusionLength), 0.5);
        EXPECT_EQ(failing(reading, GetLeaderTol), 1.0);
    }
    EXPECT_DOUBLE_EQ(failing(3, GetGripFusionLength), 2.0) << "five pixels";
    EXPECT_EQ(failing(3, GetLeaderTol), 0.0);
    EXPECT_DOUBLE_EQ(failing(1, GetSelectBoxLength), 3 * 0.0001);
    EXPECT_DOUBLE_EQ(failing(2, GetSelectBoxLength), 3 * 0.125);
    EXPECT_DOUBLE_EQ(failing(3, GetSelectBoxLength), 5 * 0.2);

    ASSERT_TRUE(korra::setVariable("GRIPSIZE", "0") && korra::setVariable("PICKBOX", "0"));
    EXPECT_EQ(GetGripFusionLength(), 0.0) << "it can be read";
    EXPECT_EQ(failing(1, GetLeaderTol), 0.0) << "no grip, no tolerance";
    EXPECT_DOUBLE_EQ(GetSelectBoxLength(), 5 * 0.2);
}

} // namespace
