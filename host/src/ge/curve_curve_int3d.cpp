#include "kd/ge/curve_curve_int3d.h"

#include "ge/common_points.h"

KdGeCurveCurveInt3d::KdGeCurveCurveInt3d(const KdGeCurve3d& first, const KdGeCurve3d& second,
                                         const KdGeTol& tol)
{
    const korra::CurveSet pieces = korra::piecesOf(first);
    points_ = korra::commonPoints(pieces, korra::piecesOf(second), pieces, tol);
}
