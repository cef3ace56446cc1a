#include "orvex/subentities.h"

#include "pick_scene.h"
#include "support/resbuf_list.h"

#include <memory>

using namespace tests;
using support::ResbufList;

namespace {

/// What extractEntityInfo() writes, preset with values that tell.
struct Info {
    int method = -1;
    kds_name first{-1, -1};
    kds_name second{-1, -1};
    short marker = -1;
    KdGePoint3d point{-1, -1, -1};
    KdGeVector3d direction{-1, -1, -1};

    int read(resbuf* list)
    {
        return extractEntityInfo(list, method, first, second, marker, point, direction);
    }
};

constexpr std::int64_t kName[2] = {11, 22};
constexpr double kPoint[3] = {1, 2, 3};
constexpr double kDirection[3] = {0, 0, 1};

resbuf* description(int method, bool withDirection)
{
    resbuf* list =
        withDirection
            ? kdutBuildList(RTLB, RTSHORT, method, RTENAME, kName, RTSHORT, 5, RTLB, RTSHORT, 0,
                            RT3DPOINT, kPoint, RT3DPOINT, kDirection, RTLE, RTLE, 0)
            : kdutBuildList(RTLB, RTSHORT, method, RTENAME, kName, RTSHORT, 5, RTLB, RTSHORT, 0,
                            RT3DPOINT, kPoint, RTLE, RTLE, 0);
    EXPECT_NE(list, nullptr);
    return list;
}

class SubentitiesTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        scene_ = makePickScene();
    }

    PickScene scene_;
};

TEST_F(SubentitiesTest, ADescriptionGivesNameMarkerAndPickPoint)
{
    const KdGePoint3d untouchedPoint(-1, -1, -1);
    const KdGeVector3d untouchedVector(-1, -1, -1);
    for (const int method : {1, 4, 0, 2, 3}) {
        for (const bool withDirection : {true, false}) {
            SCOPED_TRACE(method);
            const bool byPick = method == 1 || method == 4;
            const ResbufList list(description(method, withDirection));
            Info info;
            EXPECT_EQ(info.read(list.get()), 1);
            EXPECT_EQ(info.method, method);
            EXPECT_THAT(info.first, ::testing::ElementsAre(11, 22));
            EXPECT_THAT(info.second, ::testing::ElementsAre(11, 22));
            EXPECT_EQ(info.marker, 5);
            EXPECT_EQ(info.point, byPick ? KdGePoint3d(1, 2, 3) : untouchedPoint);
            EXPECT_EQ(info.direction,
                      byPick && withDirection ? KdGeVector3d::kZAxis : untouchedVector);
        }
    }
}

TEST_F(SubentitiesTest, AnotherListIsRefusedWithoutWriting)
{
    for (resbuf* nodes : {static_cast<resbuf*>(nullptr), kdutBuildList(RTLB, RTSHORT, 1, 0),
                          kdutBuildList(RTSHORT, 1, RTSHORT, 1, RTENAME, kName, RTSHORT, 5, 0)}) {
        const ResbufList list(nodes);
        Info info;
        EXPECT_EQ(info.read(list.get()), 0);
        EXPECT_EQ(info.method, -1);
        EXPECT_EQ(info.first[0], -1);
        EXPECT_EQ(info.marker, -1);
    }
}

std::unique_ptr<KdDbEntity> edgeAt(KdDbObjectId id, const KdGePoint3d& point, int expectedStatus,
                                   KdGeMatrix3d* transform = nullptr)
{
    KdDbEntity* edge = nullptr;
    EXPECT_EQ(GetSubEntByPt(id, point, edge, transform), expectedStatus);
    return std::unique_ptr<KdDbEntity>(edge);
}

TEST_F(SubentitiesTest, TheEdgeUnderAPointIsCopied)
{
    const auto edge = edgeAt(scene_.polyline, {4, 50, 0}, RTNORM);
    const auto* curve = KdDbCurve::cast(edge.get());
    ASSERT_NE(curve, nullptr);
    KdGePoint3d start, end;
    curve->getStartPoint(start);
    curve->getEndPoint(end);
    EXPECT_TRUE(start.isEqualTo({0, 50, 0}));
    EXPECT_TRUE(end.isEqualTo({10, 50, 0}));
}

TEST_F(SubentitiesTest, TheEntityExaminedIsTheOneAtThePoint)
{
    moveUcs(100, 0);
    KdGeMatrix3d transform;
    const auto edge = edgeAt(scene_.line, {9, 0, 0}, RTNORM, &transform); // world (109,0)
    const auto* line = KdDbLine::cast(edge.get());
    ASSERT_NE(line, nullptr);
    EXPECT_TRUE(line->startPoint().isEqualTo({105, 0, 0}));
    EXPECT_TRUE(transform.isEqualTo(KdGeMatrix3d::translation({105, 0, 0})));
}

TEST_F(SubentitiesTest, NoIdAndNoSelectionAreNone)
{
    EXPECT_EQ(edgeAt({}, {4, 0, 0}, RTNONE), nullptr);
    EXPECT_EQ(edgeAt(scene_.line, {500, 500, 0}, RTNONE), nullptr);
}

TEST_F(SubentitiesTest, AFailedSilentPickIsCancelled)
{
    bool cancelled = false;
    platform::countCalls();
    edgeAt(scene_.line, {4, 0, 0}, RTNORM);
    const std::size_t calls = platform::callsCounted();
    for (std::size_t call = 1; call <= calls; ++call) {
        KdDbEntity* edge = nullptr;
        platform::failCall(call, platform::Fault::status);
        const int status = GetSubEntByPt(scene_.line, {4, 0, 0}, edge, nullptr);
        platform::releaseCalls();
        EXPECT_EQ(edge != nullptr && status != RTNORM, false);
        cancelled |= status == RTCAN;
        delete edge;
    }
    EXPECT_TRUE(cancelled);
}

TEST_F(SubentitiesTest, LeaveNothingOpenOrAliveWhateverFails)
{
    for (const KdGePoint3d& point : {KdGePoint3d(4, 50, 0), KdGePoint3d(109, 0, 0)}) {
        sweepFaults<PickScene>(makePickScene, [=](const PickScene& scene) {
            KdDbEntity* edge = nullptr;
            GetSubEntByPt(scene.line, point, edge, nullptr);
            delete edge;
        });
    }
}

} // namespace
