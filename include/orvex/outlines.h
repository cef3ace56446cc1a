#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Curved outlines as light polylines of straight segments.
///
/// A new polyline is in no database and belongs to the caller. Its vertices have the x and y of the
/// points that were found; it is not flagged closed.

/// A polyline through points of an ellipse or a spline: its start, the points at equal distances
/// from 0 on, its end. The start is there twice.
///
/// The distance is a fortieth of the diagonal of the extents in the plane or a twentieth of the
/// length, whichever is smaller, and never less than a hundred-thousandth of the length.
/// @param curve  open for reading
/// @return null for any other curve
ORVEX_API KdDbPolyline* CreateBounding(KdDbCurve* curve);

/// One polyline around a region, along its edges in the order in which it explodes into them; each
/// is walked in the direction that continues the one before. The first vertex comes again at the
/// end. A region of several loops gives one polyline that goes from loop to loop.
/// @param region  open for reading
/// @param outline  the new polyline; untouched on failure
/// @return 1; 0 for null, for a missing edge among the first two, and where no edge gives a point
ORVEX_API int GetPolylineFromRegion(KdDbRegion* region, KdDbPolyline*& outline);
