#include "kd/db/tables.h"

#include "objects/object_visitor.h"
#include "objects/setters.h"
#include "tables/line_weights.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

KDRX_DEFINE_MEMBERS(KdDbLinetypeTableRecord, KdDbSymbolTableRecord)
KDRX_DEFINE_MEMBERS(KdDbLayerTableRecord, KdDbSymbolTableRecord)
KDRX_DEFINE_MEMBERS(KdDbTextStyleTableRecord, KdDbSymbolTableRecord)
KDRX_DEFINE_MEMBERS(KdDbUCSTableRecord, KdDbSymbolTableRecord)
KDRX_DEFINE_MEMBERS(KdDbRegAppTableRecord, KdDbSymbolTableRecord)

namespace {

constexpr std::uint16_t kForegroundColor = 7;

// Flags of a layer.
constexpr short kFrozen = 1;
constexpr short kFrozenInNewViewports = 2;
constexpr short kLocked = 4;

// Flags of a text style.
constexpr short kShapeFile = 1;

short withFlag(short flags, short flag, bool on)
{
    return static_cast<short>(on ? flags | flag : flags & ~flag);
}

} // namespace

void KdDbLinetypeTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "LinetypeTableRecord");
    visitor.text(3, comments_);
    visitor.derived(72, 'A'); // the only alignment that the format knows
    visitor.derived(73, static_cast<long long>(dashes_.size()));
    visitor.real(40, patternLength_);
    visitor.list(49, dashes_, [](korra::ObjectVisitor& element, Dash& dash) {
        element.real(49, dash.length);
        element.integer(74, dash.shapeFlags, 0);
    });
}

Kdapi::ErrorStatus KdDbLinetypeTableRecord::setPattern(const wchar_t* comments,
                                                       const std::vector<double>& dashes)
{
    return platform::gate("KdDbLinetypeTableRecord::setPattern", objectId(), comments)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            std::wstring newComments = comments;
            std::vector<Dash> newDashes;
            double newLength = 0.0;
            for (const double length : dashes) {
                newDashes.push_back({length});
                newLength += std::abs(length);
            }
            if (const auto status = beginChange())
                return status;
            comments_ = std::move(newComments);
            dashes_ = std::move(newDashes);
            patternLength_ = newLength;
            return Kdapi::eOk;
        });
}

/// The three that every drawing has.
bool KdDbLinetypeTableRecord::isIndispensable() const
{
    constexpr std::array<std::wstring_view, 3> kNames = {L"ByLayer", L"ByBlock", L"Continuous"};
    return std::ranges::any_of(kNames, [this](std::wstring_view standard) {
        return platform::compareNoCase(name(), standard) == 0;
    });
}

KdDbLayerTableRecord::KdDbLayerTableRecord()
{
    color_.setColorIndex(kForegroundColor);
}

void KdDbLayerTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "LayerTableRecord");
    visitor.layerColor(62, color_, off_);
    visitor.name(6, linetype_, korra::TableKind::linetype);
    visitor.integer(290, plottable_, true);
    visitor.integer(370, lineWeight_, static_cast<short>(KdDb::kLnWtByLwDefault));
}

bool KdDbLayerTableRecord::isIndispensable() const
{
    return name() == L"0";
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setIsOff(bool off)
{
    return set("KdDbLayerTableRecord::setIsOff", off_, off);
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setIsFrozen(bool frozen)
{
    return set("KdDbLayerTableRecord::setIsFrozen", flags_, withFlag(flags_, kFrozen, frozen));
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setVPDFLT(bool frozen)
{
    return set("KdDbLayerTableRecord::setVPDFLT", flags_,
               withFlag(flags_, kFrozenInNewViewports, frozen));
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setIsPlottable(bool plottable)
{
    return set("KdDbLayerTableRecord::setIsPlottable", plottable_, plottable);
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setLineWeight(KdDb::LineWeight weight)
{
    return setIf("KdDbLayerTableRecord::setLineWeight", korra::isStandardLineWeight(weight),
                 lineWeight_, static_cast<short>(weight));
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setIsLocked(bool locked)
{
    return set("KdDbLayerTableRecord::setIsLocked", flags_, withFlag(flags_, kLocked, locked));
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setColor(const KdCmColor& color)
{
    return set("KdDbLayerTableRecord::setColor", color_, color);
}

Kdapi::ErrorStatus KdDbLayerTableRecord::setLinetypeObjectId(KdDbObjectId linetype)
{
    return setReference("KdDbLayerTableRecord::setLinetypeObjectId", linetype_, linetype,
                        KdDbLinetypeTableRecord::desc());
}

void KdDbTextStyleTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "TextStyleTableRecord");
    visitor.real(40, textSize_);
    visitor.real(41, xScale_);
    visitor.angle(50, oblique_);
    visitor.integer(71, generation_);
    visitor.real(42, priorSize_);
    visitor.text(3, fileName_);
    visitor.text(4, bigFontFileName_);
}

Kdapi::ErrorStatus KdDbTextStyleTableRecord::setIsShapeFile(bool shapeFile)
{
    return set("KdDbTextStyleTableRecord::setIsShapeFile", flags_,
               withFlag(flags_, kShapeFile, shapeFile));
}

Kdapi::ErrorStatus KdDbTextStyleTableRecord::setFileName(const wchar_t* fileName)
{
    return setIf("KdDbTextStyleTableRecord::setFileName", fileName != nullptr, fileName_, fileName);
}

Kdapi::ErrorStatus KdDbTextStyleTableRecord::setBigFontFileName(const wchar_t* fileName)
{
    return setIf("KdDbTextStyleTableRecord::setBigFontFileName", fileName != nullptr,
                 bigFontFileName_, fileName);
}

Kdapi::ErrorStatus KdDbTextStyleTableRecord::setXScale(double scale)
{
    return setIf("KdDbTextStyleTableRecord::setXScale", scale > 0.0, xScale_, scale);
}

Kdapi::ErrorStatus KdDbTextStyleTableRecord::setObliquingAngle(double radians)
{
    return set("KdDbTextStyleTableRecord::setObliquingAngle", oblique_, radians);
}

void KdDbUCSTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "UCSTableRecord");
    visitor.point(10, origin_);
    korra::storedVector(visitor, 11, xAxis_);
    korra::storedVector(visitor, 12, yAxis_);
}

void KdDbRegAppTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "RegAppTableRecord");
}

Kdapi::ErrorStatus KdDbUCSTableRecord::setOrigin(const KdGePoint3d& origin)
{
    return set("KdDbUCSTableRecord::setOrigin", origin_, origin);
}

Kdapi::ErrorStatus KdDbUCSTableRecord::setXAxis(const KdGeVector3d& axis)
{
    return set("KdDbUCSTableRecord::setXAxis", xAxis_, axis);
}

Kdapi::ErrorStatus KdDbUCSTableRecord::setYAxis(const KdGeVector3d& axis)
{
    return set("KdDbUCSTableRecord::setYAxis", yAxis_, axis);
}
