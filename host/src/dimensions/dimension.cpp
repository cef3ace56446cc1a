#include "kd/db/dimension.h"

#include "blocks/draw_block.h"
#include "dimensions/dimension_sheet.h"
#include "objects/contents.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"
#include "platform/gate.h"

KDRX_DEFINE_MEMBERS(KdDbDimension, KdDbEntity)

using korra::ObjectAccess;

namespace {

constexpr int kKindMask = 7;

/// Class markers of the points that define a dimension, by its kind.
constexpr std::array<const char*, kKindMask + 1> kDefinitionMarkers = {
    "AlignedDimension", "AlignedDimension",       "2LineAngularDimension", "DiametricDimension",
    "RadialDimension",  "3PointAngularDimension", "OrdinateDimension",     "OrdinateDimension"};
constexpr int kTextMovedFlag = 128;

/// A new block "*D1", "*D2", … of a database.
KdDbObjectId makeBlock(KdDbDatabase& database)
{
    const korra::DatabaseContents& contents = database.contents();
    auto* const table = KdDbBlockTable::cast(ObjectAccess::object(database.blockTableId()));
    std::size_t number = ObjectAccess::records(*table).size();
    while (!contents.record(korra::TableKind::block, L"*D" + std::to_wstring(number)).isNull())
        ++number;
    auto* const record = new KdDbBlockTableRecord;
    ObjectAccess::setName(*record, L"*D" + std::to_wstring(number));
    const KdDbObjectId id = ObjectAccess::append(*table, record);
    ObjectAccess::willChange(*record);
    return id;
}

void empty(KdDbBlockTableRecord& block)
{
    ObjectAccess::willChange(block);
    for (KdDbEntity* entity : ObjectAccess::entities(block).each())
        ObjectAccess::erase(*entity);
    ObjectAccess::owned(block)->replace({});
}

} // namespace

KdDbObjectId KdDbDimension::dimensionStyle() const
{
    return style_.isNull() && database() ? database()->dimstyle() : style_;
}

Kdapi::ErrorStatus KdDbDimension::setDimensionStyle(KdDbObjectId style)
{
    return setReference("KdDbDimension::setDimensionStyle", style_, style,
                        KdDbDimStyleTableRecord::desc());
}

Kdapi::ErrorStatus KdDbDimension::setDimensionText(const wchar_t* text)
{
    return setIf("KdDbDimension::setDimensionText", text != nullptr, text_, text);
}

Kdapi::ErrorStatus KdDbDimension::recomputeDimBlock(bool force)
{
    return platform::gate("KdDbDimension::recomputeDimBlock", objectId(), force)
        .guard(Kdapi::eNotApplicable, [&] {
            if (!database())
                return Kdapi::eNotInDatabase;
            // Closing a changed dimension renews its graphics, so only a writer can find them out
            // of date.
            if (!isWriteEnabled())
                return force ? Kdapi::eNotOpenForWrite : Kdapi::eOk;
            return renewGraphics();
        });
}

Kdapi::ErrorStatus KdDbDimension::renewGraphics()
{
    ObjectAccess::noteChange(*this);
    style_ = dimensionStyle();
    korra::DimensionSheet sheet(*this);
    if (const auto status = makeGraphics(sheet))
        return status;
    auto* record = ObjectAccess::live<KdDbBlockTableRecord>(block_);
    if (!record || blockIsOfSource_) {
        block_ = makeBlock(*database());
        record = ObjectAccess::live<KdDbBlockTableRecord>(block_);
        blockIsOfSource_ = false;
    }
    empty(*record);
    sheet.putInto(block_);
    ObjectAccess::willChange(*this);
    notYetInBlock_.setToIdentity();
    measurement_ = measurement();
    if (!textMoved_)
        textPosition_ = sheet.textPosition();
    return Kdapi::eOk;
}

void KdDbDimension::changesDone()
{
    renewGraphics();
}

Kdapi::ErrorStatus KdDbDimension::makeGraphics(korra::DimensionSheet&) const
{
    return Kdapi::eNotApplicable;
}

Kdapi::ErrorStatus KdDbDimension::copyFrom(const KdRxObject* source)
{
    const KdDbObjectId ownBlock = blockIsOfSource_ ? KdDbObjectId() : block_;
    const auto status = KdDbEntity::copyFrom(source);
    if (status != Kdapi::eOk || source == this)
        return status;
    if (ownBlock.isNull())
        blockIsOfSource_ = true;
    else
        block_ = ownBlock;
    return status;
}

KdRxObject* KdDbDimension::clone() const
{
    KdRxObject* copy = KdDbEntity::clone();
    if (copy)
        static_cast<KdDbDimension*>(copy)->blockIsOfSource_ = true;
    return copy;
}

KdGePoint2d KdDbDimension::inPlane(const KdGePoint3d& point) const
{
    return place_.below(point);
}

std::optional<KdGePoint2d> KdDbDimension::movedText() const
{
    if (!textMoved_)
        return std::nullopt;
    return KdGePoint2d(textPosition_.x, textPosition_.y);
}

Kdapi::ErrorStatus KdDbDimension::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::similarities, [&] {
        if (isA() == KdDbDimension::desc())
            return Kdapi::eNotApplicable;
        const korra::PlaneImage image = place_.transformBy(matrix);
        transformDefinition(matrix, image);
        dimLinePoint_.transformBy(matrix);
        textPosition_.transformBy(image.map);
        notYetInBlock_ = matrix * notYetInBlock_;
        return Kdapi::eOk;
    });
}

void KdDbDimension::draw(korra::DrawSink& sink) const
{
    korra::drawShownBlock(*this, korra::BlockRole::dimension, block_, notYetInBlock_, sink);
}

void KdDbDimension::definition(korra::ObjectVisitor&) {}

void KdDbDimension::transformDefinition(const KdGeMatrix3d&, const korra::PlaneImage&) {}

void KdDbDimension::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Dimension");
    visitor.name(2, block_, korra::TableKind::block,
                 blockIsOfSource_ ? korra::Reference::soft : korra::Reference::hard);
    visitor.point(10, dimLinePoint_);
    visitor.point(11, textPosition_);
    int type = kind() | typeFlags_ | (textMoved_ ? kTextMovedFlag : 0);
    visitor.integer(70, type);
    setKind(static_cast<short>(type & kKindMask));
    textMoved_ = (type & kTextMovedFlag) != 0;
    typeFlags_ = static_cast<short>(type & ~(kKindMask | kTextMovedFlag));
    visitor.text(1, text_, L"");
    visitor.integer(71, attachment_, 5);
    visitor.real(42, measurement_, 0.0);
    visitor.angle(53, textRotation_, 0.0);
    visitor.angle(51, horizontalRotation_, 0.0);
    visitor.name(3, style_, korra::TableKind::dimStyle);
    place_.describeNormal(visitor);
    visitor.behindMarker(3, kDefinitionMarkers[static_cast<std::size_t>(kind())]);
    definition(visitor);
    if (kind() == 0)
        visitor.behindMarker(4, "RotatedDimension"); // no field of its own behind it
    visitor.unsaved(blockIsOfSource_);
    visitor.unsaved(notYetInBlock_);
}
