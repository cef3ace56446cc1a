#include "kd/ed.h"

#include "platform/input.h"
#include "support/host_test.h"

#include <windows.h>

using namespace tests;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

KdDbObjectId idOf(const kds_name name)
{
    KdDbObjectId id;
    EXPECT_EQ(kddbGetObjectId(id, name), Kdapi::eOk);
    return id;
}

/// What a nested pick came to.
struct Pick {
    int status = 0;
    KdDbObjectId entity;
    std::vector<KdDbObjectId> containers;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    std::int64_t marker = -1;
};

Pick pick(const KdGePoint3d& at, int silently, unsigned int spaceFlag)
{
    Pick result;
    kds_name name{};
    kds_point point = {at.x, at.y, at.z};
    kds_matrix matrix{};
    resbuf* chain = nullptr;
    result.status = kdedNEntSelPEx(L"\nPick: ", name, point, silently, matrix, &chain, spaceFlag,
                                   &result.marker);
    if (result.status == RTNORM)
        result.entity = idOf(name);
    for (const resbuf* node = chain; node; node = node->rbnext)
        result.containers.push_back(idOf(node->resval.rlname));
    kdutRelRb(chain);
    result.point = {point[0], point[1], point[2]};
    for (unsigned int row = 0; row < 4; ++row)
        for (unsigned int column = 0; column < 4; ++column)
            result.transform(row, column) = matrix[row][column];
    return result;
}

Pick pickAt(const KdGePoint3d& point, unsigned int spaceFlag = 0)
{
    return pick(point, 1, spaceFlag);
}

Pick pickBy(const std::string& line)
{
    korra::queueInput(line);
    return pick({}, 0, 0);
}

void freezeLayerOf(KdDbObjectId entity)
{
    KdDbLayerTable* table = nullptr;
    KdDbDatabase* const database = entity.database();
    ASSERT_EQ(database->getSymbolTable(table, KdDb::kForWrite), Kdapi::eOk);
    auto* const layer = new KdDbLayerTableRecord;
    layer->setName(L"Frozen");
    layer->setIsFrozen(true);
    KdDbObjectId id;
    ASSERT_EQ(table->add(id, layer), Kdapi::eOk);
    layer->close();
    table->close();
    KdDbEntity* open = nullptr;
    ASSERT_EQ(kddbOpenObject(open, entity, KdDb::kForWrite), Kdapi::eOk);
    open->setLayer(id);
    open->close();
}

void erase(KdDbObjectId id)
{
    KdDbEntity* open = nullptr;
    ASSERT_EQ(kddbOpenObject(open, id, KdDb::kForWrite), Kdapi::eOk);
    EXPECT_EQ(open->erase(), Kdapi::eOk);
    open->close();
}

class EdPickingTest : public HostTest {};

TEST_F(EdPickingTest, ThePickBoxReachesThreePixels)
{
    const KdDbObjectId line = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    const double pixel = 9.0 / 600.0; // the view of a new drawing is nine units high
    EXPECT_EQ(pickAt({5, 2.9 * pixel, 0}).entity, line);
    EXPECT_EQ(pickAt({5, 3.1 * pixel, 0}).status, RTERROR);
    ASSERT_TRUE(korra::setVariable("PICKBOX", "4"));
    EXPECT_EQ(pickAt({5, 3.1 * pixel, 0}).entity, line);
    EXPECT_EQ(pickAt({-100, 0, 0}).status, RTERROR);

    const KdDbObjectId far = addEntity(new KdDbPoint({5000, 5000, 0}));
    EXPECT_EQ(pickAt({5000, 5000, 0}).entity, far) << "a pick need not lie inside the view";
}

TEST_F(EdPickingTest, ATopLevelPickHasNoContainers)
{
    const KdDbObjectId line = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    ASSERT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::translation({1, 1, 0})), Kdapi::eOk);
    const Pick picked = pickBy("4,-1");
    EXPECT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.entity, line);
    EXPECT_THAT(picked.containers, IsEmpty());
    EXPECT_EQ(picked.point, KdGePoint3d(4, -1, 0));
    EXPECT_EQ(picked.transform, KdGeMatrix3d::kIdentity);
    EXPECT_EQ(picked.marker, 1);
}

TEST_F(EdPickingTest, ANestedPickTellsTheChainInnermostFirst)
{
    const KdDbObjectId line = addEntityToBlock(L"Inner", new KdDbLine({0, 0, 0}, {1, 0, 0}));
    auto* const innerReference = new KdDbBlockReference({2, 0, 0}, blockId(L"Inner"));
    innerReference->setRotation(1.5707963267948966);
    const KdDbObjectId inner = addEntityToBlock(L"Outer", innerReference);
    auto* const outerReference = new KdDbBlockReference({1, 1, 0}, blockId(L"Outer"));
    outerReference->setScaleFactors({2, 2, 2});
    const KdDbObjectId outer = addEntity(outerReference);

    const Pick picked = pickAt({5, 2, 0});
    ASSERT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.entity, line);
    EXPECT_THAT(picked.containers, ElementsAre(inner, outer));
    EXPECT_TRUE((picked.transform * KdGePoint3d(1, 0, 0)).isEqualTo({5, 3, 0}));
}

TEST_F(EdPickingTest, WhatIsErasedOrFrozenIsNotThere)
{
    const KdDbObjectId below = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    const KdDbObjectId middle = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    const KdDbObjectId above = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    EXPECT_EQ(pickAt({5, 0, 0}).entity, above);
    erase(above);
    EXPECT_EQ(pickAt({5, 0, 0}).entity, middle);
    freezeLayerOf(middle);
    EXPECT_EQ(pickAt({5, 0, 0}).entity, below);
}

TEST_F(EdPickingTest, EveryAnswerHasItsStatusAndKeys)
{
    addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));

    const struct {
        const char* line;
        int status;
        int held; ///< 0: nothing
    } cases[] = {
        {"5,0", RTNORM, VK_LBUTTON},         {"5,5", RTERROR, VK_LBUTTON},
        {"\\miss", RTERROR, VK_LBUTTON},     {"", RTERROR, VK_RETURN},
        {"\\space", RTERROR, VK_SPACE},      {"\\right", RTERROR, VK_RBUTTON},
        {"\\ctrl 5,0", RTNORM, VK_CONTROL},  {"\\esc", RTCAN, 0},
        {"\\miss 5,0", RTERROR, VK_LBUTTON},
    };

    for (const auto& each : cases) {
        EXPECT_EQ(pickBy(each.line).status, each.status) << each.line;
        for (const int key : {VK_LBUTTON, VK_RBUTTON, VK_RETURN, VK_SPACE, VK_CONTROL}) {
            if (key == each.held) {
                EXPECT_LT(GetAsyncKeyState(key), 0) << each.line;
            }
        }
    }
    EXPECT_EQ(pick({}, 0, 0).status, RTCAN) << "at the end of the input";

    kdedInitGet(0, L"Value");
    EXPECT_EQ(pickBy("v").status, RTKWORD);
    korra::queueInput("neither");
    EXPECT_EQ(pickBy("5,0").status, RTNORM) << "asked again";
}

TEST_F(EdPickingTest, AFailedPickHasNoChain)
{
    addEntityToBlock(L"Block", new KdDbLine({0, 0, 0}, {1, 0, 0}));
    addEntity(new KdDbBlockReference({0, 0, 0}, blockId(L"Block")));
    kds_name name{};
    kds_point point = {0.5, 0, 0};
    kds_matrix matrix{};
    resbuf unset{};
    resbuf* chain = &unset;
    platform::failCall(1, platform::Fault::status);
    EXPECT_EQ(kdedNEntSelP(nullptr, name, point, 1, matrix, &chain), RTERROR);
    EXPECT_EQ(chain, nullptr);
}

TEST_F(EdPickingTest, AnOldPolylineIsPickedByItsVertex)
{
    auto* const polyline = new KdDb3dPolyline;
    for (const KdGePoint3d& at : {KdGePoint3d(0, 0, 0), KdGePoint3d(4, 0, 0), KdGePoint3d(4, 4, 0)})
        polyline->appendVertex(new KdDbVertex(at, 0.0));
    const KdDbObjectId id = addEntity(polyline);
    const Pick picked = pickAt({4, 2, 0});
    ASSERT_EQ(picked.status, RTNORM);
    KdDbVertex* vertex = nullptr;
    ASSERT_EQ(kddbOpenObject(vertex, picked.entity, KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(vertex->ownerId(), id);
    EXPECT_EQ(vertex->position(), KdGePoint3d(4, 0, 0));
    vertex->close();
}

TEST_F(EdPickingTest, AViewFromTheSideIsPickedInItsOwnPlane)
{
    const KdDbObjectId line = addEntity(new KdDbLine({1, 0, -5}, {1, 0, 5}));
    KdDbViewportTableRecord* tile = nullptr;
    ASSERT_EQ(kddbOpenObject(tile, kdedGetCurViewportObjectId(), KdDb::kForWrite), Kdapi::eOk);
    tile->setViewDirection({0, -1, 0});
    tile->close();
    EXPECT_EQ(pickAt({1, 77, 3}).entity, line) << "depth does not count";
    EXPECT_EQ(pickAt({2, 0, 3}).status, RTERROR);
}

/// A sheet with two overlapping windows on a model line; the second shows it at scale 2.
class SheetPickingTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        line_ = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
        ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
        first_ = addWindow(2, {3, 4, 0}, 4.0);
        second_ = addWindow(3, {4, 4, 0}, 2.0);
        korra::queueInput("0,0");
        korra::queueInput("12,9");
        ASSERT_TRUE(korra::runCommand("ZOOM"));
    }

    static KdDbObjectId addWindow(short number, const KdGePoint3d& center, double viewHeight)
    {
        auto* const window = new KdDbViewport;
        window->setNumber(number);
        window->setCenterPoint(center);
        window->setWidth(4);
        window->setHeight(4);
        window->setViewHeight(viewHeight);
        return addEntity(window);
    }

    KdDbObjectId line_;
    KdDbObjectId first_;
    KdDbObjectId second_;
};

TEST_F(SheetPickingTest, TheLastViewportUnderThePointIsLookedThrough)
{
    const Pick picked = pickAt({5.9, 4, 0}, 1);
    ASSERT_EQ(picked.status, RTNORM);
    EXPECT_EQ(picked.entity, line_);
    EXPECT_THAT(picked.containers, ElementsAre(second_));
    EXPECT_EQ(picked.point, KdGePoint3d(5.9, 4, 0)) << "a sheet point";
    EXPECT_EQ(picked.transform, KdGeMatrix3d::kIdentity) << "to the model, not to the sheet";

    EXPECT_EQ(pickAt({3.5, 4, 0}, 1).status, RTERROR)
        << "the line would be there in the first window";
    EXPECT_EQ(pickAt({5.9, 4, 0}, 0).status, RTERROR) << "without the space flag";
}

TEST_F(SheetPickingTest, WhatLiesOnTheSheetComesFirst)
{
    const KdDbObjectId onSheet = addEntity(new KdDbLine({5, 3.96, 0}, {7, 3.96, 0}));
    const Pick picked = pickAt({5.9, 4, 0}, 1);
    EXPECT_EQ(picked.entity, onSheet);
    EXPECT_THAT(picked.containers, IsEmpty());
    EXPECT_EQ(pickAt({6, 5, 0}, 1).entity, second_) << "the border of a window is on the sheet";
}

TEST_F(SheetPickingTest, InsideAViewportTheModelIsPicked)
{
    ASSERT_TRUE(korra::setVariable("CVPORT", "2"));
    const Pick picked = pickAt({0.9, 0, 0}, 0);
    EXPECT_EQ(picked.entity, line_);
    EXPECT_THAT(picked.containers, IsEmpty());
}

TEST_F(EdPickingTest, ASelectionSetTellsHowItWasPicked)
{
    addEntityToBlock(L"Block", new KdDbLine({0, 0, 0}, {1, 0, 0}));
    const KdDbObjectId reference = addEntity(new KdDbBlockReference({2, 2, 0}, blockId(L"Block")));
    const double point[3] = {2.5, 2.0, 0.0};
    const double beside[3] = {9.0, 9.0, 0.0};
    kds_name set{};
    EXPECT_EQ(kdedSSGet(nullptr, beside, nullptr, nullptr, set), RTERROR);
    EXPECT_EQ(kdedSSGet(L"X", nullptr, nullptr, nullptr, set), RTERROR);
    ASSERT_EQ(kdedSSGet(nullptr, point, nullptr, nullptr, set), RTNORM);
    EXPECT_THAT(korra::audit(), ElementsAre("1 selection set"));

    resbuf* list = nullptr;
    EXPECT_EQ(kdedSSNameX(&list, set, 1), RTERROR);
    ASSERT_EQ(kdedSSNameX(&list, set, 0), RTNORM);
    std::vector<short> types;
    for (const resbuf* node = list; node; node = node->rbnext)
        types.push_back(node->restype);
    EXPECT_THAT(types,
                ElementsAre(RTLB, RTSHORT, RTENAME, RTSHORT, RTLB, RTSHORT, RT3DPOINT, RTLE, RTLE));
    EXPECT_EQ(list->rbnext->resval.rint, 1);
    EXPECT_EQ(idOf(list->rbnext->rbnext->resval.rlname), reference);
    kdutRelRb(list);

    platform::failCall(1, platform::Fault::status);
    EXPECT_EQ(kdedSSFree(set), RTERROR) << "refused, and yet freed";
    EXPECT_THAT(korra::audit(), IsEmpty());
    EXPECT_EQ(kdedSSNameX(&list, set, 0), RTERROR);
}

} // namespace
