#include "kd/db/spline.h"

#include "ge/nurb_curve.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbSpline, KdDbCurve)

KdDbSpline::KdDbSpline(int degree, const KdArray<KdGePoint3d>& controlPoints,
                       const KdArray<double>& knots, const KdArray<double>& weights)
    : degree_(degree),
      knots_(knots.begin(), knots.end()),
      weights_(weights.begin(), weights.end()),
      controlPoints_(controlPoints.begin(), controlPoints.end())
{
}

std::unique_ptr<KdGeCurve3d> KdDbSpline::geometry() const
{
    if (controlPoints_.empty())
        return korra::NurbCurve::through(fitPoints_, startTangent_, endTangent_);
    return korra::NurbCurve::make({degree_, knots_, controlPoints_, weights_});
}

void KdDbSpline::fixControlPoints()
{
    const auto fitted = controlPoints_.empty()
                            ? korra::NurbCurve::through(fitPoints_, startTangent_, endTangent_)
                            : nullptr;
    if (!fitted)
        return;
    korra::NurbCurve::Definition fixed = fitted->definition();
    degree_ = fixed.degree;
    knots_ = std::move(fixed.knots);
    controlPoints_ = std::move(fixed.controlPoints);
}

Kdapi::ErrorStatus KdDbSpline::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        fixControlPoints();
        for (KdGePoint3d& point : controlPoints_)
            point.transformBy(matrix);
        for (KdGePoint3d& point : fitPoints_)
            point.transformBy(matrix);
        startTangent_.transformBy(matrix);
        endTangent_.transformBy(matrix);
        korra::PlanarPlace plane(normal_);
        plane.transformBy(matrix);
        normal_ = plane.normal();
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbSpline::newEdge(int) const
{
    auto edge = std::make_unique<KdDbSpline>();
    edge->degree_ = degree_;
    edge->flags_ = flags_;
    edge->normal_ = normal_;
    edge->startTangent_ = startTangent_;
    edge->endTangent_ = endTangent_;
    edge->knots_ = knots_;
    edge->weights_ = weights_;
    edge->controlPoints_ = controlPoints_;
    edge->fitPoints_ = fitPoints_;
    return edge.release();
}

void KdDbSpline::describe(korra::ObjectVisitor& visitor)
{
    const auto number = [](int code) {
        return [code](korra::ObjectVisitor& each, double& value) { each.real(code, value); };
    };
    const auto place = [](int code) {
        return [code](korra::ObjectVisitor& each, KdGePoint3d& value) { each.point(code, value); };
    };
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Spline");
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
    visitor.integer(70, flags_);
    visitor.integer(71, degree_);
    visitor.derived(72, static_cast<long long>(knots_.size()));
    visitor.derived(73, static_cast<long long>(controlPoints_.size()));
    visitor.derived(74, static_cast<long long>(fitPoints_.size()));
    visitor.real(42, knotTolerance_, 1e-7);
    visitor.real(43, controlTolerance_, 1e-7);
    visitor.real(44, fitTolerance_, 1e-10);
    visitor.vector(12, startTangent_, KdGeVector3d::kIdentity);
    visitor.vector(13, endTangent_, KdGeVector3d::kIdentity);
    visitor.list(40, knots_, number(40));
    visitor.list(41, weights_, number(41));
    visitor.list(10, controlPoints_, place(10));
    visitor.list(11, fitPoints_, place(11));
}
