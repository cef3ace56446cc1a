#include "ed/views.h"
#include "support/room_test.h"

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
    resbuf unset{};
    resbuf* chain = &unset;
    result.status = kdedNEntSelPEx(L"\nPick: ", name, point, silently, matrix, &chain, spaceFlag,
                                   &result.marker);
    EXPECT_NE(chain, &unset) << "a pick that fails has no chain";
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

class EdPickingTest : public HostTest {};

TEST_F(EdPickingTest, ThePickBoxReachesThreePixels)
{
    const KdDbObjectId line = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    const double pixel = 9.0 / 600.0; // the view of a new drawing is nine units high
    EXPECT_EQ(pickAt({5, 2.9 * pixel, 0}).entity, line);
    EXPECT_EQ(pickAt({5, 2.9 * pixel, 0}).marker, 1);
    EXPECT_EQ(pickAt({5, 3.1 * pixel, 0}).status, RTERROR);
    ASSERT_TRUE(korra::setVariable("PICKBOX", "4"));
    EXPECT_EQ(pickAt({5, 3.1 * pixel, 0}).entity, line);

    const KdDbObjectId far = addEntity(new KdDbPoint({5000, 5000, 0}));
    EXPECT_EQ(pickAt({5000, 5000, 0}).entity, far) << "a pick need not lie inside the view";
}

TEST_F(EdPickingTest, EveryAnswerHasItsStatus)
{
    addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    const std::pair<const char*, int> answers[] = {
        {"5,0", RTNORM}, {"\\ctrl 5,0", RTNORM}, {"\\miss 5,0", RTERROR},
        {"", RTERROR},   {"\\esc", RTCAN},
    };
    for (const auto& [line, status] : answers)
        EXPECT_EQ(pickBy(line).status, status) << line;
    EXPECT_EQ(pick({}, 0, 0).status, RTCAN) << "at the end of the input";

    kdedInitGet(0, L"Value");
    EXPECT_EQ(pickBy("v").status, RTKWORD);
    korra::queueInput("neither");
    EXPECT_EQ(pickBy("5,0").status, RTNORM) << "asked again";
}

TEST_F(EdPickingTest, AViewFromTheSideIsPickedInItsOwnPlane)
{
    const KdDbObjectId line = addEntity(new KdDbLine({1, 0, -5}, {1, 0, 5}));
    Open<KdDbViewportTableRecord>(kdedGetCurViewportObjectId())->setViewDirection({0, -1, 0});
    EXPECT_EQ(pickAt({1, 77, 3}).entity, line) << "depth does not count";
    EXPECT_EQ(pickAt({2, 0, 3}).status, RTERROR);
}

TEST_F(EdPickingTest, TheSheetComesBeforeTheLastViewportUnderThePoint)
{
    // Two overlapping windows on a model line; the second shows it at scale 2.
    const KdDbObjectId line = addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
    addEntity(newWindow(2, {3, 4, 0}, 4, 4, 4));
    const KdDbObjectId second = addEntity(newWindow(3, {4, 4, 0}, 4, 4, 2));
    ASSERT_TRUE(korra::ed::setCurrentWindow(database(), {6, 4.5}, 12, 9));

    const Pick seen = pickAt({5.9, 4, 0}, 1);
    EXPECT_EQ(seen.entity, line);
    EXPECT_THAT(seen.containers, ElementsAre(second));
    EXPECT_EQ(seen.point, KdGePoint3d(5.9, 4, 0)) << "a sheet point";
    EXPECT_EQ(seen.transform, KdGeMatrix3d::kIdentity) << "to the model, not to the sheet";
    EXPECT_EQ(pickAt({3.5, 4, 0}, 1).status, RTERROR) << "only the first window has it there";
    EXPECT_EQ(pickAt({5.9, 4, 0}, 0).status, RTERROR) << "without the space flag";
    EXPECT_EQ(pickAt({6, 5, 0}, 1).entity, second) << "the border of a window is on the sheet";

    const KdDbObjectId onSheet = addEntity(new KdDbLine({5, 3.96, 0}, {7, 3.96, 0}));
    EXPECT_EQ(pickAt({5.9, 4, 0}, 1).entity, onSheet);
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
    EXPECT_EQ(kdedSSGet(nullptr, point, nullptr, nullptr, nullptr), RTERROR);
    ASSERT_EQ(kdedSSGet(nullptr, point, nullptr, nullptr, set), RTNORM);
    EXPECT_THAT(korra::audit(), ElementsAre("1 selection set"));

    resbuf* list = nullptr;
    EXPECT_EQ(kdedSSNameX(&list, set, 1), RTERROR);
    ASSERT_EQ(kdedSSNameX(&list, set, 0), RTNORM);
    EXPECT_EQ(list->rbnext->resval.rint, 1);
    EXPECT_EQ(idOf(list->rbnext->rbnext->resval.rlname), reference);
    kdutRelRb(list);

    platform::failCall(1, platform::Fault::status);
    EXPECT_EQ(kdedSSFree(set), RTERROR) << "refused, and yet freed";
    EXPECT_THAT(korra::audit(), IsEmpty());
    EXPECT_EQ(kdedSSNameX(&list, set, 0), RTERROR);
}

} // namespace
