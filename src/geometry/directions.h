#pragma once

#include "kd/ed.h"

/// The direction from one point to another in the plane, in [0, 2π).
inline double directionAngle(const KdGePoint3d& from, const KdGePoint3d& to)
{
    const kds_point start{from.x, from.y, from.z};
    const kds_point end{to.x, to.y, to.z};
    return kdutAngle(start, end);
}

/// The point at a direction and a distance from a point.
inline KdGePoint3d polarPoint(const KdGePoint3d& from, double angle, double distance)
{
    const kds_point start{from.x, from.y, from.z};
    kds_point end{};
    kdutPolar(start, angle, distance, end);
    return {end[0], end[1], end[2]};
}
