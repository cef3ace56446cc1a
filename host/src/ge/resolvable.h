#pragma once

#include "kd/ge/point3d.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korra {

/// The tolerance for equal points, never below what coordinates of that size resolve.
inline double resolvableDistance(const KdGePoint3d& point)
{
    constexpr double kRoundings = 16.0 * std::numeric_limits<double>::epsilon();
    const double size = std::max({std::abs(point.x), std::abs(point.y), std::abs(point.z)});
    return std::max(KdGeContext::gTol.equalPoint(), kRoundings * size);
}

} // namespace korra
