#include "orvex/attachment.h"

#include "geometry/directions.h"
#include "orvex/entity_type.h"
#include "orvex/planar.h"
#include "support/block_contents.h"
#include "support/opened.h"
#include "support/pieces.h"

#include <algorithm>
#include <cmath>
#include <optional>

using support::Opened;
using support::Pieces;

bool GetComplexEntTransform(const KdDbEntity* container, KdDbObjectId target, KdGeMatrix3d& xform)
{
    const KdDbBlockReference* const reference = KdDbBlockReference::cast(container);
    if (!reference)
        return false;
    const Opened<KdDbBlockTableRecord> block(reference->blockTableRecord(), KdDb::kForRead);
    const auto entities = block ? support::entitiesOf(*block) : std::nullopt;
    if (!entities)
        return false;

    const KdGeMatrix3d inside = xform * reference->blockTransform();
    for (const KdDbObjectId id : support::attributesOf(*reference)) {
        if (id == target) {
            xform = inside;
            return true;
        }
    }
    for (const KdDbObjectId id : *entities) {
        KdGeMatrix3d found = inside;
        if (id != target) {
            const Opened<KdDbEntity> entity(id, KdDb::kForRead);
            if (!entity || !GetComplexEntTransform(entity.get(), target, found))
                continue;
        }
        xform = found;
        return true;
    }
    return false;
}

bool GetComplexEntTransform(KdDbObjectId containerId, KdDbObjectId target, KdGeMatrix3d& xform)
{
    if (target.isNull() || target == containerId) {
        xform.setToIdentity();
        return true;
    }
    const Opened<KdDbEntity> container(containerId, KdDb::kForRead);
    return container && GetComplexEntTransform(container.get(), target, xform);
}

bool GetSubIdsFromBlockRef(KdDbBlockReference* reference, KdArray<KdDbObjectId>& ids)
{
    if (!KdDbBlockReference::cast(reference))
        return true;
    const Opened<KdDbBlockTableRecord> block(reference->blockTableRecord(), KdDb::kForRead);
    const auto entities = block ? support::entitiesOf(*block) : std::nullopt;
    if (!entities)
        return true;
    for (const KdDbObjectId id : support::attributesOf(*reference))
        ids.append(id);
    for (const KdDbObjectId id : *entities) {
        const Opened<KdDbEntity> entity(id, KdDb::kForRead);
        if (KdDbBlockReference* const nested = KdDbBlockReference::cast(entity.get()))
            GetSubIdsFromBlockRef(nested, ids);
        else if (entity)
            ids.append(id);
    }
    return true;
}

namespace {

constexpr double kFullTurn = 6.283185307179586;
constexpr double kHalfTurn = 3.141592653589793;
constexpr double kQuarterTurn = 1.5707963267948966;

/// Where an annotation attaches to a curve.
struct Attachment {
    KdGePoint3d point;
    double angle = 0.0;
};

/// Of the two directions along a curve the one that has a point on its left.
Attachment attached(const KdGePoint3d& point, double oneWay, double otherWay,
                    const KdGePoint3d& pickPoint)
{
    return {point, GetArcStartAngle(oneWay, otherWay, directionAngle(point, pickPoint))};
}

/// @param radial  the direction from the centre to the point
Attachment attachedToRound(const KdGePoint3d& point, double radial, const KdGePoint3d& pickPoint)
{
    constexpr double kProbe = 10.0;
    const double tangent = radial + kQuarterTurn;
    const double oneWay = directionAngle(point, polarPoint(point, tangent, kProbe));
    const double otherWay = directionAngle(point, polarPoint(point, tangent, -kProbe));
    return attached(point, oneWay, otherWay, pickPoint);
}

Attachment attachToLine(const KdDbLine& line, const KdGeMatrix3d& xform,
                        const KdGePoint3d& pickPoint)
{
    const KdGePoint3d start = xform * line.startPoint();
    const KdGePoint3d end = xform * line.endPoint();
    KdGePoint3d foot = end; // for a line of no length
    GetPerpendPoint(pickPoint, start, end, foot);
    return attached(foot, directionAngle(foot, start), directionAngle(foot, end), pickPoint);
}

Attachment attachToCircle(const KdDbCircle& circle, const KdGeMatrix3d& xform,
                          const KdGePoint3d& pickPoint)
{
    const KdGePoint3d center = xform * circle.center();
    const double radius = circle.radius() * xform.scale();
    const double radial = directionAngle(center, pickPoint);
    return attachedToRound(polarPoint(center, radial, radius), radial, pickPoint);
}

double notNegative(double angle)
{
    return angle < 0.0 ? angle + kFullTurn : angle;
}

Attachment attachToArc(const KdDbArc& arc, const KdGeMatrix3d& xform, const KdGePoint3d& pickPoint)
{
    constexpr double kTolerance = 1e-10;
    const KdGePoint3d center = xform * arc.center();
    const double radius = arc.radius() * xform.scale();
    double startAngle = notNegative(arc.startAngle());
    if (std::abs(startAngle - kFullTurn) < kTolerance)
        startAngle = 0.0;
    const double sweep = notNegative(arc.endAngle() - startAngle);
    const double radial = directionAngle(center, pickPoint);
    const double turn = notNegative(radial - startAngle);

    KdGePoint3d start, end;
    arc.getStartPoint(start);
    arc.getEndPoint(end);
    KdGePoint3d point = polarPoint(center, radial, radius);
    if (turn > sweep) // in the gap: the nearer end
        point = xform * (turn <= sweep / 2.0 + kHalfTurn ? end : start);
    return attachedToRound(point, directionAngle(center, point), pickPoint);
}

/// Attaches to a line, a circle or an arc; nullopt for other kinds.
std::optional<Attachment> attachTo(const KdDbObject& entity, const KdGeMatrix3d& xform,
                                   const KdGePoint3d& pickPoint)
{
    switch (getEntType(&entity)) {
    case kLineType:
        return attachToLine(static_cast<const KdDbLine&>(entity), xform, pickPoint);
    case kCircleType:
        return attachToCircle(static_cast<const KdDbCircle&>(entity), xform, pickPoint);
    case kArcType:
        return attachToArc(static_cast<const KdDbArc&>(entity), xform, pickPoint);
    default:
        return std::nullopt;
    }
}

void attachToPolyline(const KdDbPolyline& polyline, const KdGeMatrix3d& xform,
                      const KdGePoint3d& pickPoint, KdGePoint3d& point, double& angle)
{
    double nearest = 99999999999999.0;
    KdGePoint3d best;
    const Pieces pieces(polyline);
    for (KdDbEntity* piece : pieces) {
        piece->transformBy(xform);
        const auto candidate = attachTo(*piece, KdGeMatrix3d::kIdentity, pickPoint);
        const double distance = candidate ? pickPoint.distanceTo(candidate->point) : nearest;
        if (distance < nearest) {
            nearest = distance;
            best = candidate->point;
            angle = candidate->angle;
        }
    }
    point = best;
}

} // namespace

bool GetAttachedParam(KdGePoint3d& point, double& angle, const KdDbObjectId& entityId,
                      const KdGeMatrix3d& xform, const KdGePoint3d& pickPoint)
{
    const Opened<KdDbObject> entity(entityId, KdDb::kForRead);
    if (!entity)
        return false;
    if (const KdDbPolyline* const polyline = KdDbPolyline::cast(entity.get())) {
        attachToPolyline(*polyline, xform, pickPoint, point, angle);
        return true;
    }
    const auto attachment = attachTo(*entity, xform, pickPoint);
    if (!attachment)
        return false;
    point = attachment->point;
    angle = attachment->angle;
    return true;
}
