#pragma once

#include "kd/ge/curve3d.h"

/// The points that two curves have in common: of every kind, composites piece by piece.
///
/// Two arcs meet only where they lie in one plane. Where curves run along each other for a length,
/// the ends of that length count. Each point is listed once, in the order of the first curve. The
/// tolerance is never taken below what the size of the coordinates resolves.
class KdGeCurveCurveInt3d {
public:
    KdGeCurveCurveInt3d(const KdGeCurve3d& first, const KdGeCurve3d& second,
                        const KdGeTol& tol = KdGeContext::gTol);

    int numIntPoints() const { return static_cast<int>(points_.size()); }

    const KdGePoint3d& intPoint(int index) const
    {
        return points_[static_cast<std::size_t>(index)];
    }

private:
    std::vector<KdGePoint3d> points_;
};
