#include "kd/db/unbounded_lines.h"

#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbXline, KdDbCurve)
KDRX_DEFINE_MEMBERS(KdDbRay, KdDbCurve)

std::unique_ptr<KdGeCurve3d> KdDbXline::geometry() const
{
    if (!(direction_.length() > 0.0))
        return nullptr;
    return std::make_unique<KdGeLine3d>(base_, direction_);
}

Kdapi::ErrorStatus KdDbXline::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        base_.transformBy(matrix);
        direction_ = (matrix * direction_).normal();
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbXline::newEdge(int) const
{
    return new KdDbXline(base_, direction_);
}

void KdDbXline::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Xline");
    visitor.point(10, base_);
    korra::storedVector(visitor, 11, direction_);
}

std::unique_ptr<KdGeCurve3d> KdDbRay::geometry() const
{
    if (!(direction_.length() > 0.0))
        return nullptr;
    return std::make_unique<KdGeRay3d>(base_, direction_);
}

Kdapi::ErrorStatus KdDbRay::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        base_.transformBy(matrix);
        direction_ = (matrix * direction_).normal();
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbRay::newEdge(int) const
{
    return new KdDbRay(base_, direction_);
}

void KdDbRay::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Ray");
    visitor.point(10, base_);
    korra::storedVector(visitor, 11, direction_);
}
