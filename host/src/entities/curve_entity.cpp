#include "entities/curve_entity.h"

#include "kd/db/curves.h"

namespace korra {

KdDbEntity* newCurveEntity(const KdGeCurve3d& curve)
{
    if (dynamic_cast<const KdGeLineSeg3d*>(&curve))
        return new KdDbLine(curve.startPoint(), curve.endPoint());
    const auto* const arc = dynamic_cast<const KdGeCircArc3d*>(&curve);
    if (!arc)
        return nullptr;
    const KdGePlane plane(KdGePoint3d::kOrigin, arc->normal());
    return new KdDbArc(arc->center(), arc->normal(), arc->radius(),
                       (arc->startPoint() - arc->center()).angleOnPlane(plane),
                       (arc->endPoint() - arc->center()).angleOnPlane(plane));
}

} // namespace korra
