#include "objects/contents.h"
#include "objects/host_opened.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "tables/dimension_variables.h"
#include "tables/drawing_settings.h"

#include <optional>
#include <utility>

using korra::DimensionKind;
using korra::DimensionVariable;
using korra::DrawingSettings;
using korra::ObjectAccess;
using korra::RecordSetting;
using korra::Setting;

namespace {

/// The variable of the same name that holds a reference; null when there is none. Arrow blocks have
/// both: a name in old styles, a reference in newer ones.
const DimensionVariable* referenceOf(const DimensionVariable& text)
{
    for (const DimensionVariable& variable : korra::dimensionVariables()) {
        if (variable.kind == DimensionKind::reference &&
            std::wstring_view(variable.name) == text.name)
            return &variable;
    }
    return nullptr;
}

/// A text that names a record is the value of the reference, and none of its own.
bool namesRecord(const DrawingSettings& drawing, const DimensionVariable& variable)
{
    const bool isText = variable.kind == DimensionKind::text;
    const DimensionVariable* const reference = isText ? referenceOf(variable) : nullptr;
    return reference &&
           !drawing.get(std::get<RecordSetting>(korra::settingOf(*reference))).isNull();
}

KdDbDimensionValue currentValue(const DrawingSettings& drawing, const DimensionVariable& variable)
{
    if (namesRecord(drawing, variable))
        return std::wstring();
    return std::visit(
        [&](const auto& setting) -> KdDbDimensionValue { return drawing.get(setting); },
        korra::settingOf(variable));
}

/// Stores a value of a style as the current one; what the drawing says already stays as it is.
class ValueStore {
public:
    ValueStore(KdDbDatabase& database, const std::vector<KdDbDimensionValue>& values)
        : header_(database.contents().header), drawing_(database), values_(values)
    {
    }

    void store(std::size_t index)
    {
        const DimensionVariable& variable = korra::dimensionVariables()[index];
        // An arrow block is stored once, by the reference.
        if (variable.kind == DimensionKind::text && referenceOf(variable))
            return;
        std::visit([&](const auto& setting) { store(setting, index); }, korra::settingOf(variable));
    }

    void takeBack()
    {
        if (before_)
            header_ = std::move(*before_);
    }

private:
    template <class T>
    void store(const Setting<T>& setting, std::size_t index)
    {
        const T& value = std::get<T>(values_[index]);
        if (drawing_.get(setting) != value)
            set(setting, value);
    }

    /// Names of records are the same in any case.
    void store(const RecordSetting& setting, std::size_t index)
    {
        const std::wstring name = nameOf(setting, index);
        if (platform::compareNoCase(drawing_.get(setting.recordName), name) != 0)
            set(setting.recordName, name);
    }

    template <class T>
    void set(const Setting<T>& setting, const T& value)
    {
        if (!before_)
            before_ = header_;
        drawing_.set(setting, value);
    }

    /// The name of the record; without one what the text of the same name says, else the default.
    std::wstring nameOf(const RecordSetting& setting, std::size_t index) const
    {
        if (const auto* const record =
                ObjectAccess::live<KdDbSymbolTableRecord>(std::get<KdDbObjectId>(values_[index])))
            return record->name();
        const int first = korra::dimensionVariableIndex(setting.recordName.name);
        const auto* const text =
            std::get_if<std::wstring>(&values_[static_cast<std::size_t>(first)]);
        return text ? *text : setting.recordName.byDefault;
    }

    korra::DrawingHeader& header_;
    std::optional<korra::DrawingHeader> before_; ///< as it was before the first change
    DrawingSettings drawing_;
    const std::vector<KdDbDimensionValue>& values_;
};

/// Makes the values of a style the current ones: all of them, or when memory ends none.
void storeAll(KdDbDatabase& database, const KdDbDimStyleTableRecord& style)
{
    // The list can be had of an object that may change alone; it is only looked at.
    const auto& values = ObjectAccess::values(const_cast<KdDbDimStyleTableRecord&>(style));
    ValueStore store(database, values);
    try {
        for (std::size_t index = 0; index < values.size(); ++index)
            store.store(index);
    } catch (...) {
        store.takeBack();
        throw;
    }
}

} // namespace

Kdapi::ErrorStatus KdDbDatabase::getDimstyleData(KdDbDimStyleTableRecord* record) const
{
    if (!record)
        return Kdapi::eNullObjectPointer;
    return platform::gate("KdDbDatabase::getDimstyleData").guard(Kdapi::eNotOpenForWrite, [&] {
        if (!record->isWriteEnabled())
            return Kdapi::eNotOpenForWrite;
        const DrawingSettings drawing(*this);
        std::vector<KdDbDimensionValue> current;
        for (const DimensionVariable& variable : korra::dimensionVariables())
            current.push_back(currentValue(drawing, variable));
        ObjectAccess::willChange(*record);
        ObjectAccess::values(*record) = std::move(current);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyleData(const KdDbDimStyleTableRecord* record)
{
    if (!record)
        return Kdapi::eNullObjectPointer;
    return platform::gate("KdDbDatabase::setDimstyleData", record->objectId())
        .guard(Kdapi::eInvalidInput, [&] {
            storeAll(*this, *record);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyleData(KdDbObjectId style)
{
    return platform::gate("KdDbDatabase::setDimstyleData", style).guard(Kdapi::eInvalidInput, [&] {
        const korra::HostOpened<KdDbDimStyleTableRecord> record(style, KdDb::kForRead);
        if (record)
            storeAll(*this, *record);
        return record.status();
    });
}
