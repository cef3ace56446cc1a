#include "kd/ge/curve3d.h"

bool KdGeCurve3d::hasStartPoint(KdGePoint3d& point) const
{
    if (!std::isfinite(startParam()))
        return false;
    point = startPoint();
    return true;
}

bool KdGeCurve3d::hasEndPoint(KdGePoint3d& point) const
{
    if (!std::isfinite(endParam()))
        return false;
    point = endPoint();
    return true;
}

bool KdGeCurve3d::isClosed(const KdGeTol& tol) const
{
    return std::isfinite(startParam()) && startPoint().isEqualTo(endPoint(), tol);
}

double KdGeCurve3d::paramOf(const KdGePoint3d& point, const KdGeTol& tol) const
{
    const bool atSeam = isClosed(tol) && startPoint().isEqualTo(point, tol);
    return atSeam ? startParam() : nearestParam(point);
}

void KdGeCurve3d::flatten(const KdGeMatrix3d& matrix, double tolerance,
                          std::vector<KdGePoint3d>& vertices) const
{
    KdGePoint3d start;
    if (!hasStartPoint(start))
        return;
    vertices.push_back(matrix * start);
    flattenTail(matrix, tolerance, vertices);
}
