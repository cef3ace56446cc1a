#include "support/room_test.h"

namespace {

constexpr const wchar_t* kAll = L"INT,MID,END,INS,NOD";

void expectSnap(const KdGePoint3d& at, const wchar_t* modes, const KdGePoint3d& to,
                int status = RTNORM)
{
    const double point[3] = {at.x, at.y, at.z};
    double result[3] = {99, 99, 99};
    EXPECT_EQ(kdedOsnap(point, modes, result), status) << at.x << ',' << at.y;
    const KdGePoint3d snapped(result[0], result[1], result[2]);
    EXPECT_TRUE(snapped.isEqualTo(to)) << snapped.x << ',' << snapped.y << ',' << snapped.z;
}

/// Where nothing snaps the result is the point itself.
void expectNoSnap(const KdGePoint3d& at, const wchar_t* modes)
{
    expectSnap(at, modes, at, RTERROR);
}

class SnapTest : public HostTest {};

TEST_F(SnapTest, TheNearestCandidateOfTheGeometryUnderTheBoxWins)
{
    addEntity(new KdDbLine({0, 0, 0}, {8, 0, 2}));
    expectSnap({1, 0, 0}, kAll, {0, 0, 0});
    expectSnap({3.5, 0.02, 0}, kAll, {4, 0, 1});
    expectSnap({7, 0, 0}, L"end", {8, 0, 2});
    expectSnap({7, 0, 0}, L" MID ", {4, 0, 1});
    expectNoSnap({1, 1, 0}, kAll);
    expectNoSnap({1, 0, 0}, L"END,NOSUCH");
}

TEST_F(SnapTest, CurvesSnapByTheirPieces)
{
    addEntity(newPolyline({{0, 0}, {4, 0, 1.0}, {8, 0}})); // ends in a half circle below
    expectSnap({2.5, 0, 0}, L"MID", {2, 0, 0});
    expectSnap({2.5, 0, 0}, L"END", {4, 0, 0});
    expectSnap({6.2, -2, 0}, L"MID", {6, -2, 0});
    addEntity(new KdDbCircle({20, 20, 0}, KdGeVector3d::kZAxis, 1.0));
    expectNoSnap({21, 20, 0}, L"END,MID");
}

TEST_F(SnapTest, CrossingsNodesAndInsertionPointsUnderTheBox)
{
    addEntity(new KdDbLine({0, 0, 0}, {4, 4, 0}));
    addEntity(new KdDbLine({0, 4, 0}, {4, 0, 0}));
    addEntity(new KdDbArc({2, 0, 0}, 1.9, 0.0, 3.0));
    expectSnap({2.01, 2.01, 0}, kAll, {2, 2, 0});
    expectNoSnap({1, 1, 0}, L"INT");
    addEntity(new KdDbPoint({11, 1, 3}));
    addEntity(new KdDbText({5, 5, 0}, L"Text", 0.5));
    expectSnap({11.01, 1, 0}, kAll, {11, 1, 3});
    expectSnap({5.2, 5.2, 0}, kAll, {5, 5, 0});
}

TEST_F(SnapTest, OfVeryManyCurvesTheNearestCross)
{
    for (int i = 0; i < 64; ++i)
        addEntity(new KdDbLine({0, 2.03, 0}, {4, 2.03, 0}));
    addEntity(new KdDbLine({0, 0, 0}, {4, 4, 0}));
    addEntity(new KdDbLine({0, 4, 0}, {4, 0, 0}));
    expectSnap({2, 2.001, 0}, L"INT", {2, 2, 0});
}

TEST_F(SnapTest, TheResultIsInTheUserSystemOrOnTheSheet)
{
    addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    ASSERT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::translation({10, 5, 0})), Kdapi::eOk);
    expectSnap({-9.2, -5, 0}, L"END", {-9, -5, 0});
    ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
    addEntity(newWindow(2, {5, 5, 0}, 6, 6, 3));
    expectSnap({6.8, 5, 0}, kAll, {7, 5, 0});
}

TEST_F(SnapTest, NestedGeometrySnapsWhereItIsShown)
{
    addEntityToBlock(L"Inner", new KdDbLine({0, 0, 0}, {1, 0, 0}));
    addEntityToBlock(L"Outer", new KdDbBlockReference({1, 0, 0}, blockId(L"Inner")));
    auto* const reference = new KdDbBlockReference({2, 2, 0}, blockId(L"Outer"));
    reference->setScaleFactors({2, 2, 2});
    addEntity(reference);
    expectSnap({5.9, 2, 0}, kAll, {6, 2, 0});
    expectSnap({5.2, 2, 0}, kAll, {5, 2, 0});
    expectSnap({5.2, 2, 0}, L"INS", {4, 2, 0});
    addEntityToBlock(L"Ring", new KdDbCircle({0, 0, 0}, KdGeVector3d::kZAxis, 1));
    auto* const oval = new KdDbBlockReference({20, 0, 0}, blockId(L"Ring"));
    oval->setScaleFactors({5, 10, 1});
    addEntity(oval);
    addEntity(new KdDbLine({23, 0, 0}, {23, 9, 0}));
    expectSnap({23, 8.01, 0}, L"INT", {23, 8, 0});
}

} // namespace
