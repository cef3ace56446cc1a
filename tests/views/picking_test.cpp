#include "orvex/pick_copies.h"
#include "orvex/picking.h"

#include "pick_scene.h"
#include "support/opened.h"
#include "support/resbuf_list.h"

#include "platform/input.h"

using namespace tests;
using support::ResbufList;

namespace {

/// What the pick functions hand back, preset with values that tell what was written.
struct Picked {
    KdDbObjectId id;
    KdDbObjectId viewport;
    KdDbObjectId nested;
    KdGePoint3d point{-7, -7, -7};
    KdGeMatrix3d transform;
    int status = 0;
};

Picked pickBoth(const std::string& input)
{
    korra::queueInput(input);
    Picked picked;
    picked.status =
        EntSelEx(L"", picked.id, picked.viewport, picked.point, picked.nested, picked.transform);
    return picked;
}

class PickingTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        scene_ = makePickScene();
    }

    void TearDown() override
    {
        platform::releaseKeys();
        platform::setButtonsSwapped(false);
        platform::setMousePresent(true);
        HostTest::TearDown();
    }

    PickScene scene_;
};

TEST_F(PickingTest, ATopLevelEntityIsBothOuterAndNested)
{
    const Picked picked = pickBoth("4,0");
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.id, scene_.line);
    EXPECT_EQ(picked.nested, scene_.line);
    EXPECT_TRUE(picked.viewport.isNull());
    EXPECT_EQ(picked.point, KdGePoint3d(4, 0, 0));
    EXPECT_EQ(picked.transform, KdGeMatrix3d::kIdentity);
}

TEST_F(PickingTest, ANestedEntityComesWithItsOutermostReferenceAndTransform)
{
    const Picked picked = pickBoth("109,0");
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.id, scene_.reference);
    EXPECT_EQ(picked.nested, scene_.nestedLine);
    EXPECT_TRUE(picked.transform.isEqualTo(KdGeMatrix3d::translation({105, 0, 0})));
}

TEST_F(PickingTest, AVertexIsNestedInItsPolyline)
{
    const Picked picked = pickBoth("4,80");
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.id, scene_.oldPolyline);
    ASSERT_NE(picked.nested.objectClass(), nullptr);
    EXPECT_EQ(picked.nested.objectClass(), KdDbVertex::desc());
}

TEST_F(PickingTest, PointsAreInTheWorldWhateverTheUcs)
{
    moveUcs(3, 0);
    EXPECT_EQ(pickBoth("1,0").point, KdGePoint3d(4, 0, 0));

    KdDbObjectId id, viewport;
    KdGePoint3d point(5, 0, 0);
    KdGeMatrix3d transform;
    EXPECT_EQ(NEntSelP(L"", id, viewport, point, 1, transform), RTNORM);
    EXPECT_EQ(id, scene_.line);
    EXPECT_EQ(point, KdGePoint3d(5, 0, 0));

    kds_name name{};
    double userPoint[3];
    korra::queueInput("2,0");
    EXPECT_EQ(ads_entsel_Ex(nullptr, name, userPoint), RTNORM);
    EXPECT_EQ(userPoint[0], 2.0) << "the list-processing layer stays in user coordinates";
}

TEST_F(PickingTest, CtrlSnapsBeforeTheSecondPick)
{
    const Picked picked = pickBoth("\\ctrl 9.99,0");
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.point, KdGePoint3d(10, 0, 0));
    EXPECT_EQ(pickBoth("9.99,0").point, KdGePoint3d(9.99, 0, 0));
}

TEST_F(PickingTest, ThroughAViewportTheTopIsTheModelsEntityAndTheTransformEndsOnTheSheet)
{
    const KdDbObjectId viewport = goToSheet();
    const Picked flat = pickBoth("108,100"); // model (4,0)
    EXPECT_EQ(flat.status, RTNORM);
    EXPECT_EQ(flat.id, scene_.line);
    EXPECT_EQ(flat.nested, scene_.line);
    EXPECT_EQ(flat.viewport, viewport);
    EXPECT_EQ(flat.point, KdGePoint3d(108, 100, 0));
    EXPECT_TRUE((flat.transform * KdGePoint3d(4, 0, 0)).isEqualTo({108, 100, 0}));

    const Picked nested = pickBoth("318,100"); // model (109,0)
    EXPECT_EQ(nested.id, scene_.reference);
    EXPECT_EQ(nested.nested, scene_.nestedLine);
    EXPECT_EQ(nested.viewport, viewport);
    EXPECT_TRUE((nested.transform * KdGePoint3d(4, 0, 0)).isEqualTo({318, 100, 0}));
}

TEST_F(PickingTest, TheHostsPromptIsShownForAnEmptyOne)
{
    pickBoth("4,0");
    EXPECT_THAT(printed(), ::testing::HasSubstr("Select object: "));
    korra::queueInput("4,0");
    KdDbObjectId id;
    KdGePoint3d point;
    EXPECT_EQ(EntSel_(L"\nPick one: ", id, point), RTNORM);
    EXPECT_THAT(printed(), ::testing::HasSubstr("Pick one: "));
}

TEST_F(PickingTest, AnEndWithoutAPickIsToldByTheInput)
{
    struct {
        const char* input;
        int entSel;
        int copy;
    } const cases[] = {{"", RTNONE, RTNONE},          {"\\space", RTNONE, RTNONE},
                       {"\\right", RTNONE, RTNONE},   {"\\miss", RTERROR, RTERROR},
                       {"500,500", RTERROR, RTERROR}, {"\\esc", RTCAN, RTCAN}};

    for (const auto& [input, entSel, copy] : cases) {
        SCOPED_TRACE(input);
        const Picked picked = pickBoth(input);
        EXPECT_EQ(picked.status, entSel);
        EXPECT_TRUE(picked.id.isNull() && picked.nested.isNull());
        EXPECT_EQ(picked.point, KdGePoint3d(-7, -7, -7));

        korra::queueInput(input);
        KdDbEntity* entity = nullptr;
        KdGePoint3d point;
        EXPECT_EQ(rx_entsel(nullptr, entity, point, nullptr), copy);
        EXPECT_EQ(entity, nullptr);
    }
}

TEST_F(PickingTest, TheHeldKeysDecideWhatAFailedPickWas)
{
    struct {
        int key;
        bool swapped;
        bool mouse;
        int entSel;
        int copy;
    } const cases[] = {
        {VK_LBUTTON, false, true, RTERROR, RTERROR}, {VK_RBUTTON, false, true, RTNONE, RTNONE},
        {VK_RBUTTON, true, true, RTERROR, RTERROR},  {VK_LBUTTON, true, true, RTNONE, RTNONE},
        {VK_RBUTTON, true, false, RTNONE, RTNONE},   {VK_SPACE, false, true, RTNONE, RTNONE},
        {VK_RETURN, false, true, RTNONE, RTNONE},    {VK_CONTROL, false, true, RTERROR, RTNONE}};

    for (const auto& [key, swapped, mouse, entSel, copy] : cases) {
        SCOPED_TRACE(key);
        platform::releaseKeys();
        platform::holdKey(key, true);
        platform::setButtonsSwapped(swapped);
        platform::setMousePresent(mouse);
        KdDbObjectId id;
        KdDbEntity* entity = nullptr;
        KdGePoint3d point;
        platform::failCall(2, platform::Fault::status); // the prompt, behind "CVPORT"
        EXPECT_EQ(EntSel_(L"", id, point), entSel);
        platform::failCall(2, platform::Fault::status);
        EXPECT_EQ(rx_entsel(nullptr, entity, point, nullptr), copy);
        EXPECT_TRUE(platform::faultDelivered());
    }
}

TEST_F(PickingTest, TheExtendedFormsGiveTheCursorsPointWithoutAPick)
{
    moveUcs(3, 0);
    KdDbObjectId id, viewport, nested;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    korra::queueInput("\\miss");
    korra::queueInput("\\move 30,40");
    EXPECT_EQ(EntSelExEx(L"", id, viewport, point, nested, transform), RTERROR);
    EXPECT_EQ(point, KdGePoint3d(33, 40, 0));

    KdDbEntity* entity = nullptr;
    korra::queueInput("");
    korra::queueInput("\\move 50,60");
    EXPECT_EQ(rx_entsel_ext(nullptr, entity, point, id, nullptr), RTNONE);
    EXPECT_EQ(point, KdGePoint3d(53, 60, 0));

    korra::queueInput("\\esc");
    EXPECT_EQ(EntSelExEx(L"", id, viewport, point, nested, transform), RTCAN);
    EXPECT_EQ(point, KdGePoint3d(53, 60, 0));
}

TEST_F(PickingTest, TheCallerOwnsTheChainOfContainers)
{
    kds_name name{}, viewportName{};
    double point[3] = {109, 0, 0};
    kds_matrix transform;
    ResbufList chain;
    EXPECT_EQ(ads_nentselp_Ex(nullptr, name, viewportName, point, 1, transform, chain.link()),
              RTNORM);
    ASSERT_FALSE(chain.isEmpty());
    ASSERT_NE(chain.get()->rbnext, nullptr);
    KdDbObjectId outer;
    EXPECT_EQ(kddbGetObjectId(outer, chain.get()->rbnext->resval.rlname), Kdapi::eOk);
    EXPECT_EQ(outer, scene_.reference);
    EXPECT_EQ(transform[0][3], 105.0);
    EXPECT_EQ(viewportName[0], 0);
}

TEST_F(PickingTest, ANameWithoutAnIdPrintsAndLeavesTheOutputs)
{
    platform::countCalls();
    KdDbObjectId id, viewport;
    KdGePoint3d point(4, 0, 0);
    KdGeMatrix3d transform;
    NEntSelP(L"", id, viewport, point, 1, transform);
    const std::size_t calls = platform::callsCounted();
    int messages = 0;
    for (std::size_t call = 1; call <= calls; ++call) {
        id = viewport = KdDbObjectId();
        point.set(4, 0, 0);
        printed();
        platform::failCall(call, platform::Fault::status);
        const int status = NEntSelP(L"", id, viewport, point, 1, transform);
        platform::releaseCalls();
        if (const std::string text = printed(); !text.empty()) {
            ++messages;
            EXPECT_THAT(text, ::testing::StartsWith("\nFailure: "));
            EXPECT_EQ(status, RTNORM);
            EXPECT_TRUE(id.isNull());
            EXPECT_EQ(point, KdGePoint3d(4, 0, 0));
        }
    }
    EXPECT_EQ(messages, 1);
}

TEST_F(PickingTest, AFailedSecondPickKeepsTheFirst)
{
    platform::countCalls();
    pickBoth("4,0");
    const std::size_t calls = platform::callsCounted();
    int failedSecond = 0;
    for (std::size_t call = 1; call <= calls; ++call) {
        platform::failCall(call, platform::Fault::status);
        const Picked picked = pickBoth("4,0");
        platform::releaseCalls();
        korra::queueInput("\\esc"); // what a pick that failed before its prompt has left
        KdDbObjectId id;
        KdGePoint3d point;
        while (EntSel_(L"", id, point) != RTCAN) {
        }
        if (picked.status == RTNORM || picked.id.isNull())
            continue;
        ++failedSecond;
        EXPECT_EQ(picked.id, scene_.line);
        EXPECT_EQ(picked.nested, scene_.line) << "the first pick stands in";
    }
    EXPECT_GT(failedSecond, 0);
}

TEST_F(PickingTest, LeaveNothingOpenWhateverFails)
{
    const auto onModelTab = [] { return makePickScene(); };
    const auto onSheet = [] {
        const PickScene scene = makePickScene();
        goToSheet();
        return scene;
    };
    const auto pickAt = [](const char* input) {
        return [input](const PickScene&) { pickBoth(input); };
    };
    sweepFaults<PickScene>(onModelTab, pickAt("\\ctrl 109,0"));
    sweepFaults<PickScene>(onModelTab, pickAt("4,80"));
    sweepFaults<PickScene>(onSheet, pickAt("318,100"));
    sweepFaults<PickScene>(onModelTab, [](const PickScene&) {
        KdDbObjectId id, viewport, nested;
        KdGePoint3d point;
        KdGeMatrix3d transform;
        korra::queueInput("\\miss");
        EntSelExEx(L"", id, viewport, point, nested, transform);
    });
}

} // namespace
