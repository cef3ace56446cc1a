#include "kd/ed.h"

#include "support/host_test.h"

using namespace tests;

namespace {

constexpr const wchar_t* kAll = L"INT,MID,END,INS,NOD";

/// The snapped point; the given one where nothing snaps.
KdGePoint3d snap(const KdGePoint3d& at, const wchar_t* modes, int status = RTNORM)
{
    const double point[3] = {at.x, at.y, at.z};
    double result[3] = {99, 99, 99};
    EXPECT_EQ(kdedOsnap(point, modes, result), status) << at.x << ',' << at.y;
    return {result[0], result[1], result[2]};
}

void expectSnap(const KdGePoint3d& at, const wchar_t* modes, const KdGePoint3d& to)
{
    const KdGePoint3d snapped = snap(at, modes);
    EXPECT_TRUE(snapped.isEqualTo(to)) << snapped.x << ',' << snapped.y << ',' << snapped.z;
}

class SnapTest : public HostTest {};

TEST_F(SnapTest, TheNearestCandidateOfTheGeometryUnderTheBoxWins)
{
    addEntity(new KdDbLine({0, 0, 0}, {8, 0, 2}));
    expectSnap({1, 0, 0}, kAll, {0, 0, 0});
    expectSnap({3.5, 0.02, 0}, kAll, {4, 0, 1});
    expectSnap({7, 0, 0}, L"end", {8, 0, 2});
    expectSnap({7, 0, 0}, L" MID ", {4, 0, 1});
    EXPECT_EQ(snap({1, 1, 0}, kAll, RTERROR), KdGePoint3d(1, 1, 0));
    EXPECT_EQ(snap({1, 0, 0}, L"NOD", RTERROR), KdGePoint3d(1, 0, 0));
    EXPECT_EQ(snap({1, 0, 0}, L"END,NOSUCH", RTERROR), KdGePoint3d(1, 0, 0));
}

TEST_F(SnapTest, TheModeNamedFirstWinsATie)
{
    addEntity(new KdDbLine({0, 0, 0}, {2, 0, 0}));
    addEntity(new KdDbLine({1, 0, 5}, {1, 4, 5}));
    expectSnap({1, 0, 0}, L"MID,END", {1, 0, 0});
    expectSnap({1, 0, 0}, L"END,MID", {1, 0, 5});
}

TEST_F(SnapTest, CurvesSnapByTheirPieces)
{
    auto* const polyline = new KdDbPolyline;
    polyline->addVertexAt(0, {0, 0});
    polyline->addVertexAt(1, {4, 0}, 1.0); // a half circle below, to (8, 0)
    polyline->addVertexAt(2, {8, 0});
    addEntity(polyline);
    expectSnap({2.5, 0, 0}, L"MID", {2, 0, 0});
    expectSnap({2.5, 0, 0}, L"END", {4, 0, 0});
    expectSnap({6.2, -2, 0}, L"MID", {6, -2, 0});
    addEntity(new KdDbCircle({20, 20, 0}, KdGeVector3d::kZAxis, 1.0));
    snap({21, 20, 0}, L"END,MID", RTERROR);
}

TEST_F(SnapTest, CrossingsOfWhatLiesUnderTheBox)
{
    addEntity(new KdDbLine({0, 0, 0}, {4, 4, 0}));
    addEntity(new KdDbLine({0, 4, 0}, {4, 0, 0}));
    addEntity(new KdDbArc({2, 0, 0}, 1.9, 0.0, 3.0));
    expectSnap({2.01, 2.01, 0}, kAll, {2, 2, 0});
    snap({1, 1, 0}, L"INT", RTERROR);
}

TEST_F(SnapTest, NodesAndInsertionPoints)
{
    addEntity(new KdDbPoint({1, 1, 3}));
    addEntity(new KdDbText({5, 5, 0}, L"Text", 0.5));
    expectSnap({1.01, 1, 0}, kAll, {1, 1, 3});
    expectSnap({5.2, 5.2, 0}, kAll, {5, 5, 0});
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
}

TEST_F(SnapTest, TheResultIsInTheUserSystem)
{
    addEntity(new KdDbLine({0, 0, 0}, {8, 0, 0}));
    ASSERT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::translation({10, 5, 0})), Kdapi::eOk);
    expectSnap({-3, -5, 0}, L"END", {-2, -5, 0});
}

TEST_F(SnapTest, TheModelSnapsThroughAViewport)
{
    addEntity(new KdDbLine({0, 0, 0}, {1, 0, 0}));
    ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
    auto* const window = new KdDbViewport;
    window->setNumber(2);
    window->setCenterPoint({5, 5, 0});
    window->setWidth(6);
    window->setHeight(6);
    window->setViewHeight(3);
    addEntity(window);
    expectSnap({6.8, 5, 0}, kAll, {7, 5, 0});
}

} // namespace
