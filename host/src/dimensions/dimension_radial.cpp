#include "dimensions/dimension_line.h"
#include "dimensions/dimension_text.h"
#include "kd/db/dimension.h"
#include "objects/object_visitor.h"

KDRX_DEFINE_MEMBERS(KdDbRadialDimension, KdDbDimension)
KDRX_DEFINE_MEMBERS(KdDbDiametricDimension, KdDbRadialDimension)

KdDbRadialDimension::KdDbRadialDimension(const KdGePoint3d& center, const KdGePoint3d& chordPoint,
                                         double leaderLength)
    : chordPoint_(chordPoint), leaderLength_(leaderLength)
{
    dimLinePoint_ = center;
}

double KdDbRadialDimension::measurement() const
{
    return inPlane(dimLinePoint_).distanceTo(inPlane(chordPoint_));
}

Kdapi::ErrorStatus KdDbRadialDimension::makeGraphics(korra::DimensionSheet& sheet) const
{
    const KdGePoint2d center = inPlane(dimLinePoint_);
    const KdGePoint2d onArc = inPlane(chordPoint_);
    if (center.isEqualTo(onArc))
        return Kdapi::eDegenerateGeometry;
    const korra::StraightPath path(center, onArc);
    const bool fromCenter =
        korra::drawDimensionLine(sheet, {.path = path,
                                         .text = korra::lengthText(*this, measurement(), L"R"),
                                         .moved = movedText(),
                                         .arrows = {false, true},
                                         .leader = leaderLength_});
    if (!fromCenter && !sheet.look().forceLine)
        sheet.centerMark(center);
    return Kdapi::eOk;
}

void KdDbRadialDimension::definition(korra::ObjectVisitor& visitor)
{
    visitor.point(15, chordPoint_);
    visitor.real(40, leaderLength_);
}

void KdDbRadialDimension::transformDefinition(const KdGeMatrix3d& matrix,
                                              const korra::PlaneImage& image)
{
    chordPoint_.transformBy(matrix);
    leaderLength_ *= image.scale;
}

KdDbDiametricDimension::KdDbDiametricDimension(const KdGePoint3d& chordPoint,
                                               const KdGePoint3d& farChordPoint,
                                               double leaderLength)
    : KdDbRadialDimension(farChordPoint, chordPoint, leaderLength)
{
}

Kdapi::ErrorStatus KdDbDiametricDimension::makeGraphics(korra::DimensionSheet& sheet) const
{
    const KdGePoint2d far = inPlane(dimLinePoint_);
    const KdGePoint2d near = inPlane(chordPoint_);
    if (far.isEqualTo(near))
        return Kdapi::eDegenerateGeometry;
    const korra::StraightPath path(far, near);
    const bool across =
        korra::drawDimensionLine(sheet, {.path = path,
                                         .text = korra::lengthText(*this, measurement(), L"%%c"),
                                         .moved = movedText(),
                                         .leader = leaderLength_});
    if (!across && !sheet.look().forceLine)
        sheet.centerMark(far + (near - far) / 2.0);
    return Kdapi::eOk;
}
