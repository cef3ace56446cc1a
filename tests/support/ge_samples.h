#pragma once

#include "kd/ge.h"

#include <initializer_list>
#include <memory>
#include <numbers>
#include <vector>

/// Curves and transforms that the tests of the geometry share.
namespace tests {

constexpr double kPi = std::numbers::pi;

using SharedCurve = std::shared_ptr<KdGeCurve3d>;

inline SharedCurve segment(const KdGePoint3d& start, const KdGePoint3d& end)
{
    return std::make_shared<KdGeLineSeg3d>(start, end);
}

inline SharedCurve bulged(const KdGePoint3d& start, const KdGePoint3d& end, double bulge)
{
    return std::make_shared<KdGeCircArc3d>(KdGeCircArc3d::fromBulge(start, end, bulge));
}

inline KdGeCompositeCurve3d composite(std::initializer_list<SharedCurve> pieces)
{
    std::vector<std::unique_ptr<KdGeCurve3d>> copies;
    for (const SharedCurve& piece : pieces)
        copies.push_back(piece->clone());
    return KdGeCompositeCurve3d(std::move(copies));
}

/// A turn in space, a reflection, a mirrored enlargement and a move far away.
inline std::vector<KdGeMatrix3d> similarities()
{
    const KdGeVector3d& z = KdGeVector3d::kZAxis;
    return {KdGeMatrix3d::rotation(0.7, {1, -2, 3}, {5, 6, 7}),
            KdGeMatrix3d::mirroring(KdGePlane({1, 0, 0}, {1, 1, 0.5})),
            KdGeMatrix3d::scaling(-37.0, {1, 1, 1}) * KdGeMatrix3d::rotation(2.1, z),
            KdGeMatrix3d::translation({4e6, -5e6, 0}) * KdGeMatrix3d::rotation(0.3, z)};
}

} // namespace tests
