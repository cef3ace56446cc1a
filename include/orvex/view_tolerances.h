#pragma once

#include "orvex/api.h"

#include "kd/ge.h"

/// Tolerances in drawing units that follow the zoom of the current view.
///
/// They are made anew with every call, of the system variables "VIEWSIZE", "SCREENSIZE", "GRIPSIZE"
/// and "PICKBOX". Where one cannot be read there is a result all the same, of each function its
/// own.

/// The height of one pixel.
/// @return -1.0 when the height of the view or the screen cannot be read, or the screen has none
ORVEX_API double GetPixelHeight();

/// Twice the grip size; a grip size that cannot be read is 5 pixels.
/// @return 0.5 where the height of a pixel is not above 0
ORVEX_API double GetGripFusionLength();

/// A tolerance whose points are equal within GetLeaderTol().
ORVEX_API KdGeTol GetGripPointTol();

/// Twice the grip size; unlike in GetGripFusionLength() one that cannot be read is 0.
/// @return 1.0 where the grip has a size and the height of a pixel cannot be told
ORVEX_API double GetLeaderTol();

/// The size of the pick box, 5 pixels where it is 0 or cannot be read.
///
/// A screen of up to 80 pixels counts as one of 800, and a pixel as no less than 0.0001.
ORVEX_API double GetSelectBoxLength();
