#include "orvex/viewports.h"

#include "support/host_test.h"
#include "support/opened.h"

#include <cmath>
#include <numbers>

using namespace tests;
using support::Opened;

namespace {

/// A square window of 100 about (100, 100) that shows 50 model units from above.
KdDbViewport* newViewport()
{
    auto* viewport = new KdDbViewport;
    viewport->setCenterPoint({100, 100, 0});
    viewport->setWidth(100);
    viewport->setHeight(100);
    viewport->setViewHeight(50);
    viewport->setNumber(2);
    return viewport;
}

/// Where a viewport shows a model point on its sheet.
KdGePoint3d shown(KdDbViewport& viewport, const KdGePoint3d& point)
{
    KdGeMatrix3d matrix;
    ms2ps(&viewport, matrix);
    return matrix * point;
}

std::string text(const KdGePoint3d& point)
{
    std::ostringstream stream;
    stream << point.x << ' ' << point.y << ' ' << point.z;
    return stream.str();
}

#define EXPECT_POINT(actual, expected)                                                             \
    EXPECT_TRUE((actual).isEqualTo(expected)) << text(actual) << " instead of " << text(expected)

class ViewportsTest : public HostTest {};

TEST_F(ViewportsTest, ShowsModelPointsWhereTheViewPutsThem)
{
    struct {
        const char* what;
        void (*change)(KdDbViewport&);
        KdGePoint3d model;
        KdGePoint3d sheet;
    } const cases[] = {
        {"from above, the middle", [](KdDbViewport&) {}, {0, 0, 0}, {100, 100, 0}},
        {"from above, two for one", [](KdDbViewport&) {}, {10, 5, 0}, {120, 110, 0}},
        {"from below, mirrored",
         [](KdDbViewport& v) {
             v.setViewDirection({0, 0, -1});
         },
         {10, 5, 0},
         {80, 110, 0}},
        {"from the front",
         [](KdDbViewport& v) {
             v.setViewDirection({0, -3, 0});
         },
         {10, 99, 5},
         {120, 110, 0}},
        {"from the right",
         [](KdDbViewport& v) {
             v.setViewDirection({1, 0, 0});
         },
         {99, 10, 5},
         {120, 110, 0}},
        {"view centre",
         [](KdDbViewport& v) {
             v.setViewCenter({10, 0});
         },
         {10, 5, 0},
         {100, 110, 0}},
        {"target",
         [](KdDbViewport& v) {
             v.setViewTarget({10, 5, 7});
         },
         {10, 5, 0},
         {100, 100, 0}},
        {"twist",
         [](KdDbViewport& v) { v.setTwistAngle(std::numbers::pi / 2); },
         {10, 0, 0},
         {100, 120, 0}},
    };

    for (const auto& [what, change, model, sheet] : cases) {
        SCOPED_TRACE(what);
        const std::unique_ptr<KdDbViewport> viewport(newViewport());
        change(*viewport);
        KdGePoint3d seen = shown(*viewport, model);
        seen.z = 0.0;
        EXPECT_POINT(seen, sheet);
    }
}

TEST_F(ViewportsTest, PerspectiveMeasuresTheCameraByTheRawDirection)
{
    const std::unique_ptr<KdDbViewport> viewport(newViewport());
    viewport->setPerspectiveOn(true);
    viewport->setLensLength(50);
    viewport->setViewDirection({0, 0, 200});
    // A point of the target's plane keeps its scale where the camera is one focal length away; at
    // the distance L it is seen L / f times smaller.
    const double focus = std::sqrt(2.0) * 50 * 50 / 42;
    const double expected = 100 + 2 * 10 * focus / 200;
    EXPECT_NEAR(shown(*viewport, {10, 0, 0}).x, expected, 1e-9);
    viewport->setViewDirection({0, 0, 100});
    EXPECT_NEAR(shown(*viewport, {10, 0, 0}).x, 100 + 2 * 10 * focus / 100, 1e-9);
}

TEST_F(ViewportsTest, BackAndForthIsTheIdentity)
{
    const std::unique_ptr<KdDbViewport> viewport(newViewport());
    viewport->setViewDirection({1, -2, 3});
    viewport->setTwistAngle(0.7);
    viewport->setViewTarget({5, 6, 7});
    viewport->setViewCenter({-3, 4});
    KdGeMatrix3d there, back;
    ms2ps(viewport.get(), there);
    ps2ms(viewport.get(), back);
    EXPECT_TRUE((there * back).isEqualTo(KdGeMatrix3d::kIdentity));
}

TEST_F(ViewportsTest, OnlyViewportsHaveAMatrix)
{
    const KdGeMatrix3d untouched = KdGeMatrix3d::translation({1, 2, 3});
    KdDbObjectId null, layer = database().clayer(), viewport = addEntity(newViewport());
    for (auto* function : {static_cast<int (*)(KdDbObjectId&, KdGeMatrix3d&)>(ms2ps),
                           static_cast<int (*)(KdDbObjectId&, KdGeMatrix3d&)>(ps2ms)}) {
        KdGeMatrix3d matrix = untouched;
        EXPECT_EQ(function(null, matrix), 0);
        EXPECT_EQ(function(layer, matrix), 0);
        EXPECT_EQ(matrix, untouched);
        EXPECT_EQ(function(viewport, matrix), 1);
        EXPECT_NE(matrix, untouched);
    }
    KdGeMatrix3d matrix = untouched;
    EXPECT_EQ(ms2ps(matrix), 0) << "the model tab has tiles";
    EXPECT_EQ(ps2ms(matrix), 0);
    EXPECT_EQ(matrix, untouched);
}

TEST_F(ViewportsTest, TheBorderIsOutside)
{
    const std::unique_ptr<KdDbViewport> viewport(newViewport());
    EXPECT_EQ(isPointInViewPort({100, 100, 500}, viewport.get()), 1);
    EXPECT_EQ(isPointInViewPort({50.001, 149.999, 0}, viewport.get()), 1);
    EXPECT_EQ(isPointInViewPort({50, 100, 0}, viewport.get()), 0);
    EXPECT_EQ(isPointInViewPort({100, 150, 0}, viewport.get()), 0);
    EXPECT_EQ(isPointInViewPort({100, 151, 0}, viewport.get()), 0);
    EXPECT_EQ(isPointInViewPort({100, 100, 0}, nullptr), 0);
}

/// A host with the first layout current and two overlapping windows on it.
struct Sheet {
    KdDbObjectId first;
    KdDbObjectId second;
};

Sheet goToSheet()
{
    resbuf off{};
    off.restype = RTSHORT;
    EXPECT_EQ(kdedSetVar(L"TILEMODE", &off), RTNORM);
    Sheet sheet;
    sheet.first = addEntity(newViewport());
    KdDbViewport* second = newViewport();
    second->setCenterPoint({160, 100, 0});
    second->setViewHeight(25);
    second->setNumber(3);
    sheet.second = addEntity(second);
    return sheet;
}

TEST_F(ViewportsTest, TheLastViewportAtAPointWins)
{
    const Sheet sheet = goToSheet();
    KdDbObjectId found;
    double scale = 0;
    EXPECT_EQ(getViewPortIdIdByPoint(found, scale, {80, 100, 0}, &database()), 1);
    EXPECT_EQ(found, sheet.first);
    EXPECT_DOUBLE_EQ(scale, 2.0);
    EXPECT_EQ(getViewPortIdIdByPoint(found, scale, {130, 100, 0}, &database()), 1);
    EXPECT_EQ(found, sheet.second);
    EXPECT_DOUBLE_EQ(scale, 4.0);
}

TEST_F(ViewportsTest, NoViewportIsFoundOnTheModelTab)
{
    KdDbObjectId found = database().clayer();
    double scale = 7;
    EXPECT_EQ(getViewPortIdIdByPoint(found, scale, {80, 100, 0}, &database()), 0);
    EXPECT_EQ(found, database().clayer());
    EXPECT_EQ(scale, 7);
}

TEST_F(ViewportsTest, NoViewportIsFoundWhileOneIsEntered)
{
    const Sheet sheet = goToSheet();
    korra::queueInput("80,100");
    ASSERT_TRUE(korra::runCommand("MSPACE"));
    EXPECT_EQ(kdedGetCurViewportObjectId(), sheet.first);
    KdDbObjectId found;
    double scale = 7;
    EXPECT_EQ(getViewPortIdIdByPoint(found, scale, {80, 100, 0}, &database()), 0);
    KdGeMatrix3d current, first;
    KdDbObjectId id = sheet.first;
    EXPECT_EQ(ms2ps(current), 1);
    EXPECT_EQ(ms2ps(id, first), 1);
    EXPECT_EQ(current, first);
}

TEST_F(ViewportsTest, LeaveNothingOpenWhateverFails)
{
    sweepFaults<Sheet>(goToSheet, [](Sheet& sheet) {
        KdGeMatrix3d matrix;
        ms2ps(sheet.first, matrix);
        ps2ms(matrix);
        KdDbObjectId found;
        double scale = 0;
        getViewPortIdIdByPoint(found, scale, {130, 100, 0},
                               kddbHostApplicationServices()->workingDatabase());
    });
}

} // namespace
