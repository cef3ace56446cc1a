#include "entities/entity_plane.h"
#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"

KDRX_DEFINE_MEMBERS(KdDbPoint, KdDbEntity)

Kdapi::ErrorStatus KdDbPoint::transformBy(const KdGeMatrix3d& matrix)
{
    if (const auto status = beginTransform(matrix, false); status != Kdapi::eOk)
        return status;
    position_.transformBy(matrix);
    normal_ = (matrix * normal_).normal();
    return Kdapi::eOk;
}

void KdDbPoint::draw(korra::DrawSink& sink) const
{
    sink.point(position_);
}

void KdDbPoint::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2);
    visitor.point(10, position_);
    visitor.real(39, thickness_, 0.0);
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
}
