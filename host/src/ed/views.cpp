#include "ed/views.h"

#include "blocks/draw_block.h"
#include "blocks/spaces.h"
#include "ed/editor.h"
#include "gi/extents_sink.h"
#include "objects/contents.h"
#include "objects/host_opened.h"
#include "platform/gate.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace korra::ed {
namespace {

/// Height and middle of the window of a new, empty drawing.
constexpr double kEmptyHeight = 9.0;
constexpr KdGePoint2d kEmptyCenter(6.0, 4.5);

struct Axes {
    KdGeVector3d x, y, z;
};

/// A view along the world's z axis has no level direction of its own: it takes the world's x axis,
/// from below the reverse one.
Axes viewAxes(const KdGeVector3d& direction)
{
    const KdGeVector3d z = direction.normal();
    const KdGeVector3d level = KdGeVector3d::kZAxis.crossProduct(direction);
    if (level.isZeroLength()) {
        const double side = z.z < 0.0 ? -1.0 : 1.0;
        return {KdGeVector3d::kXAxis * side, KdGeVector3d::kYAxis, KdGeVector3d::kZAxis * side};
    }
    const KdGeVector3d x = level.normal();
    return {x, z.crossProduct(x), z};
}

const KdDbViewportTableRecord* activeTile(const KdDbDatabase& database)
{
    return ObjectAccess::live<KdDbViewportTableRecord>(
        database.contents().record(TableKind::viewport, L"*Active"));
}

View viewOf(const KdDbViewportTableRecord& tile)
{
    View view;
    view.target = tile.target();
    view.direction = tile.viewDirection();
    view.twist = tile.viewTwist();
    view.center = tile.centerPoint();
    view.height = tile.height();
    view.lensLength = tile.lensLength();
    return view;
}

/// A damaged drawing may hold a view that shows nothing.
View madeUsable(View view)
{
    if (!std::isfinite(view.height) || view.height <= 0.0)
        view.height = kEmptyHeight;
    if (view.direction.isZeroLength())
        view.direction = KdGeVector3d::kZAxis;
    return view;
}

double screenAspect()
{
    const HostOptions& options = editor().options;
    return static_cast<double>(options.screenWidth) / options.screenHeight;
}

/// Width by height of what the current view is shown in.
double currentAspect(const KdDbDatabase& database)
{
    const PixelSize size = currentPixels(database);
    return size.width / size.height;
}

/// A window of a shape around a box in display coordinates.
struct Window {
    KdGePoint2d center = kEmptyCenter;
    double height = kEmptyHeight;
};

Window windowAround(const KdGeExtents3d& box, double aspect)
{
    Window window;
    if (box.isEmpty())
        return window;
    const KdGeVector3d size = box.maxPoint() - box.minPoint();
    const KdGePoint3d middle = box.minPoint() + size * 0.5;
    window.center = {middle.x, middle.y};
    window.height = std::max(size.y, size.x / aspect);
    if (window.height <= 0.0)
        window.height = 1.0;
    return window;
}

KdGeExtents3d extentsOf(KdDbObjectId block, const KdGeMatrix3d& frame)
{
    ExtentsSink sink(frame);
    drawBlockContents(block, sink);
    return sink.extents();
}

void showWindow(KdDbViewportTableRecord& tile, const Window& window)
{
    tile.setCenterPoint(window.center);
    tile.setHeight(window.height);
    tile.setWidth(window.height * screenAspect());
}

} // namespace

KdGeMatrix3d displayToWorld(const View& view)
{
    const Axes axes = viewAxes(view.direction);
    KdGeMatrix3d frame;
    frame.setCoordSystem(view.target, axes.x, axes.y, axes.z);
    return KdGeMatrix3d::rotation(-view.twist, axes.z, view.target) * frame;
}

KdGeMatrix3d worldToDisplay(const View& view)
{
    return displayToWorld(view).inverse();
}

KdDbObjectId currentViewport(const KdDbDatabase& database)
{
    if (database.tilemode()) {
        const KdDbViewportTableRecord* const tile = activeTile(database);
        return tile ? tile->objectId() : KdDbObjectId();
    }
    const KdDbObjectId entered = database.contents().enteredViewport;
    return entered.isNull() || entered.isErased() ? database.paperSpaceVportId() : entered;
}

View viewOf(const KdDbViewport& viewport)
{
    View view;
    view.target = viewport.viewTarget();
    view.direction = viewport.viewDirection();
    view.twist = viewport.twistAngle();
    view.center = viewport.viewCenter();
    view.height = viewport.viewHeight();
    view.lensLength = viewport.lensLength();
    view.perspective = viewport.isPerspectiveOn();
    return madeUsable(view);
}

View currentView(const KdDbDatabase& database)
{
    const KdDbObjectId current = currentViewport(database);
    if (const auto* const viewport = ObjectAccess::live<KdDbViewport>(current))
        return viewOf(*viewport);
    const auto* const tile = ObjectAccess::live<KdDbViewportTableRecord>(current);
    return tile ? madeUsable(viewOf(*tile)) : View();
}

bool setCurrentWindow(KdDbDatabase& database, const KdGePoint2d& center, double width,
                      double height)
{
    const double fitting = std::max(height, width / currentAspect(database));
    if (!std::isfinite(fitting) || fitting <= 0.0)
        return false;
    const KdDbObjectId current = currentViewport(database);
    if (HostOpened<KdDbViewport> viewport(current, KdDb::kForWrite); viewport) {
        viewport->setViewCenter(center);
        viewport->setViewHeight(fitting);
        return true;
    }
    HostOpened<KdDbViewportTableRecord> tile(current, KdDb::kForWrite);
    if (!tile)
        return false;
    showWindow(*tile, {center, fitting});
    return true;
}

namespace {

/// Display coordinates with the middle of the window as their origin.
KdGeMatrix3d displayToWindow(const View& view)
{
    return KdGeMatrix3d::translation({-view.center.x, -view.center.y, 0.0});
}

KdGeMatrix3d windowToSheet(const KdDbViewport& viewport, const View& view)
{
    return KdGeMatrix3d::translation(viewport.centerPoint().asVector()) *
           KdGeMatrix3d::scaling(viewport.height() / view.height);
}

/// What the camera sees, in coordinates of the window; the identity without perspective.
///
/// The eye is above the middle of the window, as far off as the direction is long. What is one
/// focal length away from it shows in true size and keeps its depth.
KdGeMatrix3d cameraImage(const KdDbViewport& viewport, const View& view)
{
    constexpr double kFilmDiagonal = 42.0; // millimetres, as lens lengths are
    KdGeMatrix3d image;
    const double windowWidth = view.height * viewport.width() / viewport.height();
    const double focus = view.lensLength / kFilmDiagonal * std::hypot(windowWidth, view.height);
    if (!view.perspective || !std::isfinite(focus) || focus <= 0.0)
        return image;
    const double eye = view.direction.length();
    const double sharp = eye - focus;
    image(2, 2) = (focus - sharp) / focus;
    image(2, 3) = sharp * sharp / focus;
    image(3, 2) = -1.0 / focus;
    image(3, 3) = eye / focus;
    return image;
}

} // namespace

KdGeMatrix3d displayToSheet(const KdDbViewport& viewport)
{
    const View view = viewOf(viewport);
    return windowToSheet(viewport, view) * displayToWindow(view);
}

KdGeMatrix3d modelToSheet(const KdDbViewport& viewport)
{
    const View view = viewOf(viewport);
    return windowToSheet(viewport, view) * cameraImage(viewport, view) * displayToWindow(view) *
           worldToDisplay(view);
}

PixelSize currentPixels(const KdDbDatabase& database)
{
    const PixelSize screen{static_cast<double>(editor().options.screenWidth),
                           static_cast<double>(editor().options.screenHeight)};
    const auto* const entered =
        ObjectAccess::live<KdDbViewport>(database.contents().enteredViewport);
    const auto* const sheet = ObjectAccess::live<KdDbViewport>(database.paperSpaceVportId());
    if (!entered || !sheet)
        return screen;
    const double perUnit = screen.height / viewOf(*sheet).height;
    return {entered->width() * perUnit, entered->height() * perUnit};
}

KdGeMatrix3d worldToPixels(const KdDbDatabase& database)
{
    const View view = currentView(database);
    return KdGeMatrix3d::scaling(currentPixels(database).height / view.height) *
           worldToDisplay(view);
}

KdGeExtents3d currentSpaceExtents(const KdDbDatabase& database, const KdGeMatrix3d& frame)
{
    return extentsOf(database.currentSpaceId(), frame);
}

bool zoomExtents(KdDbDatabase& database)
{
    const KdGeExtents3d box = currentSpaceExtents(database, worldToDisplay(currentView(database)));
    if (box.isEmpty())
        return false;
    const Window window = windowAround(box, currentAspect(database));
    return setCurrentWindow(database, window.center, 0.0, window.height);
}

void fitNewView(KdDbDatabase& database)
{
    DatabaseContents& contents = database.contents();
    const KdDbBlockTableRecord* const model = contents.block(kModelSpace);
    const KdDbObjectId id = contents.record(TableKind::viewport, L"*Active");
    if (!std::exchange(contents.activeViewMade, false) || !model)
        return;
    if (HostOpened<KdDbViewportTableRecord> tile(id, KdDb::kForWrite); tile) {
        showWindow(*tile, windowAround(extentsOf(model->objectId(), {}), screenAspect()));
        id.slot()->changed = false; // it follows from the drawing: no change for its file to hold
    }
}

} // namespace korra::ed

using namespace korra::ed;

KdDbObjectId kdedGetCurViewportObjectId()
{
    return platform::gate("kdedGetCurViewportObjectId").guard(KdDbObjectId(), [] {
        const KdDbDatabase* const database = currentDatabase();
        return database ? currentViewport(*database) : KdDbObjectId();
    });
}
