#include "ge/resolvable.h"
#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "platform/gate.h"

#include <cmath>

KDRX_DEFINE_MEMBERS(KdDbCurve, KdDbEntity)

namespace {

/// A line or arc prolonged beyond its ends; null for any other curve.
std::unique_ptr<KdGeCurve3d> prolonged(const KdGeCurve3d& curve)
{
    if (const auto* const line = dynamic_cast<const KdGeLineSeg3d*>(&curve))
        return std::make_unique<KdGeLine3d>(line->pointOnLine(), line->derivative());
    if (const auto* const arc = dynamic_cast<const KdGeCircArc3d*>(&curve))
        return std::make_unique<KdGeCircArc3d>(arc->center(), arc->normal(), arc->refVec(),
                                               arc->radius(), 0.0, KdGe::kFullTurn);
    return nullptr;
}

} // namespace

const KdGeCurve3d* KdDbCurve::keptGeometry() const
{
    // A vertex of a free-standing polyline does not know whose it is, and cannot say when it
    // changes.
    if (objectId().isNull() && isKindOf(KdDbVertexCurve::desc()))
        kept_.reset();
    if (!kept_)
        kept_ = geometry();
    return kept_.get();
}

namespace {

/// What every question to a curve's geometry is. @param answer  gives the status
template <class Answer>
Kdapi::ErrorStatus ask(const KdDbCurve& curve, const char* operation, Answer answer)
{
    return platform::gate(operation, curve.objectId()).guard(Kdapi::eDegenerateGeometry, [&] {
        const KdGeCurve3d* const geometry = curve.keptGeometry();
        return geometry ? answer(*geometry) : Kdapi::eDegenerateGeometry;
    });
}

/// An end of an interval, where the curve has that end.
Kdapi::ErrorStatus giveEnd(double end, double& param)
{
    if (!std::isfinite(end))
        return Kdapi::eNotApplicable;
    param = end;
    return Kdapi::eOk;
}

bool hasParam(const KdGeCurve3d& curve, double param)
{
    return curve.startParam() <= param && param <= curve.endParam() && std::isfinite(param);
}

} // namespace

bool KdDbCurve::isClosed() const
{
    const KdGeCurve3d* const curve = keptGeometry();
    return curve && curve->isClosed();
}

Kdapi::ErrorStatus KdDbCurve::getStartPoint(KdGePoint3d& point) const
{
    return ask(*this, "KdDbCurve::getStartPoint", [&](const KdGeCurve3d& curve) {
        return curve.hasStartPoint(point) ? Kdapi::eOk : Kdapi::eNotApplicable;
    });
}

Kdapi::ErrorStatus KdDbCurve::getEndPoint(KdGePoint3d& point) const
{
    return ask(*this, "KdDbCurve::getEndPoint", [&](const KdGeCurve3d& curve) {
        return curve.hasEndPoint(point) ? Kdapi::eOk : Kdapi::eNotApplicable;
    });
}

Kdapi::ErrorStatus KdDbCurve::getStartParam(double& param) const
{
    return ask(*this, "KdDbCurve::getStartParam",
               [&](const KdGeCurve3d& curve) { return giveEnd(curve.startParam(), param); });
}

Kdapi::ErrorStatus KdDbCurve::getEndParam(double& param) const
{
    return ask(*this, "KdDbCurve::getEndParam",
               [&](const KdGeCurve3d& curve) { return giveEnd(curve.endParam(), param); });
}

Kdapi::ErrorStatus KdDbCurve::getPointAtParam(double param, KdGePoint3d& point) const
{
    return ask(*this, "KdDbCurve::getPointAtParam", [&](const KdGeCurve3d& curve) {
        if (!hasParam(curve, param))
            return Kdapi::eInvalidInput;
        point = curve.evalPoint(param);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbCurve::getDistAtParam(double param, double& dist) const
{
    return ask(*this, "KdDbCurve::getDistAtParam", [&](const KdGeCurve3d& curve) {
        if (!curve.isBounded())
            return Kdapi::eNotApplicable;
        if (!hasParam(curve, param))
            return Kdapi::eInvalidInput;
        dist = curve.length(curve.startParam(), param);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbCurve::getDistAtPoint(const KdGePoint3d& point, double& dist) const
{
    return ask(*this, "KdDbCurve::getDistAtPoint", [&](const KdGeCurve3d& curve) {
        if (!curve.isBounded())
            return Kdapi::eNotApplicable;
        const double param = curve.paramOf(point);
        if (!(curve.evalPoint(param).distanceTo(point) <= korra::resolvableDistance(point)))
            return Kdapi::ePointNotOnCurve;
        dist = curve.length(curve.startParam(), param);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbCurve::getPointAtDist(double dist, KdGePoint3d& point) const
{
    return ask(*this, "KdDbCurve::getPointAtDist", [&](const KdGeCurve3d& curve) {
        if (!curve.isBounded())
            return Kdapi::eNotApplicable;
        if (!(dist >= 0.0 && dist <= curve.length()))
            return Kdapi::eInvalidInput;
        point = curve.evalPoint(curve.paramAtLength(curve.startParam(), dist));
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbCurve::getClosestPointTo(const KdGePoint3d& given, KdGePoint3d& nearest,
                                                bool extend) const
{
    return ask(*this, "KdDbCurve::getClosestPointTo", [&](const KdGeCurve3d& curve) {
        const auto longer = extend ? prolonged(curve) : nullptr;
        nearest = (longer ? *longer : curve).closestPointTo(given);
        return Kdapi::eOk;
    });
}

void KdDbCurve::draw(korra::DrawSink& sink) const
{
    if (const auto curve = geometry())
        sink.curve(*curve);
}
