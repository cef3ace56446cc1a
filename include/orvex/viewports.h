#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Paper space: how a viewport of a sheet shows model space, and which viewport lies at a point.
///
/// The matrices are made from the viewport's own view, in one order: view system, projection,
/// sheet. Each maps world coordinates of model space to sheet coordinates (ms2ps) or back (ps2ms).

/// @param vp  open for reading; must not be null
ORVEX_API void ms2ps(KdDbViewport* vp, KdGeMatrix3d& mat);
ORVEX_API void ps2ms(KdDbViewport* vp, KdGeMatrix3d& mat);

/// The matrices of a viewport by its id.
/// @param mat  written only when the result is 1
/// @return 1; 0 for an id that is null, cannot be opened for reading or is no viewport
ORVEX_API int ms2ps(KdDbObjectId& vpId, KdGeMatrix3d& mat);
ORVEX_API int ps2ms(KdDbObjectId& vpId, KdGeMatrix3d& mat);

/// The matrices of the current viewport; 0 on the model tab, whose tiles are none of a sheet.
ORVEX_API int ms2ps(KdGeMatrix3d& mat);
ORVEX_API int ps2ms(KdGeMatrix3d& mat);

/// Whether a point lies inside a viewport's extents in x and y; its border is outside.
/// @param pt  sheet coordinates; z is ignored
/// @return 1 or 0; 0 for a null viewport
ORVEX_API int isPointInViewPort(KdGePoint3d pt, const KdDbViewport* vp);

/// The viewport of the current layout at a point; where several overlap, the last one in the
/// layout's array.
/// @param vpId  the viewport; untouched when there is none
/// @param scale  its custom scale, sheet units per model unit; untouched when there is none
/// @param pt  sheet coordinates
/// @param db  must not be null
/// @return 1; 0 also on the model tab and while a viewport of the layout is entered
ORVEX_API int getViewPortIdIdByPoint(KdDbObjectId& vpId, double& scale, const KdGePoint3d& pt,
                                     KdDbDatabase* db);
