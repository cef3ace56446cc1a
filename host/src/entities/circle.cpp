#include "entities/entity_plane.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"

KDRX_DEFINE_MEMBERS(KdDbCircle, KdDbCurve)

KdDbCircle::KdDbCircle(const KdGePoint3d& center, const KdGeVector3d& normal, double radius)
    : center_(KdGeMatrix3d::worldToPlane(normal) * center),
      normal_(normal.normal()),
      radius_(radius)
{
}

KdGePoint3d KdDbCircle::center() const
{
    return KdGeMatrix3d::planeToWorld(normal_) * center_;
}

std::unique_ptr<KdGeCurve3d> KdDbCircle::geometry() const
{
    if (!(radius_ > 0.0))
        return nullptr;
    return std::make_unique<KdGeCircArc3d>(center(), normal_, radius_);
}

Kdapi::ErrorStatus KdDbCircle::transformBy(const KdGeMatrix3d& matrix)
{
    if (const auto status = beginTransform(matrix, true); status != Kdapi::eOk)
        return status;
    const korra::PlaneImage image(normal_, matrix);
    center_.transformBy(image.map);
    radius_ *= image.scale;
    thickness_ *= image.scale;
    normal_ = image.newNormal;
    return Kdapi::eOk;
}

KdDbEntity* KdDbCircle::newEdge(int) const
{
    return new KdDbCircle(center(), normal_, radius_);
}

void KdDbCircle::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2);
    visitor.real(39, thickness_, 0.0);
    visitor.point(10, center_);
    visitor.real(40, radius_);
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
}
