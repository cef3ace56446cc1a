#include "dimensions/dimension_line.h"
#include "dimensions/dimension_text.h"
#include "kd/db/dimension.h"
#include "objects/object_visitor.h"

#include <cmath>

KDRX_DEFINE_MEMBERS(KdDbRotatedDimension, KdDbDimension)
KDRX_DEFINE_MEMBERS(KdDbAlignedDimension, KdDbRotatedDimension)

namespace {

KdGeVector2d unitVector(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

/// Where the line from a point along a direction meets the dimension line.
KdGePoint2d footOf(const KdGePoint2d& point, const KdGeVector2d& direction,
                   const KdGePoint2d& onLine, const KdGeVector2d& across)
{
    const double way = (onLine - point).dotProduct(across) / direction.dotProduct(across);
    return point + direction * way;
}

} // namespace

KdDbRotatedDimension::KdDbRotatedDimension(double rotation, const KdGePoint3d& first,
                                           const KdGePoint3d& second,
                                           const KdGePoint3d& dimLinePoint)
    : first_(first), second_(second), rotation_(rotation)
{
    dimLinePoint_ = dimLinePoint;
}

double KdDbRotatedDimension::measurement() const
{
    const KdGeVector2d span = inPlane(second_) - inPlane(first_);
    return std::abs(span.dotProduct(unitVector(direction())));
}

Kdapi::ErrorStatus KdDbRotatedDimension::makeGraphics(korra::DimensionSheet& sheet) const
{
    const KdGePoint2d measured[] = {inPlane(first_), inPlane(second_)};
    const KdGePoint2d onLine = inPlane(dimLinePoint_);
    const KdGeVector2d across = unitVector(direction()).perpVector();
    const KdGeVector2d slanted = unitVector(direction() + oblique_);
    // An oblique angle of 0 means none; one along the dimension line would never meet it.
    const bool isSlanted = oblique_ != 0.0 && std::abs(slanted.dotProduct(across)) > 1e-6;
    const KdGeVector2d extension = isSlanted ? slanted : across;
    const KdGePoint2d ends[] = {footOf(measured[0], extension, onLine, across),
                                footOf(measured[1], extension, onLine, across)};
    if (ends[0].isEqualTo(ends[1]))
        return Kdapi::eDegenerateGeometry;

    for (int i = 0; i < 2; ++i)
        sheet.extensionLine(i, measured[i], ends[i]);
    const korra::StraightPath path(ends[0], ends[1]);
    const bool isBeyond = (onLine - measured[0]).dotProduct(across) >= 0.0;
    korra::drawDimensionLine(sheet, {.path = path,
                                     .text = korra::lengthText(*this, measurement(), L""),
                                     .moved = movedText(),
                                     .outward = isBeyond ? across : -across});
    return Kdapi::eOk;
}

void KdDbRotatedDimension::definition(korra::ObjectVisitor& visitor)
{
    visitor.point(13, first_);
    visitor.point(14, second_);
    visitor.angle(52, oblique_, 0.0);
    visitor.angle(50, rotation_, 0.0);
}

void KdDbRotatedDimension::transformDefinition(const KdGeMatrix3d& matrix,
                                               const korra::PlaneImage& image)
{
    first_.transformBy(matrix);
    second_.transformBy(matrix);
    rotation_ = image.angle(rotation_);
}

KdDbAlignedDimension::KdDbAlignedDimension(const KdGePoint3d& first, const KdGePoint3d& second,
                                           const KdGePoint3d& dimLinePoint)
    : KdDbRotatedDimension(0.0, first, second, dimLinePoint)
{
}

double KdDbAlignedDimension::direction() const
{
    const KdGeVector2d span = inPlane(second_) - inPlane(first_);
    return KdGe::directionAngle(span.x, span.y);
}
