#include "kd/ge/plane.h"

KdGePlane::KdGePlane(const KdGePoint3d& origin, const KdGeVector3d& normal) : origin_(origin)
{
    const double size = normal.length();
    normal_ = size == 0.0 ? KdGeVector3d::kIdentity : normal / size;
    xAxis_ = normal_.perpVector();
    yAxis_ = normal_.crossProduct(xAxis_);
}

KdGePlane::KdGePlane(const KdGePoint3d& origin, const KdGeVector3d& uAxis,
                     const KdGeVector3d& vAxis)
    : KdGePlane(origin, uAxis.crossProduct(vAxis))
{
    const double size = uAxis.length();
    xAxis_ = size == 0.0 ? KdGeVector3d::kIdentity : uAxis / size;
    yAxis_ = normal_.crossProduct(xAxis_);
}

void KdGePlane::getCoordSystem(KdGePoint3d& origin, KdGeVector3d& xAxis, KdGeVector3d& yAxis) const
{
    origin = origin_;
    xAxis = xAxis_;
    yAxis = yAxis_;
}

KdGePoint3d KdGePlane::closestPointTo(const KdGePoint3d& point) const
{
    return point - normal_ * signedDistanceTo(point);
}

bool KdGePlane::intersectWith(const KdGeLinearEnt3d& linear, KdGePoint3d& point,
                              const KdGeTol& tol) const
{
    const KdGeVector3d& span = linear.derivative();
    const double size = span.length();
    const double climb = span.dotProduct(normal_); // towards the normal per unit of parameter
    if (size <= tol.equalPoint() || std::abs(climb) <= tol.equalVector() * size)
        return false;

    const double param = -signedDistanceTo(linear.pointOnLine()) / climb;
    const double slack = tol.equalPoint() / size;
    if (!std::isfinite(param) || param < linear.startParam() - slack ||
        param > linear.endParam() + slack)
        return false;
    point = linear.evalPoint(param);
    return true;
}
