#include "objects/contents.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "tables/dimension_variables.h"
#include "tables/drawing_settings.h"

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
        : drawing_(database), values_(values)
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

private:
    template <class T>
    void store(const Setting<T>& setting, std::size_t index)
    {
        const T& value = std::get<T>(values_[index]);
        if (drawing_.get(setting) != value)
            drawing_.set(setting, value);
    }

    /// Names of records are the same in any case.
    void store(const RecordSetting& setting, std::size_t index)
    {
        const std::wstring name = nameOf(setting, index);
        if (platform::compareNoCase(drawing_.get(setting.recordName), name) != 0)
            drawing_.set(setting.recordName, name);
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

    DrawingSettings drawing_;
    const std::vector<KdDbDimensionValue>& values_;
};

} // namespace

Kdapi::ErrorStatus KdDbDatabase::getDimstyleData(KdDbDimStyleTableRecord* record) const
{
    if (!record)
        return Kdapi::eNullObjectPointer;
    return platform::gate("KdDbDatabase::getDimstyleData").guard(Kdapi::eNotOpenForWrite, [&] {
        if (!record->isWriteEnabled())
            return Kdapi::eNotOpenForWrite;
        ObjectAccess::willChange(*record);
        auto& values = ObjectAccess::values(*record);
        const DrawingSettings drawing(*this);
        for (std::size_t index = 0; index < values.size(); ++index)
            values[index] = currentValue(drawing, korra::dimensionVariables()[index]);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyleData(const KdDbDimStyleTableRecord* record)
{
    if (!record)
        return Kdapi::eNullObjectPointer;
    return platform::gate("KdDbDatabase::setDimstyleData", record->objectId())
        .guard(Kdapi::eInvalidInput, [&] {
            const auto& values =
                ObjectAccess::values(const_cast<KdDbDimStyleTableRecord&>(*record));
            ValueStore store(*this, values);
            for (std::size_t index = 0; index < values.size(); ++index)
                store.store(index);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyleData(KdDbObjectId style)
{
    KdDbDimStyleTableRecord* record = nullptr;
    if (const auto status = kddbOpenObject(record, style, KdDb::kForRead))
        return status;
    const Kdapi::ErrorStatus status = setDimstyleData(record);
    record->close();
    return status;
}
