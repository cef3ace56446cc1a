#include "orvex/subentities.h"

#include "pick_scene.h"
#include "support/resbuf_list.h"

#include <memory>

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

    bool operator==(const Info&) const = default;

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
    return withDirection
               ? kdutBuildList(RTLB, RTSHORT, method, RTENAME, kName, RTSHORT, 5, RTLB, RTSHORT, 0,
                               RT3DPOINT, kPoint, RT3DPOINT, kDirection, RTLE, RTLE, 0)
               : kdutBuildList(RTLB, RTSHORT, method, RTENAME, kName, RTSHORT, 5, RTLB, RTSHORT, 0,
                               RT3DPOINT, kPoint, RTLE, RTLE, 0);
}

class SubentitiesTest : public PickSceneTest {};

TEST_F(SubentitiesTest, ADescriptionGivesNameMarkerAndPickPoint)
{
    for (const int method : {1, 4, 0, 2, 3}) {
        for (const bool withDirection : {true, false}) {
            SCOPED_TRACE(method);
            Info expected{.method = method, .first = {11, 22}, .second = {11, 22}, .marker = 5};
            if (method == 1 || method == 4) {
                expected.point.set(1, 2, 3);
                if (withDirection)
                    expected.direction = KdGeVector3d::kZAxis;
            }
            const ResbufList list(description(method, withDirection));
            Info info;
            EXPECT_EQ(info.read(list.get()), 1);
            EXPECT_EQ(info, expected);
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
        EXPECT_EQ(info, Info());
    }
}

std::unique_ptr<KdDbLine> edgeAt(KdDbObjectId id, const KdGePoint3d& point, int expectedStatus,
                                 KdGeMatrix3d* transform = nullptr)
{
    KdDbEntity* edge = nullptr;
    EXPECT_EQ(GetSubEntByPt(id, point, edge, transform), expectedStatus);
    EXPECT_TRUE(!edge || edge->isKindOf(KdDbLine::desc()));
    return std::unique_ptr<KdDbLine>(static_cast<KdDbLine*>(edge));
}

TEST_F(SubentitiesTest, TheEdgeOfWhateverIsAtThePointIsCopied)
{
    Open<KdDbPolyline>(scene_.polyline)->setColor(colorOf(3));
    const auto edge = edgeAt(scene_.polyline, {4, 50, 0}, RTNORM);
    ASSERT_TRUE(edge);
    EXPECT_EQ(edge->color(), colorOf(3));
    EXPECT_TRUE(edge->startPoint().isEqualTo({0, 50, 0}));
    EXPECT_TRUE(edge->endPoint().isEqualTo({10, 50, 0}));

    moveUcs(100, 0);
    KdGeMatrix3d transform;
    const auto nested = edgeAt(scene_.line, {9, 0, 0}, RTNORM, &transform); // world (109,0)
    ASSERT_TRUE(nested);
    EXPECT_TRUE(nested->startPoint().isEqualTo({105, 0, 0}));
    EXPECT_TRUE(transform.isEqualTo(KdGeMatrix3d::translation({105, 0, 0})));

    EXPECT_EQ(edgeAt({}, {9, 0, 0}, RTNONE), nullptr);
    EXPECT_EQ(edgeAt(scene_.line, {500, 500, 0}, RTNONE), nullptr);
}

} // namespace
