#pragma once

#include <cmath>

class KdDbEntity;
class KdGeCurve3d;

namespace korra {

/// A free-standing line or arc that shows a straight or circular curve; null for other curves. The
/// caller owns it.
KdDbEntity* newCurveEntity(const KdGeCurve3d& curve);

/// True for the bulge of an arc segment: the rise of a flatter arc over its chord is lost in the
/// rounding of its ends.
inline bool isBulged(double bulge)
{
    return std::abs(bulge) > 1e-14;
}

} // namespace korra
