#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>

/// Picking one entity on the screen. Every function blocks until the user has answered.
///
/// Two layers: the first keeps the host's list-processing style (entity names, arrays) and gives
/// points in the user coordinate system; the second gives ids and world points. A status is one of
///   5100 (RTNORM)   picked
///   5000 (RTNONE)   ended without a pick: Enter, Space or the secondary button
///  -5001 (RTERROR)  nothing was there
///  -5002 (RTCAN)    cancelled
///  -5005 (RTKWORD)  a keyword was entered
/// or another one of the host; the outputs are then untouched where nothing else is said.
///
/// In the second layer an empty prompt shows the host's own. While Ctrl is held, a picked point is
/// snapped to intersections, middles, ends, insertion points and nodes.

// List-processing layer ---------------------------------------------------------------------------

/// The host's nested pick with paper space seen to: what is picked through a viewport gets the
/// viewport's model-to-paper matrix in front of its transform.
/// @param prompt  null: the host's own
/// @param entres  name of the innermost entity
/// @param viewportName  name of the viewport that was picked through, or picked itself; else
///                      untouched
/// @param ptres  three doubles, user coordinates: where to pick when `pickflag` is not 0, else the
///               picked point
/// @param pickflag  not 0: pick without asking
/// @param xformres  from the entity's coordinates to the world of the current space, row by row
/// @param refstkres  names of the containing entities, innermost first; the caller releases the
/// list
/// @return the host's status
ORVEX_API int ads_nentselp_Ex(const wchar_t* prompt, kds_name entres, kds_name viewportName,
                              double* ptres, int pickflag, double (*xformres)[4],
                              resbuf** refstkres);

/// Picks the top-level entity of the picked space: the outermost container, but never a viewport.
/// @param prompt  null: the host's own
/// @param entres  name of the top-level entity; of the innermost one, as the host gives it, while
///                the viewport that was picked through cannot be opened
/// @param ptres  three doubles: the picked point, user coordinates
/// @return the host's status
ORVEX_API int ads_entsel_Ex(const wchar_t* prompt, kds_name entres, double* ptres);

// Ids and world points ----------------------------------------------------------------------------

/// Picks the top-level entity.
/// @return RTNONE only when Enter, Space or the secondary button is held as the pick ends, and the
///         primary button is not; swapped buttons exchange their parts
ORVEX_API int EntSel_(const CString& prompt, KdDbObjectId& id, KdGePoint3d& pt);

/// Picks the innermost entity.
/// @param viewportId  the viewport that was picked through; null when there was none
/// @param pt  where to pick when `pickflag` is not 0; in any case the picked point then
/// @param pickflag  not 0: pick without asking
/// @param xform  from the entity's coordinates to the world of the current space
/// @return the host's status, RTERROR for every end without a pick. A picked entity without an id
///         prints a message and leaves the outputs untouched; the status is RTNORM all the same
ORVEX_API int NEntSelP(const CString& prompt, KdDbObjectId& id, KdDbObjectId& viewportId,
                       KdGePoint3d& pt, int pickflag, KdGeMatrix3d& xform);

/// Picks the top-level entity as EntSel_(), then the innermost one at the same point as NEntSelP().
///
/// Of an old-style polyline `id` is the polyline and `nestedId` the vertex.
/// @param nestedId  the top-level entity where the second pick gives none and `nestedId` was null
/// @return the status of EntSel_(); when that is RTNORM, of the second pick: `id` and `pt` of the
///         first pick stay when the second one fails
ORVEX_API int EntSelEx(const CString& prompt, KdDbObjectId& id, KdDbObjectId& viewportId,
                       KdGePoint3d& pt, KdDbObjectId& nestedId, KdGeMatrix3d& xform);

/// As EntSelEx(), but `pt` is the cursor's point on every status other than RTNORM and RTCAN.
ORVEX_API int EntSelExEx(const CString& prompt, KdDbObjectId& id, KdDbObjectId& viewportId,
                         KdGePoint3d& pt, KdDbObjectId& nestedId, KdGeMatrix3d& xform);

/// Where the cursor is, in the world. Waits for the next movement or click.
ORVEX_API KdGePoint3d getCurSelPt();
