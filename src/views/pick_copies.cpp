#include "orvex/pick_copies.h"

#include "orvex/coordinates.h"
#include "orvex/picking.h"
#include "pick_support.h"
#include "support/opened.h"
#include "support/resbuf_list.h"

#include "kd/ed.h"

#include <memory>

using support::Opened;
using support::ResbufList;

namespace {

struct PickedEntity {
    KdDbObjectId id; ///< null when the picked name has no id
    KdDbObjectId outerId;
    KdGePoint3d point;
    KdGeMatrix3d transform;
};

int pickEntity(const wchar_t* prompt, PickedEntity& picked)
{
    kds_name name{}, viewportName{};
    kds_point point{};
    kds_matrix transform{};
    ResbufList chain;
    const int status =
        ads_nentselp_Ex(prompt, name, viewportName, point, 0, transform, chain.link());
    if (status == RTERROR)
        return pick::isPrimaryButtonHeld() ? RTERROR : RTNONE;
    if (status != RTNORM || kddbGetObjectId(picked.id, name) != Kdapi::eOk)
        return status;

    UCS2WCS(KdGePoint3d(point[0], point[1], point[2]), picked.point);
    picked.outerId = picked.id;
    if (const resbuf* const top = pick::topLevel(chain.get()))
        kddbGetObjectId(picked.outerId, top->resval.rlname);
    transKdsMetrixToKdGeMetrix(picked.transform, transform);
    return RTNORM;
}

std::unique_ptr<KdDbEntity> newLine(const KdDbPolyline& polyline, unsigned int index)
{
    KdGeLineSeg3d segment;
    if (polyline.getLineSegAt(index, segment) != Kdapi::eOk)
        return nullptr;
    return std::make_unique<KdDbLine>(segment.startPoint(), segment.endPoint());
}

std::unique_ptr<KdDbEntity> newArc(const KdDbPolyline& polyline, unsigned int index)
{
    KdGeCircArc3d arc;
    if (polyline.getArcSegAt(index, arc) != Kdapi::eOk)
        return nullptr;
    const KdGePlane plane(KdGePoint3d::kOrigin, arc.normal());
    const double start = (arc.startPoint() - arc.center()).angleOnPlane(plane);
    const double end = (arc.endPoint() - arc.center()).angleOnPlane(plane);
    return std::make_unique<KdDbArc>(arc.center(), arc.normal(), arc.radius(), start, end);
}

/// A line or arc that covers one segment; null for a segment of another kind.
std::unique_ptr<KdDbEntity> newSegment(const KdDbPolyline& polyline, unsigned int index)
{
    switch (polyline.segType(index)) {
    case KdDbPolyline::kLine:
        return newLine(polyline, index);
    case KdDbPolyline::kArc:
        return newArc(polyline, index);
    default:
        return nullptr;
    }
}

/// The first segment on which the point of the polyline nearest to `point` lies; null when it lies
/// on none or the segment is of another kind.
std::unique_ptr<KdDbEntity> newSegmentAt(const KdDbPolyline& polyline, const KdGePoint3d& point)
{
    KdGePoint3d nearest;
    if (polyline.getClosestPointTo(point, nearest, false) != Kdapi::eOk)
        return nullptr;
    const KdGePoint3d inPlane = KdGeMatrix3d::worldToPlane(polyline.normal()) * nearest;
    for (unsigned int index = 0; index < polyline.numVerts(); ++index) {
        double param = 0.0;
        if (polyline.onSegAt(index, KdGePoint2d(inPlane.x, inPlane.y), param))
            return newSegment(polyline, index);
    }
    return nullptr;
}

} // namespace

int rx_entsel(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt, KdDbObjectId& id,
              KdDbObjectId& outerId, KdGeMatrix3d* xform)
{
    PickedEntity picked;
    const int status = pickEntity(prompt, picked);
    if (status != RTNORM || picked.id.isNull())
        return status;
    id = picked.id;
    pt = picked.point;
    outerId = picked.outerId;

    Opened<KdDbEntity> original(id, KdDb::kForRead);
    if (!original)
        return RTNORM;
    if (xform)
        *xform = picked.transform;
    std::unique_ptr<KdDbEntity> copy(static_cast<KdDbEntity*>(original->clone()));
    const bool moved = copy && copy->transformBy(picked.transform) == Kdapi::eOk;
    original.close();

    std::unique_ptr<KdDbEntity> segment;
    if (const KdDbPolyline* const polyline = KdDbPolyline::cast(copy.get()))
        segment = newSegmentAt(*polyline, moved ? pt : picked.transform.inverse() * pt);
    ent = segment ? segment.release() : copy.release();
    return RTNORM;
}

int rx_entsel(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt, KdDbObjectId& id,
              KdGeMatrix3d* xform)
{
    KdDbObjectId outerId;
    return rx_entsel(prompt, ent, pt, id, outerId, xform);
}

int rx_entsel(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt, KdGeMatrix3d* xform)
{
    KdDbObjectId id;
    return rx_entsel(prompt, ent, pt, id, xform);
}

int rx_entsel(const wchar_t* prompt, KdDbObjectId& id, KdGePoint3d& pt, KdGeMatrix3d* xform)
{
    KdDbEntity* copy = nullptr;
    const int status = rx_entsel(prompt, copy, pt, id, xform);
    delete copy;
    return status;
}

int rx_entsel(const wchar_t* prompt, const wchar_t* valuePrompt, const wchar_t* keywords,
              KdDbEntity*& ent, KdGePoint3d& pt, double& value, KdGeMatrix3d* xform)
{
    kdedInitGet(0, keywords);
    const int picked = rx_entsel(prompt, ent, pt, xform);
    if (picked != RTKWORD)
        return picked;
    const int status = kdedGetReal(valuePrompt, &value);
    return status == RTNORM ? RTKWORD : status;
}

int rx_entsel_ext(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt, KdDbObjectId& id,
                  KdGeMatrix3d* xform)
{
    const int status = rx_entsel(prompt, ent, pt, id, xform);
    if (status != RTCAN && status != RTNORM)
        pt = getCurSelPt();
    return status;
}
