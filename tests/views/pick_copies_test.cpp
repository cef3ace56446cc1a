#include "orvex/pick_copies.h"

#include "pick_scene.h"

#include <memory>
#include <numbers>

namespace {

struct Copied {
    std::unique_ptr<KdDbCurve> curve;
    KdDbObjectId id;
    KdDbObjectId outerId;
    KdGePoint3d point;
    KdGeMatrix3d transform;
};

Copied copyAt(const std::string& input)
{
    korra::queueInput(input);
    Copied copied;
    KdDbEntity* entity = nullptr;
    rx_entsel(nullptr, entity, copied.point, copied.id, copied.outerId, &copied.transform);
    copied.curve.reset(KdDbCurve::cast(entity));
    return copied;
}

/// Picks and expects a line or an arc of its own from `start` to `end`.
Copied expectCopy(const std::string& input, const KdRxClass* kind, const KdGePoint3d& start,
                  const KdGePoint3d& end)
{
    SCOPED_TRACE(input);
    Copied copied = copyAt(input);
    if (!copied.curve) {
        ADD_FAILURE() << "nothing was copied";
        return copied;
    }
    EXPECT_EQ(copied.curve->isA(), kind);
    EXPECT_TRUE(copied.curve->objectId().isNull());
    KdGePoint3d copiedStart, copiedEnd;
    copied.curve->getStartPoint(copiedStart);
    copied.curve->getEndPoint(copiedEnd);
    EXPECT_TRUE(copiedStart.isEqualTo(start) && copiedEnd.isEqualTo(end));
    return copied;
}

class PickCopiesTest : public PickSceneTest {};

TEST_F(PickCopiesTest, ACopyLiesInTheWorldOrOnTheSheet)
{
    const KdRxClass* const line = KdDbLine::desc();
    const Copied flat = expectCopy("4,0", line, {0, 0, 0}, {10, 0, 0});
    EXPECT_EQ(flat.id, scene_.line);
    EXPECT_EQ(flat.outerId, scene_.line);
    EXPECT_EQ(flat.transform, KdGeMatrix3d::kIdentity);
    const Copied nested = expectCopy("109,0", line, {105, 0, 0}, {115, 0, 0});
    EXPECT_EQ(nested.id, scene_.nestedLine);
    EXPECT_EQ(nested.outerId, scene_.reference);

    goToSheet();
    EXPECT_EQ(expectCopy("108,100", line, {100, 100, 0}, {120, 100, 0}).outerId, scene_.line)
        << "never the viewport";
    EXPECT_EQ(expectCopy("318,100", line, {310, 100, 0}, {330, 100, 0}).outerId, scene_.reference);
}

/// Picks both segments of a light polyline that `placed` has brought into the world.
void expectSegments(const KdGeMatrix3d& placed)
{
    const auto at = [&](double x, double y) { return placed * KdGePoint3d(x, y, 0); };
    const auto input = [&](double x, double y) {
        const KdGePoint3d point = at(x, y);
        return std::to_string(point.x) + ',' + std::to_string(point.y) + ',' +
               std::to_string(point.z);
    };
    expectCopy(input(4, 50), KdDbLine::desc(), at(0, 50), at(10, 50));
    const Copied curved = expectCopy(input(15, 55), KdDbArc::desc(), at(10, 50), at(10, 60));
    EXPECT_NEAR(KdDbArc::cast(curved.curve.get())->radius(), 5.0, 1e-6);
}

TEST_F(PickCopiesTest, ThePickedSegmentIsCopiedWhicheverWayThePolylineFaces)
{
    expectSegments(KdGeMatrix3d::kIdentity);
    const KdGeMatrix3d fromBelow = KdGeMatrix3d::rotation(std::numbers::pi, KdGeVector3d::kXAxis);
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
    expectCopy("4,-500", KdDbLine::desc(), {0, 50, 0}, {10, 50, 0});
    const Copied bent = copyAt("15,-550");
    ASSERT_TRUE(KdDbArc::cast(bent.curve.get()));
    EXPECT_EQ(static_cast<KdDbArc&>(*bent.curve).center(), KdGePoint3d(10, 55, 0));
}

TEST_F(PickCopiesTest, PointsAreInTheWorldWhateverTheUcsAndDoNotSnap)
{
    moveUcs(3, 0);
    EXPECT_EQ(copyAt("\\ctrl 6.99,0").point, KdGePoint3d(9.99, 0, 0));
}

TEST_F(PickCopiesTest, AKeywordAsksForANumber)
{
    const std::tuple<std::vector<std::string>, int, double> cases[] = {
        {{"Value", "2.5"}, RTKWORD, 2.5}, {{"v", "\\esc"}, RTCAN, -1.0},
        {{"Value", ""}, RTNONE, -1.0},    {{"\\esc"}, RTCAN, -1.0},
        {{"\\miss"}, RTERROR, -1.0},      {{"4,0"}, RTNORM, -1.0}};

    for (const auto& [input, status, expected] : cases) {
        SCOPED_TRACE(input.front());
        give(input);
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

} // namespace
