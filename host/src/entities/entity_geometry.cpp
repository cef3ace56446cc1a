// Where an entity lies and what it has in common with another, told by what it shows.

#include "ge/common_points.h"
#include "ge/curve_image.h"
#include "ge/plane_fit.h"
#include "gi/curve_sink.h"
#include "kd/db/curves.h"
#include "kd/db/ellipse.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "platform/gate.h"

#include <cmath>

namespace korra {
namespace {

/// Finds the normal of entities that have one.
class NormalFinder final : public PassingVisitor {
public:
    KdGeVector3d normal() const { return normal_; }

    void vector(int code, KdGeVector3d& value, const KdGeVector3d&) override
    {
        constexpr int kNormal = 210;
        if (code == kNormal && value.length() > 0.0 && std::isfinite(value.length()))
            normal_ = value.normal();
    }

private:
    KdGeVector3d normal_ = KdGeVector3d::kZAxis;
};

/// Points of what is shown that tell in which plane it lies.
std::vector<KdGePoint3d> pointsOf(const CurveSink::Curves& curves)
{
    std::vector<KdGePoint3d> points;
    for (const auto& curve : curves) {
        if (const auto* const line = dynamic_cast<const KdGeLinearEnt3d*>(curve.get())) {
            points.push_back(line->pointOnLine());
            points.push_back(line->pointOnLine() + line->derivative());
        } else {
            const KdGeExtents3d box = curve->extents();
            const double size = box.minPoint().distanceTo(box.maxPoint());
            curve->flatten(KdGeMatrix3d::kIdentity, size / 1000.0, points);
        }
    }
    return points;
}

CurveSet curvesOf(const CurveSink::Curves& curves)
{
    CurveSet result;
    for (const auto& curve : curves)
        result.push_back(curve.get());
    return result;
}

CurveSink::Curves projected(const CurveSink::Curves& curves, const KdGePlane& plane)
{
    CurveSink::Curves result;
    for (const auto& curve : curves)
        result.push_back(imageOf(*curve, projectionOnto(plane)));
    return result;
}

/// An arc or a circle as a kind that every map without perspective leaves what it is; null for any
/// other entity.
std::unique_ptr<KdDbEntity> ellipseOf(const KdDbEntity& entity)
{
    const auto* const curve = KdDbCurve::cast(&entity);
    const auto* const arc =
        curve ? dynamic_cast<const KdGeCircArc3d*>(curve->keptGeometry()) : nullptr;
    if (!arc)
        return nullptr;
    return std::make_unique<KdDbEllipse>(arc->center(), arc->normal(),
                                         arc->refVec() * arc->radius(), 1.0, arc->startAng(),
                                         arc->endAng());
}

} // namespace
} // namespace korra

Kdapi::ErrorStatus KdDbEntity::getTransformedCopy(const KdGeMatrix3d& matrix,
                                                  KdDbEntity*& copy) const
{
    return platform::gate("KdDbEntity::getTransformedCopy", objectId())
        .guard(Kdapi::eNotApplicable, [&] {
            std::unique_ptr<KdDbEntity> made(static_cast<KdDbEntity*>(clone()));
            if (!made)
                return Kdapi::eNotApplicable;
            Kdapi::ErrorStatus status = made->transformBy(matrix);
            if (status == Kdapi::eCannotScaleNonUniformly) {
                made = korra::ellipseOf(*this);
                if (!made)
                    return status;
                dress(*made);
                status = made->transformBy(matrix);
            }
            if (status == Kdapi::eOk)
                copy = made.release();
            return status;
        });
}

Kdapi::ErrorStatus KdDbEntity::getPlane(KdGePlane& plane, KdDb::Planarity& planarity) const
{
    return platform::gate("KdDbEntity::getPlane", objectId()).guard(Kdapi::eNotApplicable, [&] {
        korra::CurveSink shown;
        draw(shown);
        const std::vector<KdGePoint3d> points = korra::pointsOf(shown.curves());
        if (points.empty())
            return Kdapi::eNotApplicable;
        korra::NormalFinder finder;
        const_cast<KdDbEntity*>(this)->describe(finder); // looking at it does not change it
        const KdGeVector3d own = finder.normal();
        const korra::PlaneFit fit = korra::planeThrough(points);
        KdGeVector3d normal = own;
        planarity = fit.isFlat ? KdDb::kPlanar : KdDb::kNonPlanar;
        if (fit.normal.isZeroLength() && !fit.along.isZeroLength()) {
            planarity = KdDb::kLinear;
            normal = own - fit.along * own.dotProduct(fit.along);
            if (normal.isZeroLength())
                normal = fit.along.perpVector();
        } else if (fit.isFlat && !fit.normal.isZeroLength() && !own.isParallelTo(fit.normal)) {
            normal = own.dotProduct(fit.normal) < 0.0 ? -fit.normal : fit.normal;
        }
        plane = KdGePlane(points.front(), normal);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbEntity::intersectWith(const KdDbEntity* other, KdDb::Intersect type,
                                             KdArray<KdGePoint3d>& points,
                                             std::int64_t thisGsMarker,
                                             std::int64_t otherGsMarker) const
{
    return platform::gate("KdDbEntity::intersectWith", objectId(), type, thisGsMarker,
                          otherGsMarker)
        .guard(Kdapi::eNotApplicable,
               [&] { return addCommonPoints(other, type, nullptr, points); });
}

Kdapi::ErrorStatus KdDbEntity::intersectWith(const KdDbEntity* other, KdDb::Intersect type,
                                             const KdGePlane& projection,
                                             KdArray<KdGePoint3d>& points,
                                             std::int64_t thisGsMarker,
                                             std::int64_t otherGsMarker) const
{
    return platform::gate("KdDbEntity::intersectWith", objectId(), type, thisGsMarker,
                          otherGsMarker)
        .guard(Kdapi::eNotApplicable,
               [&] { return addCommonPoints(other, type, &projection, points); });
}

Kdapi::ErrorStatus KdDbEntity::addCommonPoints(const KdDbEntity* other, KdDb::Intersect type,
                                               const KdGePlane* projection,
                                               KdArray<KdGePoint3d>& points) const
{
    if (!other)
        return Kdapi::eNullObjectPointer;
    if (type != KdDb::kOnBothOperands)
        return Kdapi::eNotApplicable;
    korra::CurveSink mine;
    korra::CurveSink theirs;
    draw(mine);
    other->draw(theirs);
    const korra::CurveSet shown = korra::curvesOf(mine.curves());
    std::vector<KdGePoint3d> found;
    if (projection) {
        const auto first = korra::projected(mine.curves(), *projection);
        const auto second = korra::projected(theirs.curves(), *projection);
        found = korra::commonPoints(korra::curvesOf(first), korra::curvesOf(second), shown);
    } else {
        found = korra::commonPoints(shown, korra::curvesOf(theirs.curves()), shown);
    }
    KdArray<KdGePoint3d> all(points);
    for (const KdGePoint3d& point : found)
        all.append(point);
    std::swap(points, all);
    return Kdapi::eOk;
}
