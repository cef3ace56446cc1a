#include "kd/ge/curve3d.h"

bool KdGeCurve3d::isBounded() const
{
    return std::isfinite(startParam()) && std::isfinite(endParam());
}

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
    return isBounded() && startPoint().isEqualTo(endPoint(), tol);
}

double KdGeCurve3d::paramOf(const KdGePoint3d& point, const KdGeTol& tol) const
{
    if (isBounded()) {
        const bool atStart = startPoint() == point;
        if (atStart || (isClosed(tol) && startPoint().isEqualTo(point, tol)))
            return startParam();
        if (endPoint() == point)
            return endParam();
    }
    return nearestParam(point);
}

void KdGeCurve3d::flatten(const KdGeMatrix3d& matrix, double tolerance,
                          std::vector<KdGePoint3d>& vertices) const
{
    if (!isBounded())
        return;
    vertices.push_back(matrix * startPoint());
    flattenTail(matrix, tolerance, vertices);
}
