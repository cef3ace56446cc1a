#include "kd/db/text.h"

#include "entities/text_layout.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbText, KdDbEntity)

namespace {

constexpr short kAligned = 3;
constexpr short kFit = 5;

} // namespace

KdDbText::KdDbText(const KdGePoint3d& position, const wchar_t* text, double height, double rotation)
    : text_(text ? text : L""), position_(position), height_(height), rotation_(rotation)
{
}

KdGePoint3d KdDbText::position() const
{
    const bool placedByPosition = (horizontalMode_ == 0 && verticalMode_ == 0) ||
                                  horizontalMode_ == kAligned || horizontalMode_ == kFit;
    if (placedByPosition)
        return place_.toBlock() * position_;
    return korra::layOutText(*this).frame * KdGePoint3d::kOrigin;
}

KdGePoint3d KdDbText::alignmentPoint() const
{
    return place_.toBlock() * alignment_;
}

Kdapi::ErrorStatus KdDbText::setTextString(const wchar_t* text)
{
    return setIf("KdDbText::setTextString", text != nullptr, text_, text);
}

Kdapi::ErrorStatus KdDbText::setPosition(const KdGePoint3d& position)
{
    return set("KdDbText::setPosition", position_, place_.toPlane() * position);
}

Kdapi::ErrorStatus KdDbText::setAlignmentPoint(const KdGePoint3d& point)
{
    return set("KdDbText::setAlignmentPoint", alignment_, place_.toPlane() * point);
}

Kdapi::ErrorStatus KdDbText::setHeight(double height)
{
    return setIf("KdDbText::setHeight", height > 0.0, height_, height);
}

Kdapi::ErrorStatus KdDbText::setRotation(double rotation)
{
    return set("KdDbText::setRotation", rotation_, rotation);
}

Kdapi::ErrorStatus KdDbText::setWidthFactor(double factor)
{
    return setIf("KdDbText::setWidthFactor", factor > 0.0, widthFactor_, factor);
}

Kdapi::ErrorStatus KdDbText::setHorizontalMode(short mode)
{
    return setIf("KdDbText::setHorizontalMode", mode >= 0 && mode <= kFit, horizontalMode_, mode);
}

Kdapi::ErrorStatus KdDbText::setVerticalMode(short mode)
{
    return setIf("KdDbText::setVerticalMode", mode >= 0 && mode <= 3, verticalMode_, mode);
}

Kdapi::ErrorStatus KdDbText::setTextStyle(KdDbObjectId style)
{
    return setReference("KdDbText::setTextStyle", textStyle_, style,
                        KdDbTextStyleTableRecord::desc());
}

Kdapi::ErrorStatus KdDbText::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::similarities, [&] {
        moveBySimilarity(matrix);
        return Kdapi::eOk;
    });
}

void KdDbText::moveBySimilarity(const KdGeMatrix3d& matrix)
{
    korra::ObjectAccess::willChange(*this);
    const korra::PlaneImage image = place_.transformBy(matrix);
    position_.transformBy(image.map);
    alignment_.transformBy(image.map);
    height_ *= image.scale;
    rotation_ = image.angle(rotation_);
}

void KdDbText::draw(korra::DrawSink& sink) const
{
    if (!text_.empty())
        sink.text(korra::layOutText(*this));
}

void KdDbText::describe(korra::ObjectVisitor& visitor)
{
    textFields(visitor, "Text", 73);
}

void KdDbText::textFields(korra::ObjectVisitor& visitor, const char* lastMarker,
                          int verticalModeCode)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Text");
    place_.describeThickness(visitor);
    visitor.point(10, position_);
    visitor.real(40, height_);
    visitor.text(1, text_);
    visitor.angle(50, rotation_, 0.0);
    visitor.real(41, widthFactor_, 1.0);
    visitor.angle(51, oblique_, 0.0);
    visitor.name(7, textStyle_, korra::TableKind::textStyle);
    visitor.integer(71, generation_, 0);
    visitor.integer(72, horizontalMode_, 0);
    visitor.point(11, alignment_, KdGePoint3d::kOrigin);
    place_.describeNormal(visitor);
    visitor.behindMarker(3, lastMarker);
    visitor.integer(verticalModeCode, verticalMode_, 0);
}
