#include "ge/plane_fit.h"

#include "ge/resolvable.h"

#include <algorithm>

namespace korra {

PlaneFit planeThrough(std::span<const KdGePoint3d> points)
{
    double tolerance = 0.0;
    for (const KdGePoint3d& point : points)
        tolerance = std::max(tolerance, resolvableDistance(point));
    PlaneFit fit;
    const KdGePoint3d& origin = points.front();
    const KdGePoint3d& far = *std::ranges::max_element(
        points, {}, [&](const KdGePoint3d& point) { return point.distanceTo(origin); });
    if (!(far.distanceTo(origin) > tolerance))
        return fit;
    fit.along = (far - origin).normal();
    const auto across = [&](const KdGePoint3d& point) {
        return fit.along.crossProduct(point - origin);
    };
    const KdGeVector3d widest = across(*std::ranges::max_element(
        points, {}, [&](const KdGePoint3d& point) { return across(point).length(); }));
    if (!(widest.length() > tolerance))
        return fit;
    fit.normal = widest.normal();
    fit.isFlat = std::ranges::all_of(points, [&](const KdGePoint3d& point) {
        return std::abs((point - origin).dotProduct(fit.normal)) <= tolerance;
    });
    return fit;
}

} // namespace korra
