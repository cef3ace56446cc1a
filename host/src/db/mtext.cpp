#include "db/entity_plane.h"
#include "db/fields.h"
#include "db/object_access.h"
#include "gi/text_layout.h"
#include "kd/db/text.h"

#include <algorithm>
#include <cmath>

KDRX_DEFINE_MEMBERS(KdDbMText, KdDbEntity)

namespace {

KdGeVector3d directionAt(const KdGeVector3d& normal, double radians)
{
    return KdGeMatrix3d::planeToWorld(normal) *
           KdGeVector3d(std::cos(radians), std::sin(radians), 0.0);
}

} // namespace

double KdDbMText::rotation() const
{
    const KdGeVector3d flat = KdGeMatrix3d::worldToPlane(normal_) * direction_;
    return KdGe::directionAngle(flat.x, flat.y);
}

Kdapi::ErrorStatus KdDbMText::setLocation(const KdGePoint3d& location)
{
    const auto status = beginChange();
    if (status == Kdapi::eOk)
        location_ = location;
    return status;
}

Kdapi::ErrorStatus KdDbMText::setNormal(const KdGeVector3d& normal)
{
    if (const auto status = beginChange(); status != Kdapi::eOk)
        return status;
    if (normal.isZeroLength())
        return Kdapi::eInvalidInput;
    const double angle = rotation();
    normal_ = normal.normal();
    direction_ = directionAt(normal_, angle);
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbMText::setContents(const wchar_t* contents)
{
    if (const auto status = beginChange(); status != Kdapi::eOk)
        return status;
    if (!contents)
        return Kdapi::eInvalidInput;
    contents_ = contents;
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbMText::setTextHeight(double height)
{
    if (const auto status = beginChange(); status != Kdapi::eOk)
        return status;
    if (!(height > 0.0))
        return Kdapi::eInvalidInput;
    textHeight_ = height;
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbMText::setWidth(double width)
{
    if (const auto status = beginChange(); status != Kdapi::eOk)
        return status;
    if (!(width >= 0.0))
        return Kdapi::eInvalidInput;
    width_ = width;
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbMText::setAttachment(short attachment)
{
    if (const auto status = beginChange(); status != Kdapi::eOk)
        return status;
    if (attachment < 1 || attachment > 9)
        return Kdapi::eInvalidInput;
    attachment_ = attachment;
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbMText::setRotation(double rotation)
{
    const auto status = beginChange();
    if (status == Kdapi::eOk)
        direction_ = directionAt(normal_, rotation);
    return status;
}

Kdapi::ErrorStatus KdDbMText::setTextStyle(KdDbObjectId style)
{
    if (const auto status = beginChange(); status != Kdapi::eOk)
        return status;
    if (style.isNull())
        return Kdapi::eNullObjectId;
    textStyle_ = style;
    return Kdapi::eOk;
}

double KdDbMText::actualWidth() const
{
    return korra::measureMText(*this).width;
}

double KdDbMText::actualHeight() const
{
    return korra::measureMText(*this).height;
}

Kdapi::ErrorStatus KdDbMText::transformBy(const KdGeMatrix3d& matrix)
{
    if (const auto status = beginTransform(matrix, true); status != Kdapi::eOk)
        return status;
    const korra::PlaneImage image(normal_, matrix);
    location_.transformBy(matrix);
    direction_ = (matrix * direction_).normal();
    normal_ = image.newNormal;
    textHeight_ *= image.scale;
    width_ *= image.scale;
    return Kdapi::eOk;
}

void KdDbMText::draw(korra::DrawSink& sink) const
{
    for (const korra::TextRun& run : korra::layOutMText(*this))
        sink.text(run);
}

void KdDbMText::fields(korra::FieldVisitor& visitor)
{
    KdDbEntity::fields(visitor);
    visitor.behindMarker(2);
    visitor.point(10, location_);
    visitor.real(40, textHeight_);
    visitor.real(41, width_, 0.0);
    visitor.integer(71, attachment_, 1);
    visitor.integer(72, flow_, 1);
    visitor.longText(1, 3, contents_);
    visitor.name(7, textStyle_, korra::TableKind::textStyle);
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
    visitor.vector(11, direction_, KdGeVector3d::kXAxis);
    // Some files give an angle instead of the direction; it is read and never written.
    double angle = 0.0;
    visitor.angle(50, angle, 0.0);
    if (angle != 0.0)
        direction_ = directionAt(normal_, angle);
    visitor.integer(73, spacingStyle_, 1);
    visitor.real(44, lineSpacing_, 1.0);
}
