#pragma once

#include "kd/ge.h"

#include <memory>

namespace korra {

/// The image of a curve, with its parameters: of an arc that is scaled unevenly an ellipse's, of a
/// composite one of as many pieces.
/// @return null under a perspective
std::unique_ptr<KdGeCurve3d> imageOf(const KdGeCurve3d& curve, const KdGeMatrix3d& matrix);

/// What moves every point along the plane's normal into the plane.
KdGeMatrix3d projectionOnto(const KdGePlane& plane);

} // namespace korra
