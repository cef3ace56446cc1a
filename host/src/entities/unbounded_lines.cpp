#include "kd/db/unbounded_lines.h"

#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbXline, KdDbCurve)
KDRX_DEFINE_MEMBERS(KdDbRay, KdDbCurve)

namespace korra {

Kdapi::ErrorStatus UnboundedLine::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        base_.transformBy(matrix);
        direction_ = (matrix * direction_).normal();
        return Kdapi::eOk;
    });
}

void UnboundedLine::describeAs(const char* marker, ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, marker);
    visitor.point(10, base_);
    storedVector(visitor, 11, direction_);
}

} // namespace korra

std::unique_ptr<KdGeCurve3d> KdDbXline::geometry() const
{
    if (!hasDirection())
        return nullptr;
    return std::make_unique<KdGeLine3d>(basePoint(), unitDir());
}

KdDbEntity* KdDbXline::newEdge(int) const
{
    return new KdDbXline(basePoint(), unitDir());
}

std::unique_ptr<KdGeCurve3d> KdDbRay::geometry() const
{
    if (!hasDirection())
        return nullptr;
    return std::make_unique<KdGeRay3d>(basePoint(), unitDir());
}

KdDbEntity* KdDbRay::newEdge(int) const
{
    return new KdDbRay(basePoint(), unitDir());
}

void KdDbXline::describe(korra::ObjectVisitor& visitor)
{
    describeAs("Xline", visitor);
}

void KdDbRay::describe(korra::ObjectVisitor& visitor)
{
    describeAs("Ray", visitor);
}
