#include "dimensions/dimension_line.h"
#include "dimensions/dimension_text.h"
#include "kd/db/dimension.h"
#include "objects/object_visitor.h"

#include <cmath>

KDRX_DEFINE_MEMBERS(KdDbAngularDimension, KdDbDimension)

namespace {

double angleOf(const KdGeVector2d& direction)
{
    return KdGe::directionAngle(direction.x, direction.y);
}

double cross(const KdGeVector2d& a, const KdGeVector2d& b)
{
    return a.x * b.y - a.y * b.x;
}

/// Where two lines through pairs of points meet. @return false for parallel lines
bool meet(const KdGePoint2d& a, const KdGePoint2d& b, const KdGePoint2d& c, const KdGePoint2d& d,
          KdGePoint2d& point)
{
    const KdGeVector2d first = b - a;
    const KdGeVector2d second = d - c;
    const double area = cross(first, second);
    if (std::abs(area) <= 1e-12 * first.length() * second.length())
        return false;
    point = a + first * (cross(c - a, second) / area);
    return true;
}

/// The end of a line that lies farther out on a ray.
KdGePoint2d outerEnd(const KdGePoint2d& vertex, const KdGePoint2d& a, const KdGePoint2d& b,
                     const KdGeVector2d& ray)
{
    return (a - vertex).dotProduct(ray) > (b - vertex).dotProduct(ray) ? a : b;
}

} // namespace

KdDbAngularDimension::KdDbAngularDimension(const KdGePoint3d& center, const KdGePoint3d& first,
                                           const KdGePoint3d& second, const KdGePoint3d& arcPoint)
    : first_(first), second_(second), center_(center)
{
    dimLinePoint_ = arcPoint;
}

KdGePoint2d KdDbAngularDimension::arcPlace() const
{
    return threePoint_ ? inPlane(dimLinePoint_) : KdGePoint2d(arcPoint_.x, arcPoint_.y);
}

/// The vertex and a point on each side of the angle.
///
/// Two lines make four angles: the one in which the arc lies has, for each line, the ray on whose
/// side of the other line the arc's point is.
bool KdDbAngularDimension::rays(KdGePoint2d& vertex, KdGePoint2d ends[2]) const
{
    if (threePoint_) {
        vertex = inPlane(center_);
        ends[0] = inPlane(first_);
        ends[1] = inPlane(second_);
        return !vertex.isEqualTo(ends[0]) && !vertex.isEqualTo(ends[1]);
    }
    const KdGePoint2d a[] = {inPlane(first_), inPlane(second_)};
    const KdGePoint2d b[] = {inPlane(center_), inPlane(dimLinePoint_)};
    if (!meet(a[0], a[1], b[0], b[1], vertex))
        return false;
    const KdGeVector2d toArc = arcPlace() - vertex;
    KdGeVector2d alongA = a[1] - a[0];
    KdGeVector2d alongB = b[1] - b[0];
    // toArc = s·alongA + t·alongB: the signs of s and t tell the rays.
    const double area = cross(alongA, alongB);
    const bool turnsA = cross(toArc, alongB) / area < 0.0;
    const bool turnsB = cross(alongA, toArc) / area < 0.0;
    alongA = turnsA ? -alongA : alongA;
    alongB = turnsB ? -alongB : alongB;
    ends[0] = outerEnd(vertex, a[0], a[1], alongA);
    ends[1] = outerEnd(vertex, b[0], b[1], alongB);
    // A line that ends at the vertex or before it still has the direction of its ray.
    if ((ends[0] - vertex).dotProduct(alongA) <= 0.0)
        ends[0] = vertex + alongA;
    if ((ends[1] - vertex).dotProduct(alongB) <= 0.0)
        ends[1] = vertex + alongB;
    return true;
}

std::optional<KdDbAngularDimension::Sector> KdDbAngularDimension::sector() const
{
    Sector sector;
    KdGePoint2d ends[2];
    if (!rays(sector.vertex, ends))
        return std::nullopt;
    const KdGeVector2d toArc = arcPlace() - sector.vertex;
    sector.startAngle = angleOf(ends[0] - sector.vertex);
    sector.sweep = KdGe::normalAngle(angleOf(ends[1] - sector.vertex) - sector.startAngle);
    const double inside = KdGe::normalAngle(angleOf(toArc) - sector.startAngle);
    if (inside > sector.sweep)
        sector.sweep -= KdGe::kFullTurn;
    sector.ends[0] = ends[0];
    sector.ends[1] = ends[1];
    sector.radius = toArc.length();
    if (sector.radius <= KdGeContext::gTol.equalPoint() || sector.sweep == 0.0)
        return std::nullopt;
    return sector;
}

double KdDbAngularDimension::measurement() const
{
    const auto measured = sector();
    return measured ? std::abs(measured->sweep) : 0.0;
}

Kdapi::ErrorStatus KdDbAngularDimension::makeGraphics(korra::DimensionSheet& sheet) const
{
    const auto measured = sector();
    if (!measured)
        return Kdapi::eDegenerateGeometry;
    const korra::ArcPath path(measured->vertex, measured->radius, measured->startAngle,
                              measured->sweep);
    const KdGePoint2d ends[] = {path.at(0.0), path.at(path.length())};
    for (int i = 0; i < 2; ++i) {
        // Between two lines only the part that a line does not cover itself is drawn.
        const double covered = (measured->ends[i] - measured->vertex).length();
        if (threePoint_ || covered < measured->radius)
            sheet.extensionLine(i, measured->ends[i], ends[i]);
    }
    const KdGeVector2d outward =
        (path.at(path.length() / 2.0) - measured->vertex) / measured->radius;
    korra::drawDimensionLine(sheet, {.path = path,
                                     .text = korra::angleText(*this, measurement()),
                                     .moved = movedText(),
                                     .outward = outward});
    return Kdapi::eOk;
}

void KdDbAngularDimension::definition(korra::ObjectVisitor& visitor)
{
    visitor.point(13, first_);
    visitor.point(14, second_);
    visitor.point(15, center_);
    if (!threePoint_)
        visitor.point(16, arcPoint_);
}

void KdDbAngularDimension::transformDefinition(const KdGeMatrix3d& matrix,
                                               const korra::PlaneImage& image)
{
    first_.transformBy(matrix);
    second_.transformBy(matrix);
    center_.transformBy(matrix);
    arcPoint_.transformBy(image.map);
}
