#pragma once

#include "kd/db.h"

#include <optional>
#include <vector>

/// The views of a drawing: of the model tab, of a sheet, and of the floating viewports in a sheet.
///
/// A view's display system has its origin at the target; its z axis points from there to the eye,
/// its x axis lies level (at a right angle to the world's z axis), both turned by the twist.
namespace korra::ed {

struct View {
    KdGePoint3d target;
    KdGeVector3d direction = KdGeVector3d::kZAxis; ///< from the target to the eye, of any length
    double twist = 0.0;                            ///< radians
    KdGePoint2d center;                            ///< of the window, display coordinates
    double height = 1.0;                           ///< of the window, drawing units
    double lensLength = 50.0;                      ///< millimetres
    bool perspective = false;
};

/// From the display system of a view to the world.
KdGeMatrix3d displayToWorld(const View& view);
KdGeMatrix3d worldToDisplay(const View& view);

/// The viewport that input and view variables belong to; null when the drawing has none.
KdDbObjectId currentViewport(const KdDbDatabase& database);

/// The view of the current viewport.
View currentView(const KdDbDatabase& database);

/// Gives the current viewport another window on its view.
/// @return false, nothing changed, when it cannot be written
bool setCurrentWindow(KdDbDatabase& database, const KdGePoint2d& center, double width,
                      double height);

/// The view through a floating viewport, or of a sheet's own one.
View viewOf(const KdDbViewport& viewport);

/// From the display system of a floating viewport's view to the sheet, as without perspective.
KdGeMatrix3d displayToSheet(const KdDbViewport& viewport);

/// From the model to the sheet as a floating viewport shows it, in perspective where that is on.
KdGeMatrix3d modelToSheet(const KdDbViewport& viewport);

/// The viewports of the current sheet that are on, the sheet's own one left out, in its order.
std::vector<const KdDbViewport*> floatingViewports(const KdDbDatabase& database);

/// The last floating viewport that a sheet point lies strictly inside of; null when there is none.
const KdDbViewport* floatingViewportAt(const KdDbDatabase& database, const KdGePoint3d& sheetPoint);

/// Pixels of the current viewport: the screen, or what a floating viewport takes of it.
struct PixelSize {
    double width;
    double height;
};

PixelSize currentPixels(const KdDbDatabase& database);

/// From the world of the current space to pixels in x and y; the origin lies anywhere.
KdGeMatrix3d worldToPixels(const KdDbDatabase& database);

/// The exact box of what the current space shows, in a system that `frame` maps the world to.
KdGeExtents3d currentSpaceExtents(const KdDbDatabase& database,
                                  const KdGeMatrix3d& frame = KdGeMatrix3d::kIdentity);

/// Makes the current window fit the extents of the current space. @return false when it is empty
bool zoomExtents(KdDbDatabase& database);

/// Makes the view of a model tab that has come without one fit its extents.
void fitNewView(KdDbDatabase& database);

/// Goes to the model tab, or from it to the sheet that was current last; on the tab already, stays.
void setTileMode(KdDbDatabase& database, bool on);

/// The number of the current viewport: 1 is the sheet itself, more its viewports by their own
/// number, and 2 the model tab.
short currentViewportNumber(const KdDbDatabase& database);

/// Enters a floating viewport by its number, or with 1 goes back to the sheet.
/// @return false, nothing changed, when there is no such viewport or it is off
bool setCurrentViewportNumber(KdDbDatabase& database, int number);

} // namespace korra::ed
