#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbLine, KdDbCurve)

Kdapi::ErrorStatus KdDbLine::setStartPoint(const KdGePoint3d& point)
{
    return set("KdDbLine::setStartPoint", start_, point);
}

Kdapi::ErrorStatus KdDbLine::setEndPoint(const KdGePoint3d& point)
{
    return set("KdDbLine::setEndPoint", end_, point);
}

std::unique_ptr<KdGeCurve3d> KdDbLine::geometry() const
{
    return std::make_unique<KdGeLineSeg3d>(start_, end_);
}

Kdapi::ErrorStatus KdDbLine::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        start_.transformBy(matrix);
        end_.transformBy(matrix);
        place_.sweepBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbLine::draw(korra::DrawSink& sink) const
{
    sink.segment(start_, end_);
}

KdDbEntity* KdDbLine::newEdge(int) const
{
    return new KdDbLine(start_, end_);
}

void KdDbLine::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Line");
    place_.describeThickness(visitor);
    visitor.point(10, start_);
    visitor.point(11, end_);
    place_.describeNormal(visitor);
}
