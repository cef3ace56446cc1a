#include "dimensions/dimension_sheet.h"

#include "objects/contents.h"
#include "tables/dimension_variables.h"

#include <cmath>

namespace korra {

namespace {

/// The values in force by group code.
class Values {
public:
    explicit Values(const KdDbDimension& dimension) : values_(dimensionValues(dimension)) {}

    double number(int code) const { return numberOf(at(code)); }

    int whole(int code) const { return static_cast<int>(number(code)); }

    bool flag(int code) const { return number(code) != 0.0; }

    KdDbObjectId reference(int code) const { return std::get<KdDbObjectId>(at(code)); }

    KdCmColor color(int code) const
    {
        KdCmColor color;
        color.setColorIndex(static_cast<std::uint16_t>(whole(code)));
        return color;
    }

private:
    const KdDbDimensionValue& at(int code) const
    {
        return values_[static_cast<std::size_t>(dimensionVariableIndex(code))];
    }

    std::vector<KdDbDimensionValue> values_;
};

/// The style's own height of letters; 0 where each text has its own.
double fixedHeight(KdDbObjectId style)
{
    const auto* const record = ObjectAccess::live<KdDbTextStyleTableRecord>(style);
    return record ? record->textSize() : 0.0;
}

} // namespace

DimensionLook::DimensionLook(const KdDbDimension& dimension)
{
    const Values values(dimension);
    // A scale of 0 leaves the size to the sheet's viewports; here it is taken as full size.
    const double scale = values.number(40) > 0.0 ? values.number(40) : 1.0;
    arrowSize = values.number(41) * scale;
    tickSize = values.number(142) * scale;
    extensionOffset = values.number(42) * scale;
    extensionBeyond = values.number(44) * scale;
    lineBeyond = tickSize > 0.0 ? values.number(46) * scale : 0.0;
    gap = std::abs(values.number(147)) * scale;
    isBoxed = values.number(147) < 0.0;
    textStyle = values.reference(340);
    textHeight = fixedHeight(textStyle) > 0.0 ? fixedHeight(textStyle) : values.number(140) * scale;
    textRaise = values.number(145) * textHeight;
    centerMark = values.number(141) * scale;
    hideExtension[0] = values.flag(75);
    hideExtension[1] = values.flag(76);
    hideLine[0] = values.flag(281);
    hideLine[1] = values.flag(282);
    horizontalInside = values.flag(73);
    horizontalOutside = values.flag(74);
    forceTextInside = values.flag(174);
    forceLine = values.flag(172);
    noOutsideLines = values.flag(175);
    fit = values.whole(289);
    vertical = values.whole(77);
    justify = values.whole(280);
    lineColor = values.color(176);
    extensionColor = values.color(177);
    textColor = values.color(178);
}

DimensionSheet::DimensionSheet(const KdDbDimension& dimension)
    : dimension_(dimension),
      look_(dimension),
      elevation_((dimension.place_.toPlane() * dimension.dimLinePoint_).z),
      toBlock_(dimension.place_.toBlock())
{
}

double DimensionSheet::horizontal() const
{
    return dimension_.horizontalRotation_;
}

KdGePoint3d DimensionSheet::inBlock(const KdGePoint2d& point) const
{
    return toBlock_ * KdGePoint3d(point.x, point.y, elevation_);
}

void DimensionSheet::add(std::unique_ptr<KdDbEntity> entity, const KdCmColor& color)
{
    entity->setColor(color);
    entities_.push_back(std::move(entity));
}

void DimensionSheet::line(const KdGePoint2d& start, const KdGePoint2d& end, const KdCmColor& color)
{
    add(std::make_unique<KdDbLine>(inBlock(start), inBlock(end)), color);
}

void DimensionSheet::arc(const KdGePoint2d& center, double radius, double startAngle,
                         double endAngle, const KdCmColor& color)
{
    add(std::make_unique<KdDbArc>(inBlock(center), dimension_.normal(), radius,
                                  KdGe::normalAngle(startAngle), KdGe::normalAngle(endAngle)),
        color);
}

void DimensionSheet::arrow(const KdGePoint2d& tip, const KdGeVector2d& body)
{
    if (look_.tickSize > 0.0) {
        const KdGeVector2d half = (body + body.perpVector()) / std::sqrt(2.0) * look_.tickSize;
        line(tip - half, tip + half, look_.lineColor);
        return;
    }
    if (look_.arrowSize <= 0.0)
        return;
    // A filled arrow head is a third as wide as it is long.
    const KdGePoint2d back = tip + body * look_.arrowSize;
    const KdGeVector2d half = body.perpVector() * (look_.arrowSize / 6.0);
    line(tip, back + half, look_.lineColor);
    line(back + half, back - half, look_.lineColor);
    line(back - half, tip, look_.lineColor);
}

void DimensionSheet::extensionLine(int index, const KdGePoint2d& measured, const KdGePoint2d& end)
{
    const KdGeVector2d way = end - measured;
    const double length = way.length();
    if (look_.hideExtension[index] || length <= look_.extensionOffset)
        return;
    const KdGeVector2d direction = way / length;
    line(measured + direction * look_.extensionOffset, end + direction * look_.extensionBeyond,
         look_.extensionColor);
}

void DimensionSheet::centerMark(const KdGePoint2d& center)
{
    const double size = std::abs(look_.centerMark);
    if (size == 0.0)
        return;
    line(center - KdGeVector2d(size, 0.0), center + KdGeVector2d(size, 0.0), look_.lineColor);
    line(center - KdGeVector2d(0.0, size), center + KdGeVector2d(0.0, size), look_.lineColor);
}

std::unique_ptr<KdDbMText> DimensionSheet::newText(const std::wstring& contents) const
{
    constexpr short kMiddleCenter = 5;
    auto text = std::make_unique<KdDbMText>();
    text->setContents(contents.c_str());
    text->setTextHeight(look_.textHeight);
    text->setAttachment(kMiddleCenter);
    if (!look_.textStyle.isNull())
        text->setTextStyle(look_.textStyle);
    return text;
}

TextBox DimensionSheet::measure(const std::wstring& text) const
{
    const auto entity = newText(text);
    return {entity->actualWidth(), entity->actualHeight()};
}

void DimensionSheet::text(const std::wstring& contents, const KdGePoint2d& center, double angle)
{
    textCenter_ = center;
    if (contents.empty())
        return;
    auto entity = newText(contents);
    entity->setLocation(inBlock(center));
    entity->setNormal(dimension_.normal());
    entity->setRotation(angle);
    add(std::move(entity), look_.textColor);
    if (!look_.isBoxed)
        return;
    const TextBox box = measure(contents);
    const KdGeVector2d along(std::cos(angle), std::sin(angle));
    const KdGeVector2d right = along * (box.width / 2.0 + look_.gap);
    const KdGeVector2d up = along.perpVector() * (box.height / 2.0 + look_.gap);
    const KdGePoint2d corners[] = {center - right - up, center + right - up, center + right + up,
                                   center - right + up};
    for (int i = 0; i < 4; ++i)
        line(corners[i], corners[(i + 1) % 4], look_.lineColor);
}

void DimensionSheet::putInto(KdDbObjectId block)
{
    auto* const record = ObjectAccess::live<KdDbBlockTableRecord>(block);
    KdDbDatabase& database = *block.database();
    const KdDbObjectId layer = database.contents().record(TableKind::layer, L"0");
    ObjectAccess::willChange(*record);
    for (std::unique_ptr<KdDbEntity>& entity : entities_) {
        entity->setLayer(layer);
        ObjectAccess::append(*record, entity.get());
        ObjectAccess::willChange(*entity.release());
    }
    entities_.clear();
}

} // namespace korra
