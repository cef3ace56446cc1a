#pragma once

#include "support/room_test.h"

/// What the pick tests pick in, all on the model tab:
///   a line from (0,0) to (10,0);
///   the same line in block INNER, which OUTER holds moved by (5,0), which stands at (100,0);
///   a light polyline, newPickPolyline();
///   an old-style polyline (0,80) to (10,80).
struct PickScene {
    KdDbObjectId line;
    KdDbObjectId nestedLine;
    KdDbObjectId reference; ///< of OUTER
    KdDbObjectId polyline;
    KdDbObjectId oldPolyline;
};

/// A light polyline (0,50) to (10,50), then a half circle to (10,60).
inline KdDbPolyline* newPickPolyline()
{
    return newPolyline({{0, 50}, {10, 50, 1.0}, {10, 60}});
}

inline PickScene makePickScene()
{
    PickScene scene;
    scene.line = addEntity(new KdDbLine({0, 0, 0}, {10, 0, 0}));
    scene.nestedLine = addEntityToBlock(L"INNER", new KdDbLine({0, 0, 0}, {10, 0, 0}));
    addEntityToBlock(L"OUTER", new KdDbBlockReference({5, 0, 0}, blockId(L"INNER")));
    scene.reference = addEntity(new KdDbBlockReference({100, 0, 0}, blockId(L"OUTER")));
    scene.polyline = addEntity(newPickPolyline());
    auto* const oldPolyline = new KdDb2dPolyline;
    for (const double x : {0.0, 10.0})
        oldPolyline->appendVertex(new KdDbVertex({x, 80, 0}, 0.0));
    scene.oldPolyline = addEntity(oldPolyline);
    return scene;
}

/// Shows the model tab's first layout with a window that shows twice the size: model (0,0) lies at
/// the sheet's (100,100).
inline KdDbObjectId goToSheet()
{
    EXPECT_TRUE(korra::setVariable("TILEMODE", "0"));
    return addEntity(newWindow(2, {100, 100, 0}, 600, 400, 200));
}

inline void moveUcs(double x, double y)
{
    EXPECT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::translation({x, y, 0})), Kdapi::eOk);
}

class PickSceneTest : public HostTest {
protected:
    const PickScene scene_ = makePickScene();
};
