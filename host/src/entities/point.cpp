#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbPoint, KdDbEntity)

Kdapi::ErrorStatus KdDbPoint::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        position_.transformBy(matrix);
        place_.sweepBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbPoint::draw(korra::DrawSink& sink) const
{
    sink.point(position_);
}

void KdDbPoint::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Point");
    visitor.point(10, position_);
    place_.describeThickness(visitor);
    place_.describeNormal(visitor);
}
