#include "gi/draw_sink.h"
#include "kd/db/layout.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbViewport, KdDbEntity)

namespace {

constexpr int kOffFlag = 0x20000;

} // namespace

double KdDbViewport::customScale() const
{
    return viewHeight_ > 0.0 ? height_ / viewHeight_ : 1.0;
}

bool KdDbViewport::isOn() const
{
    return number_ > 0 && status_ != 0 && (statusFlags_ & kOffFlag) == 0;
}

Kdapi::ErrorStatus KdDbViewport::setCenterPoint(const KdGePoint3d& center)
{
    return set("KdDbViewport::setCenterPoint", center_, center);
}

Kdapi::ErrorStatus KdDbViewport::setWidth(double width)
{
    return setIf("KdDbViewport::setWidth", width > 0.0, width_, width);
}

Kdapi::ErrorStatus KdDbViewport::setHeight(double height)
{
    return setIf("KdDbViewport::setHeight", height > 0.0, height_, height);
}

Kdapi::ErrorStatus KdDbViewport::setViewCenter(const KdGePoint2d& center)
{
    return set("KdDbViewport::setViewCenter", viewCenter_, center);
}

Kdapi::ErrorStatus KdDbViewport::setViewTarget(const KdGePoint3d& target)
{
    return set("KdDbViewport::setViewTarget", viewTarget_, target);
}

Kdapi::ErrorStatus KdDbViewport::setViewDirection(const KdGeVector3d& direction)
{
    return setIf("KdDbViewport::setViewDirection", !direction.isZeroLength(), viewDirection_,
                 direction);
}

Kdapi::ErrorStatus KdDbViewport::setViewHeight(double height)
{
    return setIf("KdDbViewport::setViewHeight", height > 0.0, viewHeight_, height);
}

Kdapi::ErrorStatus KdDbViewport::setTwistAngle(double angle)
{
    return set("KdDbViewport::setTwistAngle", twistAngle_, angle);
}

Kdapi::ErrorStatus KdDbViewport::setLensLength(double length)
{
    return setIf("KdDbViewport::setLensLength", length > 0.0, lensLength_, length);
}

Kdapi::ErrorStatus KdDbViewport::setPerspectiveOn(bool on)
{
    return set("KdDbViewport::setPerspectiveOn", statusFlags_,
               on ? statusFlags_ | 1 : statusFlags_ & ~1);
}

Kdapi::ErrorStatus KdDbViewport::setNumber(short number)
{
    return set("KdDbViewport::setNumber", number_, number);
}

Kdapi::ErrorStatus KdDbViewport::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::similarities, [&] {
        const double scale = matrix.scale();
        center_.transformBy(matrix);
        width_ *= scale;
        height_ *= scale;
        return Kdapi::eOk;
    });
}

/// The border; the sheet's own viewport has none.
void KdDbViewport::draw(korra::DrawSink& sink) const
{
    if (number_ == 1)
        return;
    const KdGeVector3d right(width_ / 2.0, 0.0, 0.0);
    const KdGeVector3d up(0.0, height_ / 2.0, 0.0);
    const KdGePoint3d corners[] = {center_ - right - up, center_ + right - up, center_ + right + up,
                                   center_ - right + up};
    for (int i = 0; i < 4; ++i)
        sink.segment(corners[i], corners[(i + 1) % 4]);
}

void KdDbViewport::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Viewport");
    visitor.point(10, center_);
    visitor.real(40, width_);
    visitor.real(41, height_);
    visitor.integer(68, status_);
    visitor.integer(69, number_);
    visitor.point(12, viewCenter_);
    visitor.vector(16, viewDirection_, KdGeVector3d::kZAxis);
    visitor.point(17, viewTarget_, KdGePoint3d::kOrigin);
    visitor.real(42, lensLength_);
    visitor.real(45, viewHeight_);
    visitor.angle(51, twistAngle_);
    visitor.integer(90, statusFlags_);
}
