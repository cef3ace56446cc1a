#include "commands.h"

#include "open_object.h"
#include "output.h"
#include "prompts.h"

#include <memory>
#include <vector>

namespace {

KdDbDatabase* drawing()
{
    return kddbHostApplicationServices()->workingDatabase();
}

/// What a pick found.
struct Picked {
    KdDbObjectId outer;
    KdDbObjectId nested; ///< the same as the outer one where nothing contains it
    KdGeMatrix3d transform;
};

int pick(const wchar_t* prompt, Picked& picked)
{
    KdDbObjectId viewport;
    KdGePoint3d point;
    return EntSelEx(prompt, picked.outer, viewport, point, picked.nested, picked.transform);
}

/// A copy of the picked entity as it shows, also through blocks.
/// @param status  why there is none
std::unique_ptr<KdDbEntity> shownCopy(const Picked& picked, Kdapi::ErrorStatus& status)
{
    const auto entity = openObject<KdDbEntity>(picked.nested, KdDb::kForRead, status);
    if (!entity)
        return nullptr;
    KdDbEntity* copy = nullptr;
    status = entity->getTransformedCopy(
        picked.nested == picked.outer ? KdGeMatrix3d::kIdentity : picked.transform, copy);
    return std::unique_ptr<KdDbEntity>(copy);
}

/// Adds a new entity to the current space.
/// @return its id; null, the entity gone, for a failure
KdDbObjectId add(std::unique_ptr<KdDbEntity> entity, Kdapi::ErrorStatus& status)
{
    entity->setDatabaseDefaults(drawing());
    KdDbObjectId id;
    KdDbEntity* const added = entity.release();
    status = postToDb(added, id, drawing());
    if (status != Kdapi::eOk)
        giveUp(added);
    return status == Kdapi::eOk ? id : KdDbObjectId();
}

void printPoints(const wchar_t* label, const KdArray<KdGePoint3d>& points)
{
    kdutPrintf(L"\n%s %d", label, points.length());
    for (const KdGePoint3d& point : points)
        kdutPrintf(L"\n%s", pointText(point).c_str());
}

/// A picked entity as it is shown, in the drawing: one that a block shows as a copy, which goes
/// with the scope.
class Shown {
public:
    Shown(const Picked& picked, Kdapi::ErrorStatus& status) : id_(picked.nested)
    {
        if (picked.nested == picked.outer)
            return;
        auto copy = shownCopy(picked, status);
        copy_ = id_ = copy ? add(std::move(copy), status) : KdDbObjectId();
    }

    ~Shown()
    {
        Kdapi::ErrorStatus status = Kdapi::eOk;
        if (const auto copy = openObject<KdDbEntity>(copy_, KdDb::kForWrite, status))
            copy->erase();
    }

    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;

    KdDbObjectId id() const { return id_; }

private:
    KdDbObjectId id_;
    KdDbObjectId copy_;
};

KdArray<KdGePoint3d> crossings(KdDbObjectId first, KdDbObjectId second)
{
    kds_name names[2] = {};
    resbuf* list = nullptr;
    KdArray<KdGePoint3d> points;
    if (kddbGetKdsName(names[0], first) == Kdapi::eOk &&
        kddbGetKdsName(names[1], second) == Kdapi::eOk)
        kds_intersect(names[0], names[1], &list);
    for (const resbuf* record = list; record; record = record->rbnext) {
        const double* const at = record->resval.rpoint;
        points.append({at[0], at[1], at[2]});
    }
    kdutRelRb(list);
    return points;
}

/// The curves of a region to come, open for writing.
using Curves = std::vector<OpenObject<KdDbCurve>>;

/// Picks curves until Enter.
/// @return RTNORM; why a pick or a curve cannot be had
int pickCurves(Curves& curves)
{
    for (;;) {
        Picked picked;
        const int status = pick(L"\nSelect a curve (Enter when done): ", picked);
        if (status == RTNONE)
            return RTNORM;
        if (status != RTNORM)
            return status;
        Kdapi::ErrorStatus opened = Kdapi::eOk;
        curves.push_back(openObject<KdDbCurve>(picked.outer, KdDb::kForWrite, opened));
        if (opened != Kdapi::eOk)
            return opened;
    }
}

std::unique_ptr<KdDbEntity> newRegion(const Curves& curves, Kdapi::ErrorStatus& status)
{
    KdArray<KdDbCurve*> edges;
    for (const auto& curve : curves)
        edges.append(curve.get());
    KdArray<KdDbRegion*> regions;
    status = KdDbRegion::createFromCurves(edges, regions);
    return std::unique_ptr<KdDbEntity>(regions.isEmpty() ? nullptr : regions.last());
}

} // namespace

void curvepts()
{
    Picked picked;
    double step = 0.0;
    int status = pick(L"\nSelect a curve: ", picked);
    if (status == RTNORM)
        status = askNumber(L"\nStep: ", step);
    if (status != RTNORM)
        return printNone(L"points", status);
    Kdapi::ErrorStatus copied = Kdapi::eOk;
    const auto copy = shownCopy(picked, copied);
    if (!copy)
        return printNone(L"points", copied);

    KdArray<KdGePoint3d> points;
    int count = 0;
    CString message;
    const int result = CConversion::KdDbCurveToKdGePoint3dArray(KdDbCurve::cast(copy.get()), points,
                                                                count, step, message);
    kdutPrintf(L"%s", message.GetString());
    if (!result)
        return printNone(L"points", result);
    printPoints(L"points", points);
}

void cross()
{
    Picked picked[2];
    for (Picked& each : picked) {
        const int status = pick(L"\nSelect an entity: ", each);
        if (status != RTNORM)
            return printNone(L"crossings", status);
    }
    Kdapi::ErrorStatus status = Kdapi::eOk;
    const Shown first(picked[0], status);
    const Shown second(picked[1], status);
    if (first.id().isNull() || second.id().isNull())
        return printNone(L"crossings", status);
    printPoints(L"crossings", crossings(first.id(), second.id()));
}

void mkregion()
{
    Curves curves;
    const int status = pickCurves(curves);
    if (status != RTNORM)
        return printNone(L"region", status);
    Kdapi::ErrorStatus made = Kdapi::eOk;
    auto region = newRegion(curves, made);
    if (!region)
        return printNone(L"region", made);
    const KdDbObjectId id = add(std::move(region), made);
    if (made != Kdapi::eOk)
        return printNone(L"region", made);
    for (const auto& curve : curves)
        curve->erase();
    kdutPrintf(L"\nregion %s", handleText(id).c_str());
}

void outline()
{
    Picked picked;
    const int status = pick(L"\nSelect a region, an ellipse or a spline: ", picked);
    if (status != RTNORM)
        return printNone(L"outline", status);
    Kdapi::ErrorStatus done = Kdapi::eOk;
    const auto copy = shownCopy(picked, done);
    if (!copy)
        return printNone(L"outline", done);

    KdDbPolyline* made = nullptr;
    if (KdDbRegion* const region = KdDbRegion::cast(copy.get()))
        GetPolylineFromRegion(region, made);
    else
        made = CreateBounding(KdDbCurve::cast(copy.get()));
    if (!made)
        return printNone(L"outline", 0);
    const unsigned int vertices = made->numVerts();
    const KdDbObjectId id = add(std::unique_ptr<KdDbEntity>(made), done);
    if (done != Kdapi::eOk)
        return printNone(L"outline", done);
    kdutPrintf(L"\noutline %s %u", handleText(id).c_str(), vertices);
}

void attach()
{
    Picked picked;
    KdGePoint3d given;
    int status = pick(L"\nSelect a curve: ", picked);
    if (status == RTNORM)
        status = askPoint(L"\nPoint: ", given);
    if (status != RTNORM)
        return printNone(L"attach", status);
    KdGePoint3d point;
    double angle = 0.0;
    if (!GetAttachedParam(point, angle, picked.nested, picked.transform, given))
        return printNone(L"attach", 0);
    kdutPrintf(L"\nattach %s %s", pointText(point).c_str(), angleText(angle).c_str());
}
