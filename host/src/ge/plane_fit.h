#pragma once

#include "kd/ge.h"

#include <span>

namespace korra {

/// How points lie.
struct PlaneFit {
    KdGeVector3d along;  ///< unit, from the first point to the farthest; zero where all are one
    KdGeVector3d normal; ///< unit, of the plane that the farthest beside it spans; zero in a line
    bool isFlat = true;  ///< no point is beside that plane
};

/// @param points  finite, at least one
PlaneFit planeThrough(std::span<const KdGePoint3d> points);

} // namespace korra
