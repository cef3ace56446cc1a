#include "entities/text_layout.h"
#include "kd/db/text.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"
#include "platform/gate.h"

KDRX_DEFINE_MEMBERS(KdDbMText, KdDbEntity)

double KdDbMText::rotation() const
{
    return place_.angleOf(direction_);
}

Kdapi::ErrorStatus KdDbMText::setLocation(const KdGePoint3d& location)
{
    return set("KdDbMText::setLocation", location_, location);
}

Kdapi::ErrorStatus KdDbMText::setNormal(const KdGeVector3d& normal)
{
    return platform::gate("KdDbMText::setNormal", objectId(), normal)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (const auto status = beginChange())
                return status;
            if (normal.isZeroLength())
                return Kdapi::eInvalidInput;
            const double angle = rotation();
            place_.setNormal(normal);
            direction_ = place_.direction(angle);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbMText::setContents(const wchar_t* contents)
{
    return setIf("KdDbMText::setContents", contents != nullptr, contents_, contents);
}

Kdapi::ErrorStatus KdDbMText::setTextHeight(double height)
{
    return setIf("KdDbMText::setTextHeight", height > 0.0, textHeight_, height);
}

Kdapi::ErrorStatus KdDbMText::setWidth(double width)
{
    return setIf("KdDbMText::setWidth", width >= 0.0, width_, width);
}

Kdapi::ErrorStatus KdDbMText::setAttachment(short attachment)
{
    return setIf("KdDbMText::setAttachment", attachment >= 1 && attachment <= 9, attachment_,
                 attachment);
}

Kdapi::ErrorStatus KdDbMText::setRotation(double rotation)
{
    return set("KdDbMText::setRotation", direction_, place_.direction(rotation));
}

Kdapi::ErrorStatus KdDbMText::setTextStyle(KdDbObjectId style)
{
    return setReference("KdDbMText::setTextStyle", textStyle_, style,
                        KdDbTextStyleTableRecord::desc());
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
    return transform(matrix, Takes::similarities, [&] {
        const korra::PlaneImage image = place_.transformBy(matrix);
        location_.transformBy(matrix);
        direction_ = (matrix * direction_).normal();
        textHeight_ *= image.scale;
        width_ *= image.scale;
        return Kdapi::eOk;
    });
}

void KdDbMText::draw(korra::DrawSink& sink) const
{
    for (const korra::TextRun& run : korra::layOutMText(*this))
        sink.text(run);
}

void KdDbMText::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "MText");
    visitor.point(10, location_);
    visitor.real(40, textHeight_);
    visitor.real(41, width_, 0.0);
    visitor.integer(71, attachment_, 1);
    visitor.integer(72, flow_, 1);
    visitor.longText(1, 3, contents_);
    visitor.name(7, textStyle_, korra::TableKind::textStyle);
    place_.describeNormal(visitor);
    visitor.vector(11, direction_, KdGeVector3d::kXAxis);
    // Some files give an angle instead of the direction; it is read and never written.
    double angle = 0.0;
    visitor.angle(50, angle, 0.0);
    if (angle != 0.0)
        direction_ = place_.direction(angle);
    visitor.integer(73, spacingStyle_, 1);
    visitor.real(44, lineSpacing_, 1.0);
}
