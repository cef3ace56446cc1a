#include "orvex/pick_copies.h"
#include "orvex/picking.h"
#include "orvex/viewports.h"

#include "pick_scene.h"
#include "support/resbuf_list.h"

#include "platform/input.h"

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

Picked pickBoth(const std::vector<std::string>& lines, decltype(EntSelEx)* entSel = EntSelEx)
{
    give(lines);
    Picked picked;
    picked.status =
        entSel(L"", picked.id, picked.viewport, picked.point, picked.nested, picked.transform);
    return picked;
}

Picked pickSilently(const KdGePoint3d& point)
{
    Picked picked;
    picked.point = point;
    picked.status = NEntSelP(L"", picked.id, picked.viewport, picked.point, 1, picked.transform);
    return picked;
}

class PickingTest : public PickSceneTest {
protected:
    ~PickingTest() override
    {
        platform::releaseKeys();
        platform::setButtonsSwapped(false);
        platform::setMousePresent(true);
    }
};

/// Picks a line of the scene, perhaps a nested one, where it shows its own point (4,0).
Picked pickLine(const std::string& input, KdDbObjectId id, KdDbObjectId nested,
                KdDbObjectId viewport, const KdGePoint3d& point)
{
    SCOPED_TRACE(input);
    const Picked picked = pickBoth({input});
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_TRUE(picked.id == id && picked.nested == nested && picked.viewport == viewport);
    EXPECT_EQ(picked.point, point);
    EXPECT_TRUE((picked.transform * KdGePoint3d(4, 0, 0)).isEqualTo(point));
    return picked;
}

TEST_F(PickingTest, ANestedEntityComesWithItsOutermostReferenceAndTransform)
{
    const Picked flat = pickLine("4,0", scene_.line, scene_.line, {}, {4, 0, 0});
    EXPECT_EQ(flat.transform, KdGeMatrix3d::kIdentity);
    const Picked nested = pickLine("109,0", scene_.reference, scene_.nestedLine, {}, {109, 0, 0});
    EXPECT_TRUE(nested.transform.isEqualTo(KdGeMatrix3d::translation({105, 0, 0})));

    const Picked vertex = pickBoth({"4,80"});
    EXPECT_EQ(vertex.id, scene_.oldPolyline);
    EXPECT_EQ(vertex.nested.objectClass(), KdDbVertex::desc());
}

TEST_F(PickingTest, PointsAreInTheWorldWhateverTheUcs)
{
    moveUcs(3, 0);
    EXPECT_EQ(pickBoth({"1,0"}).point, KdGePoint3d(4, 0, 0));
    EXPECT_THAT(printed(), HasSubstr("Select object: ")) << "the host's prompt for an empty one";
    const Picked silent = pickSilently({5, 0, 0});
    EXPECT_EQ(silent.status, RTNORM);
    EXPECT_EQ(pickSilently({500, 500, 0}).status, RTERROR);
    EXPECT_EQ(silent.id, scene_.line);
    EXPECT_EQ(silent.point, KdGePoint3d(5, 0, 0));

    kds_name name{};
    double userPoint[3];
    korra::queueInput("2,0");
    EXPECT_EQ(ads_entsel_Ex(nullptr, name, userPoint), RTNORM);
    EXPECT_EQ(userPoint[0], 2.0) << "the list-processing layer stays in user coordinates";
}

TEST_F(PickingTest, CtrlSnapsBeforeTheSecondPick)
{
    const Picked picked = pickBoth({"\\ctrl 9.99,0"});
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.point, KdGePoint3d(10, 0, 0));
    EXPECT_EQ(pickBoth({"9.99,0"}).point, KdGePoint3d(9.99, 0, 0));
}

TEST_F(PickingTest, ThroughAViewportTheTopIsTheModelsEntityAndTheTransformEndsOnTheSheet)
{
    const KdDbObjectId viewport = goToSheet();
    pickLine("108,100", scene_.line, scene_.line, viewport, {108, 100, 0});
    pickLine("318,100", scene_.reference, scene_.nestedLine, viewport, {318, 100, 0});
}

TEST_F(PickingTest, AViewportThatCannotBeOpenedIsNotTheResult)
{
    const Open<KdDbViewport> writer(goToSheet());
    for (const auto& [input, entity] :
         {std::pair("108,100", scene_.line), std::pair("318,100", scene_.nestedLine)}) {
        const Picked picked = pickBoth({input});
        EXPECT_EQ(picked.status, RTNORM);
        EXPECT_TRUE(picked.id == entity && picked.nested == entity) << "as the host gave it";
        EXPECT_TRUE(picked.viewport.isNull());
    }
}

TEST_F(PickingTest, APerspectiveIsFollowed)
{
    const KdDbObjectId viewport = goToSheet();
    KdGeMatrix3d modelToPaper;
    {
        const Open<KdDbViewport> window(viewport);
        window->setPerspectiveOn(true);
        window->setViewDirection({400, -600, 900});
        window->setViewTarget({-5, 3, 2});
        window->setViewCenter({2, 1});
        ms2ps(window.get(), modelToPaper);
    }
    const KdGePoint3d shown = modelToPaper * KdGePoint3d(109, 0, 0);
    const Picked picked = pickBoth({std::to_string(shown.x) + ',' + std::to_string(shown.y)});
    EXPECT_EQ(picked.nested, scene_.nestedLine);
    EXPECT_TRUE((picked.transform * KdGePoint3d(4, 0, 0)).isEqualTo(shown));
}

TEST_F(PickingTest, AnEndWithoutAPickIsToldByTheInputAndTheExtendedFormsGiveTheCursorsPoint)
{
    moveUcs(3, 0);
    const std::pair<const char*, int> cases[] = {{"", RTNONE},         {"\\space", RTNONE},
                                                 {"\\right", RTNONE},  {"\\miss", RTERROR},
                                                 {"500,500", RTERROR}, {"\\esc", RTCAN}};
    for (const auto& [input, status] : cases) {
        for (const bool extended : {false, true}) {
            SCOPED_TRACE(input);
            std::vector<std::string> lines = {input};
            KdGePoint3d point = Picked().point;
            if (extended && status != RTCAN) {
                lines.push_back("\\move 30,40");
                point.set(33, 40, 0);
            }
            const Picked picked = pickBoth(lines, extended ? EntSelExEx : EntSelEx);
            EXPECT_EQ(picked.status, status);
            EXPECT_TRUE(picked.id.isNull() && picked.nested.isNull());
            EXPECT_EQ(picked.point, point);

            give(lines);
            Picked copied;
            KdDbEntity* entity = nullptr;
            decltype(rx_entsel_ext)* copy = rx_entsel;
            if (extended)
                copy = rx_entsel_ext;
            EXPECT_EQ(copy(nullptr, entity, copied.point, copied.id, nullptr), status);
            EXPECT_EQ(entity, nullptr);
            EXPECT_EQ(copied.point, point);
        }
    }
}

TEST_F(PickingTest, TheHeldKeysDecideWhatAFailedPickWas)
{
    // The key, whether buttons are swapped and there is a mouse; what a pick and a copy come to.
    const std::tuple<int, bool, bool, int, int> cases[] = {
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

TEST_F(PickingTest, TheCallerOwnsTheChainOfContainers)
{
    kds_name name{}, viewportName{};
    double point[3] = {109, 0, 0};
    kds_matrix transform;
    ResbufList chain;
    EXPECT_EQ(ads_nentselp_Ex(nullptr, name, viewportName, point, 1, transform, chain.link()),
              RTNORM);
    ASSERT_TRUE(chain.get() && chain.get()->rbnext);
    KdDbObjectId outer;
    EXPECT_EQ(kddbGetObjectId(outer, chain.get()->rbnext->resval.rlname), Kdapi::eOk);
    EXPECT_EQ(outer, scene_.reference);
}

TEST_F(PickingTest, ANameWithoutAnIdPrintsAndLeavesTheOutputs)
{
    const auto pick = [] {
        const Picked picked = pickSilently({4, 0, 0});
        const bool untouched = picked.id.isNull() && picked.point == KdGePoint3d(4, 0, 0);
        return untouched && picked.status == RTNORM;
    };
    EXPECT_THAT(outcomesOfFailures(makePickScene, pick),
                Contains(StartsWith("1\nFailure: ")).Times(1));
}

TEST_F(PickingTest, AFailedSecondPickKeepsTheFirst)
{
    enum { other, firstStandsIn, firstIsLost };

    const auto pick = [] {
        const Picked picked = pickBoth({"4,0"});
        if (picked.status == RTNORM || picked.id.isNull())
            return other;
        return picked.nested == picked.id ? firstStandsIn : firstIsLost;
    };
    EXPECT_THAT(outcomesOfFailures(makePickScene, pick),
                AllOf(Contains(StartsWith(std::to_string(firstStandsIn))),
                      Not(Contains(StartsWith(std::to_string(firstIsLost))))));
}

} // namespace
