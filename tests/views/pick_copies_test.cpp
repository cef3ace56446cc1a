#include "orvex/pick_copies.h"

#include "pick_scene.h"

#include <memory>
#include <numbers>

using namespace tests;

namespace {

struct Copied {
    std::unique_ptr<KdDbEntity> entity;
    KdDbObjectId id;
    KdDbObjectId outerId;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    int status = 0;

    template <class T>
    const T& as() const
    {
        EXPECT_TRUE(entity && entity->isKindOf(T::desc()));
        return static_cast<const T&>(*entity);
    }
};

Copied copyAt(const std::string& input)
{
    korra::queueInput(input);
    Copied copied;
    KdDbEntity* entity = nullptr;
    copied.status =
        rx_entsel(nullptr, entity, copied.point, copied.id, copied.outerId, &copied.transform);
    copied.entity.reset(entity);
    return copied;
}

class PickCopiesTest : public PickSceneTest {};

TEST_F(PickCopiesTest, ATopLevelEntityIsCopiedAsItIs)
{
    const Copied copied = copyAt("4,0");
    EXPECT_EQ(copied.status, RTNORM);
    EXPECT_EQ(copied.id, scene_.line);
    EXPECT_EQ(copied.outerId, scene_.line);
    EXPECT_EQ(copied.transform, KdGeMatrix3d::kIdentity);
    EXPECT_TRUE(copied.entity->objectId().isNull());
    EXPECT_EQ(copied.as<KdDbLine>().endPoint(), KdGePoint3d(10, 0, 0));
}

TEST_F(PickCopiesTest, ANestedEntityIsCopiedIntoTheWorld)
{
    const Copied copied = copyAt("109,0");
    EXPECT_EQ(copied.id, scene_.nestedLine);
    EXPECT_EQ(copied.outerId, scene_.reference);
    EXPECT_TRUE(copied.as<KdDbLine>().startPoint().isEqualTo({105, 0, 0}));
}

TEST_F(PickCopiesTest, ThroughAViewportTheCopyLiesOnTheSheet)
{
    goToSheet();
    const Copied flat = copyAt("108,100");
    EXPECT_EQ(flat.outerId, scene_.line) << "never the viewport";
    EXPECT_TRUE(flat.as<KdDbLine>().endPoint().isEqualTo({120, 100, 0}));
    EXPECT_EQ(copyAt("318,100").outerId, scene_.reference);
}

TEST_F(PickCopiesTest, TheCopyOfALightPolylineIsThePickedSegment)
{
    const Copied straight = copyAt("4,50");
    EXPECT_EQ(straight.id, scene_.polyline);
    EXPECT_EQ(straight.as<KdDbLine>().startPoint(), KdGePoint3d(0, 50, 0));
    EXPECT_EQ(straight.as<KdDbLine>().endPoint(), KdGePoint3d(10, 50, 0));

    const Copied curved = copyAt("15,55");
    const auto& arc = curved.as<KdDbArc>();
    KdGePoint3d start, end;
    arc.getStartPoint(start);
    arc.getEndPoint(end);
    EXPECT_TRUE(start.isEqualTo({10, 50, 0}));
    EXPECT_TRUE(end.isEqualTo({10, 60, 0}));
    EXPECT_NEAR(arc.radius(), 5.0, 1e-12);
}

/// Picks both segments of a polyline that `placed` has brought into the world.
void expectSegments(const KdGeMatrix3d& placed)
{
    const auto at = [&](double x, double y) { return placed * KdGePoint3d(x, y, 0); };
    const auto pickAt = [&](double x, double y) {
        const KdGePoint3d point = at(x, y);
        return copyAt(std::to_string(point.x) + ',' + std::to_string(point.y) + ',' +
                      std::to_string(point.z));
    };
    const Copied straight = pickAt(4, 50);
    EXPECT_TRUE(straight.as<KdDbLine>().startPoint().isEqualTo(at(0, 50)));
    EXPECT_TRUE(straight.as<KdDbLine>().endPoint().isEqualTo(at(10, 50)));

    const Copied curved = pickAt(15, 55);
    KdGePoint3d start, end;
    curved.as<KdDbArc>().getStartPoint(start);
    curved.as<KdDbArc>().getEndPoint(end);
    EXPECT_TRUE(start.isEqualTo(at(10, 50)));
    EXPECT_TRUE(end.isEqualTo(at(10, 60)));
}

TEST_F(PickCopiesTest, ThePickedSegmentIsFoundWhicheverWayThePolylineFaces)
{
    const KdGeVector3d& x = KdGeVector3d::kXAxis;
    const KdGeMatrix3d fromBelow = KdGeMatrix3d::rotation(std::numbers::pi, x);
    const KdGeMatrix3d tilted =
        KdGeMatrix3d::translation({300, 0, 7}) * KdGeMatrix3d::rotation(1.0, {1, 2, 0});
    for (const KdGeMatrix3d& placed : {fromBelow, tilted}) {
        KdDbPolyline* const polyline = newPickPolyline();
        ASSERT_EQ(polyline->transformBy(placed), Kdapi::eOk);
        addEntity(polyline);
        expectSegments(placed);
    }

    addEntityToBlock(L"FACED", newPickPolyline());
    auto* const mirrored = new KdDbBlockReference({-20, 0, 0}, blockId(L"FACED"));
    mirrored->setScaleFactors(KdGeScale3d(-1, 1, 1));
    addEntity(mirrored);
    expectSegments(KdGeMatrix3d::translation({-20, 0, 0}) *
                   KdGeMatrix3d::scaling(KdGeScale3d(-1, 1, 1)));
}

TEST_F(PickCopiesTest, ACopyThatCannotBeTransformedStaysAndIsThePickedSegmentAllTheSame)
{
    addEntityToBlock(L"STRETCHED", newPickPolyline());
    auto* const stretched = new KdDbBlockReference({0, 0, 0}, blockId(L"STRETCHED"));
    stretched->setScaleFactors(KdGeScale3d(1, -10, 1));
    addEntity(stretched);
    const Copied straight = copyAt("4,-500");
    EXPECT_EQ(straight.as<KdDbLine>().endPoint(), KdGePoint3d(10, 50, 0));
    EXPECT_EQ(copyAt("15,-550").as<KdDbArc>().center(), KdGePoint3d(10, 55, 0));
}

TEST_F(PickCopiesTest, PointsAreInTheWorldWhateverTheUcsAndDoNotSnap)
{
    moveUcs(3, 0);
    EXPECT_EQ(copyAt("\\ctrl 6.99,0").point, KdGePoint3d(9.99, 0, 0));
}

TEST_F(PickCopiesTest, TheIdFormKeepsNoCopy)
{
    korra::queueInput("109,0");
    KdDbObjectId id;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    EXPECT_EQ(rx_entsel(nullptr, id, point, &transform), RTNORM);
    EXPECT_EQ(id, scene_.nestedLine);
    EXPECT_TRUE(transform.isEqualTo(KdGeMatrix3d::translation({105, 0, 0})));
}

TEST_F(PickCopiesTest, AKeywordAsksForANumber)
{
    struct {
        std::vector<const char*> input;
        int status;
        double value;
    } const cases[] = {{{"Value", "2.5"}, RTKWORD, 2.5}, {{"v", "\\esc"}, RTCAN, -1.0},
                       {{"Value", ""}, RTNONE, -1.0},    {{"\\esc"}, RTCAN, -1.0},
                       {{"\\miss"}, RTERROR, -1.0},      {{"4,0"}, RTNORM, -1.0}};

    for (const auto& [input, status, expected] : cases) {
        SCOPED_TRACE(input.front());
        for (const char* line : input)
            korra::queueInput(line);
        KdDbEntity* entity = nullptr;
        KdGePoint3d point;
        double value = -1.0;
        EXPECT_EQ(rx_entsel(nullptr, L"\nValue: ", L"Value Other", entity, point, value, nullptr),
                  status);
        EXPECT_EQ(value, expected);
        EXPECT_EQ(entity != nullptr, status == RTNORM);
        delete entity;
    }
}

TEST_F(PickCopiesTest, LeaveNothingOpenOrAliveWhateverFails)
{
    for (const char* input : {"109,0", "15,55"})
        sweepFaults<PickScene>(makePickScene, [=](const PickScene&) { copyAt(input); });
    sweepFaults<PickScene>(makePickSceneUnderSheet, [](const PickScene&) { copyAt("318,100"); });
    sweepFaults<PickScene>(makePickScene, [](const PickScene&) {
        korra::queueInput("Value");
        korra::queueInput("2.5");
        KdDbObjectId id;
        KdDbEntity* entity = nullptr;
        KdGePoint3d point;
        double value = 0.0;
        rx_entsel(nullptr, L"\nValue: ", L"Value", entity, point, value, nullptr);
        delete entity;
        korra::queueInput("4,0");
        rx_entsel(nullptr, id, point, nullptr);
    });
}

} // namespace
