#include "objects/contents.h"
#include "tables/line_weights.h"

#include "platform/gate.h"

using korra::ObjectAccess;

namespace {

constexpr int kByLayerIndex = 256;

// Group codes of the header variables.
constexpr int kDimensionStyleCode = 2;
constexpr int kTextStyleCode = 7;
constexpr int kLayerCode = 8;
constexpr int kColorCode = 62;
constexpr int kLineWeightCode = 370;

/// Enters the name of a record into a header variable.
template <class Record>
Kdapi::ErrorStatus makeCurrent(KdDbDatabase& database, KdDbObjectId id, const char* variable,
                               int code)
{
    if (id.isNull())
        return Kdapi::eNullObjectId;
    if (id.isErased())
        return Kdapi::eWasErased;
    const auto* record = ObjectAccess::live<Record>(id);
    if (!record)
        return Kdapi::eNotThatKindOfClass;
    if (record->database() != &database)
        return Kdapi::eWrongDatabase;
    database.contents().header.setText(variable, record->name(), code);
    return Kdapi::eOk;
}

} // namespace

Kdapi::ErrorStatus KdDbDatabase::setClayer(KdDbObjectId layer)
{
    if (platform::gate("KdDbDatabase::setClayer", layer))
        return Kdapi::eInvalidInput;
    return makeCurrent<KdDbLayerTableRecord>(*this, layer, "$CLAYER", kLayerCode);
}

Kdapi::ErrorStatus KdDbDatabase::setTextstyle(KdDbObjectId style)
{
    if (platform::gate("KdDbDatabase::setTextstyle", style))
        return Kdapi::eInvalidInput;
    return makeCurrent<KdDbTextStyleTableRecord>(*this, style, "$TEXTSTYLE", kTextStyleCode);
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyle(KdDbObjectId style)
{
    if (platform::gate("KdDbDatabase::setDimstyle", style))
        return Kdapi::eInvalidInput;
    return makeCurrent<KdDbDimStyleTableRecord>(*this, style, "$DIMSTYLE", kDimensionStyleCode);
}

KdCmColor KdDbDatabase::cecolor() const
{
    KdCmColor color;
    color.setColorIndex(
        static_cast<std::uint16_t>(contents_->header.integer("$CECOLOR", kByLayerIndex)));
    return color;
}

Kdapi::ErrorStatus KdDbDatabase::setCecolor(const KdCmColor& color)
{
    if (platform::gate("KdDbDatabase::setCecolor", color.colorIndex()))
        return Kdapi::eInvalidInput;
    contents_->header.setInteger("$CECOLOR", color.colorIndex(), kColorCode);
    return Kdapi::eOk;
}

KdDb::LineWeight KdDbDatabase::celweight() const
{
    return static_cast<KdDb::LineWeight>(
        contents_->header.integer("$CELWEIGHT", KdDb::kLnWtByLayer));
}

Kdapi::ErrorStatus KdDbDatabase::setCelweight(KdDb::LineWeight weight)
{
    if (platform::gate("KdDbDatabase::setCelweight", weight) ||
        !korra::isStandardLineWeight(weight))
        return Kdapi::eInvalidInput;
    contents_->header.setInteger("$CELWEIGHT", weight, kLineWeightCode);
    return Kdapi::eOk;
}
