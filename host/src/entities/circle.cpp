#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbCircle, KdDbCurve)

KdDbCircle::KdDbCircle(const KdGePoint3d& center, const KdGeVector3d& normal, double radius)
    : place_(normal), center_(place_.toPlane() * center), radius_(radius)
{
}

KdGePoint3d KdDbCircle::center() const
{
    return place_.toBlock() * center_;
}

std::unique_ptr<KdGeCurve3d> KdDbCircle::geometry() const
{
    if (!(radius_ > 0.0))
        return nullptr;
    return std::make_unique<KdGeCircArc3d>(center(), normal(), radius_);
}

Kdapi::ErrorStatus KdDbCircle::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::similarities, [&] {
        const korra::PlaneImage image = place_.transformBy(matrix);
        center_.transformBy(image.map);
        radius_ *= image.scale;
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbCircle::newEdge(int) const
{
    return new KdDbCircle(center(), normal(), radius_);
}

void KdDbCircle::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Circle");
    place_.describeThickness(visitor);
    visitor.point(10, center_);
    visitor.real(40, radius_);
    place_.describeNormal(visitor);
}
