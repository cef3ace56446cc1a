#include "kd/db/leader.h"

#include "ge/nurb_curve.h"
#include "gi/draw_sink.h"
#include "kd/db/spline.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"
#include "tables/dimension_variables.h"

KDRX_DEFINE_MEMBERS(KdDbLeader, KdDbCurve)

namespace {

/// A numeric dimension variable that is in force for a leader, by its code in a style.
double valueInForce(const KdDbLeader& leader, KdDbObjectId style, int code)
{
    return korra::numberOf(
        korra::dimensionValue(leader, style, korra::dimensionVariableIndex(code)));
}

/// The length of an arrow head, drawing units.
double arrowSize(const KdDbLeader& leader, KdDbObjectId style)
{
    constexpr int kScale = 40;
    constexpr int kArrowSize = 41;
    const double scale = valueInForce(leader, style, kScale);
    return valueInForce(leader, style, kArrowSize) * (scale > 0.0 ? scale : 1.0);
}

} // namespace

Kdapi::ErrorStatus KdDbLeader::appendVertex(const KdGePoint3d& vertex)
{
    return platform::gate("KdDbLeader::appendVertex", objectId(), vertex)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (const auto status = beginChange())
                return status;
            vertices_.push_back(vertex);
            return Kdapi::eOk;
        });
}

std::unique_ptr<KdGeCurve3d> KdDbLeader::geometry() const
{
    if (vertices_.size() < 2)
        return nullptr;
    if (isSmooth_ != 0)
        return korra::NurbCurve::through(vertices_, {}, {});
    std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
    pieces.reserve(vertices_.size() - 1);
    for (std::size_t i = 1; i < vertices_.size(); ++i)
        pieces.push_back(std::make_unique<KdGeLineSeg3d>(vertices_[i - 1], vertices_[i]));
    return std::make_unique<KdGeCompositeCurve3d>(std::move(pieces));
}

Kdapi::ErrorStatus KdDbLeader::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        korra::PlanarPlace plane(normal_);
        const double scale = plane.transformBy(matrix).scale;
        normal_ = plane.normal();
        annotationHeight_ *= scale;
        annotationWidth_ *= scale;
        for (KdGePoint3d& vertex : vertices_)
            vertex.transformBy(matrix);
        horizontal_ = (matrix * horizontal_).normal();
        offsetFromBlock_.transformBy(matrix);
        offsetFromText_.transformBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbLeader::draw(korra::DrawSink& sink) const
{
    const KdGeCurve3d* const curve = keptGeometry();
    if (!curve)
        return;
    sink.marker(1);
    if (isSmooth_ != 0)
        sink.curve(*curve);
    for (std::size_t i = 1; i < vertices_.size() && isSmooth_ == 0; ++i) {
        sink.marker(static_cast<std::int64_t>(i));
        sink.segment(vertices_[i - 1], vertices_[i]);
    }
    drawArrow(sink, *curve);
}

/// The outline of a head a third as wide as it is long; none where the first piece is not twice as
/// long.
void KdDbLeader::drawArrow(korra::DrawSink& sink, const KdGeCurve3d& curve) const
{
    const double size = arrowSize(*this, style_);
    const KdGeVector3d body = curve.firstDerivative(curve.startParam()).normal();
    const bool fits = vertices_[0].distanceTo(vertices_[1]) >= 2.0 * size;
    if (hasArrow_ == 0 || !(size > 0.0) || !fits)
        return;
    const KdGePoint3d& tip = vertices_[0];
    const KdGePoint3d back = tip + body * size;
    const KdGeVector3d half = normal_.crossProduct(body) * (size / 6.0);
    sink.marker(1);
    sink.segment(tip, back + half);
    sink.segment(back + half, back - half);
    sink.segment(back - half, tip);
}

int KdDbLeader::edgeCount() const
{
    if (vertices_.size() < 2)
        return 0;
    return isSmooth_ != 0 ? 1 : numVertices() - 1;
}

KdDbEntity* KdDbLeader::newEdge(int marker) const
{
    if (isSmooth_ == 0) {
        const auto end = static_cast<std::size_t>(marker);
        return new KdDbLine(vertices_[end - 1], vertices_[end]);
    }
    const auto curve = korra::NurbCurve::through(vertices_, {}, {});
    if (!curve)
        return nullptr;
    const korra::NurbCurve::Definition given = curve->definition();
    KdArray<KdGePoint3d> points;
    for (const KdGePoint3d& point : given.controlPoints)
        points.append(point);
    KdArray<double> knots;
    for (const double knot : given.knots)
        knots.append(knot);
    return new KdDbSpline(given.degree, points, knots);
}

void KdDbLeader::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Leader");
    visitor.name(3, style_, korra::TableKind::dimStyle);
    visitor.integer(71, hasArrow_);
    visitor.integer(72, isSmooth_);
    visitor.integer(73, annotationKind_);
    visitor.integer(74, hookDirection_);
    visitor.integer(75, hasHook_);
    visitor.real(40, annotationHeight_);
    visitor.real(41, annotationWidth_);
    visitor.derived(76, static_cast<long long>(vertices_.size()));
    visitor.list(10, vertices_,
                 [](korra::ObjectVisitor& each, KdGePoint3d& vertex) { each.point(10, vertex); });
    visitor.reference(340, annotation_, korra::Reference::soft, nullptr);
    visitor.vector(211, horizontal_, KdGeVector3d::kXAxis);
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
    visitor.vector(212, offsetFromBlock_, KdGeVector3d::kIdentity);
    visitor.vector(213, offsetFromText_, KdGeVector3d::kIdentity);
}
