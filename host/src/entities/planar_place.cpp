#include "kd/own/planar_place.h"

#include "objects/object_visitor.h"

#include <cmath>

namespace korra {

double PlaneImage::angle(double radians) const
{
    const KdGeVector3d image = map * KdGeVector3d(std::cos(radians), std::sin(radians), 0.0);
    return KdGe::directionAngle(image.x, image.y);
}

KdGePoint3d PlanarPlace::pointAt(const KdGePoint2d& point) const
{
    return toBlock() * KdGePoint3d(point.x, point.y, elevation_);
}

KdGePoint2d PlanarPlace::below(const KdGePoint3d& point) const
{
    const KdGePoint3d flat = toPlane() * point;
    return {flat.x, flat.y};
}

KdGeVector3d PlanarPlace::direction(double radians) const
{
    return toBlock() * KdGeVector3d(std::cos(radians), std::sin(radians), 0.0);
}

double PlanarPlace::angleOf(const KdGeVector3d& direction) const
{
    const KdGeVector3d flat = toPlane() * direction;
    return KdGe::directionAngle(flat.x, flat.y);
}

PlaneImage PlanarPlace::transformBy(const KdGeMatrix3d& matrix)
{
    const KdGeMatrix3d toNewBlock = matrix * toBlock();
    const KdGeVector3d x = toNewBlock * KdGeVector3d::kXAxis;
    const KdGeVector3d y = toNewBlock * KdGeVector3d::kYAxis;
    const KdGeVector3d across = x.crossProduct(y);
    const double area = across.length();
    normal_ = across / area;
    const PlaneImage image{toPlane() * toNewBlock, std::sqrt(area)};
    elevation_ = (image.map * KdGePoint3d(0.0, 0.0, elevation_)).z;
    // Below 0 for a mirroring matrix: it takes the old normal to the far side of the new plane.
    thickness_ *= (image.map * KdGeVector3d::kZAxis).z;
    return image;
}

void PlanarPlace::sweepBy(const KdGeMatrix3d& matrix)
{
    const KdGeVector3d swept = matrix * normal_.normal();
    thickness_ *= swept.length();
    normal_ = swept.normal();
}

void PlanarPlace::describeElevation(ObjectVisitor& visitor)
{
    visitor.real(38, elevation_, 0.0);
}

void PlanarPlace::describeThickness(ObjectVisitor& visitor)
{
    visitor.real(39, thickness_, 0.0);
}

void PlanarPlace::describeNormal(ObjectVisitor& visitor)
{
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
}

void PlanarPlace::describeElevationPoint(ObjectVisitor& visitor)
{
    KdGePoint3d point(0.0, 0.0, elevation_);
    visitor.point(10, point);
    elevation_ = point.z;
}

} // namespace korra
