#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "platform/gate.h"

KDRX_DEFINE_MEMBERS(KdDbCurve, KdDbEntity)

namespace {

/// A line or arc prolonged beyond its ends; any other curve as it is.
std::unique_ptr<KdGeCurve3d> prolonged(std::unique_ptr<KdGeCurve3d> curve)
{
    if (const auto* const line = dynamic_cast<const KdGeLineSeg3d*>(curve.get()))
        return std::make_unique<KdGeLine3d>(line->pointOnLine(), line->derivative());
    if (const auto* const arc = dynamic_cast<const KdGeCircArc3d*>(curve.get()))
        return std::make_unique<KdGeCircArc3d>(arc->center(), arc->normal(), arc->refVec(),
                                               arc->radius(), 0.0, KdGe::kFullTurn);
    return curve;
}

} // namespace

bool KdDbCurve::isClosed() const
{
    const auto curve = geometry();
    return curve && curve->isClosed();
}

Kdapi::ErrorStatus KdDbCurve::getStartPoint(KdGePoint3d& point) const
{
    return platform::gate("KdDbCurve::getStartPoint", objectId())
        .guard(Kdapi::eDegenerateGeometry, [&] {
            const auto curve = geometry();
            if (!curve)
                return Kdapi::eDegenerateGeometry;
            point = curve->startPoint();
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbCurve::getEndPoint(KdGePoint3d& point) const
{
    return platform::gate("KdDbCurve::getEndPoint", objectId())
        .guard(Kdapi::eDegenerateGeometry, [&] {
            const auto curve = geometry();
            if (!curve)
                return Kdapi::eDegenerateGeometry;
            point = curve->endPoint();
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbCurve::getClosestPointTo(const KdGePoint3d& given, KdGePoint3d& nearest,
                                                bool extend) const
{
    return platform::gate("KdDbCurve::getClosestPointTo", objectId())
        .guard(Kdapi::eDegenerateGeometry, [&] {
            auto curve = geometry();
            if (!curve)
                return Kdapi::eDegenerateGeometry;
            if (extend)
                curve = prolonged(std::move(curve));
            nearest = curve->closestPointTo(given);
            return Kdapi::eOk;
        });
}

void KdDbCurve::draw(korra::DrawSink& sink) const
{
    if (const auto curve = geometry())
        sink.curve(*curve);
}
