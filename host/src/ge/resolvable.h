#pragma once

#include "kd/ge/point3d.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korra {

/// How far rounding moves a point that was reckoned from coordinates of a size.
inline double roundingOf(double size)
{
    return 16.0 * std::numeric_limits<double>::epsilon() * size;
}

inline double largestCoordinate(const KdGePoint3d& point)
{
    return std::max({std::abs(point.x), std::abs(point.y), std::abs(point.z)});
}

/// The tolerance for equal points, never below what coordinates of that size resolve.
inline double resolvableDistance(const KdGePoint3d& point)
{
    return std::max(KdGeContext::gTol.equalPoint(), roundingOf(largestCoordinate(point)));
}

} // namespace korra
