#include "kd/ge/vector3d.h"

#include "kd/ge/angle.h"
#include "kd/ge/plane.h"
#include "kd/ge/point2d.h"
#include "kd/ge/point3d.h"

double KdGeVector2d::angle() const
{
    return KdGe::directionAngle(x, y);
}

bool KdGeVector3d::isParallelTo(const KdGeVector3d& v, const KdGeTol& tol) const
{
    return !isZeroLength(tol) && !v.isZeroLength(tol) &&
           crossProduct(v).length() <= tol.equalVector() * length() * v.length();
}

double KdGeVector3d::angleTo(const KdGeVector3d& v) const
{
    // The arc tangent keeps full precision near 0 and π, where an arc cosine loses half of it.
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double KdGeVector3d::angleTo(const KdGeVector3d& v, const KdGeVector3d& reference) const
{
    const double angle = angleTo(v);
    return KdGe::normalAngle(crossProduct(v).dotProduct(reference) < 0.0 ? -angle : angle);
}

double KdGeVector3d::angleOnPlane(const KdGePlane& plane) const
{
    return KdGe::directionAngle(dotProduct(plane.xAxis()), dotProduct(plane.yAxis()));
}

KdGeVector3d KdGeVector3d::perpVector() const
{
    const double size = length();
    if (size == 0.0)
        return kIdentity;
    constexpr double kNearWorldZ = 1.0 / 64.0; // where the rule changes its reference axis
    const KdGeVector3d n = *this / size;
    const bool nearZ = std::abs(n.x) < kNearWorldZ && std::abs(n.y) < kNearWorldZ;
    const KdGeVector3d perpendicular = (nearZ ? kYAxis : kZAxis).crossProduct(n);
    return perpendicular / perpendicular.length();
}

KdGeVector3d& KdGeVector3d::rotateBy(double angle, const KdGeVector3d& axis)
{
    const double size = axis.length();
    if (size == 0.0)
        return *this;
    const KdGeVector3d k = axis / size;
    const KdGeVector3d along = k * dotProduct(k);
    return *this =
               along + (*this - along) * std::cos(angle) + k.crossProduct(*this) * std::sin(angle);
}

KdGePoint3d& KdGePoint3d::rotateBy(double angle, const KdGeVector3d& axis, const KdGePoint3d& about)
{
    return *this = about + (*this - about).rotateBy(angle, axis);
}
