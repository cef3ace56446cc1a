#include "objects/contents.h"
#include "tables/dimension_variables.h"

#include "platform/gate.h"
#include "platform/text.h"

using korra::DatabaseContents;
using korra::DimensionKind;
using korra::DimensionVariable;
using korra::DrawingHeader;
using korra::ObjectAccess;
using korra::TableKind;

/// The header carries the current values under the variables' names: numbers as they are, and what
/// a style refers to by its name.
namespace {

// Group codes of the header variables.
constexpr int kTextCode = 1;
constexpr int kTextStyleCode = 7;
constexpr int kRealCode = 40;
constexpr int kIntegerCode = 70;

constexpr int kTextStyleVariable = 340; ///< group code of DIMTXSTY in a style

std::string headerName(const DimensionVariable& variable)
{
    return platform::toUtf8(std::wstring(1, L'$') + variable.name);
}

TableKind referredTable(const DimensionVariable& variable)
{
    return variable.code == kTextStyleVariable ? TableKind::textStyle : TableKind::block;
}

const wchar_t* defaultName(const DimensionVariable& variable)
{
    return variable.code == kTextStyleVariable ? L"Standard" : L"";
}

KdDbObjectId referredRecord(const DatabaseContents& contents, const DimensionVariable& variable)
{
    const std::wstring name = contents.header.text(headerName(variable), defaultName(variable));
    return name.empty() ? KdDbObjectId() : contents.record(referredTable(variable), name);
}

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

/// A text of the header that does not name a record.
std::wstring plainText(const DatabaseContents& contents, const DimensionVariable& variable)
{
    const DimensionVariable* reference = referenceOf(variable);
    if (reference && !referredRecord(contents, *reference).isNull())
        return {};
    return contents.header.text(headerName(variable), L"");
}

KdDbDimensionValue currentValue(const DatabaseContents& contents, const DimensionVariable& variable)
{
    const DrawingHeader& header = contents.header;
    switch (variable.kind) {
    case DimensionKind::real:
        return header.real(headerName(variable), variable.byDefault);
    case DimensionKind::text:
        return plainText(contents, variable);
    case DimensionKind::reference:
        return referredRecord(contents, variable);
    default:
        return header.integer(headerName(variable), static_cast<int>(variable.byDefault));
    }
}

/// What the header says for a text or a reference: of one that is null, what the text of the same
/// name says.
std::wstring headerText(const std::vector<KdDbDimensionValue>& values, std::size_t index)
{
    const DimensionVariable& variable = korra::dimensionVariables()[index];
    if (const auto* text = std::get_if<std::wstring>(&values[index]))
        return *text;
    if (const auto* record =
            ObjectAccess::live<KdDbSymbolTableRecord>(std::get<KdDbObjectId>(values[index])))
        return record->name();
    const auto first = static_cast<std::size_t>(korra::dimensionVariableIndex(variable.name));
    return first == index ? defaultName(variable) : std::get<std::wstring>(values[first]);
}

void store(DrawingHeader& header, const std::vector<KdDbDimensionValue>& values, std::size_t index)
{
    const DimensionVariable& variable = korra::dimensionVariables()[index];
    const std::string name = headerName(variable);
    const KdDbDimensionValue& value = values[index];
    if (const auto* real = std::get_if<double>(&value)) {
        if (header.real(name, variable.byDefault) != *real)
            header.setReal(name, *real, kRealCode);
    } else if (const auto* number = std::get_if<int>(&value)) {
        if (header.integer(name, static_cast<int>(variable.byDefault)) != *number)
            header.setInteger(name, *number, kIntegerCode);
    } else if (variable.kind == DimensionKind::reference || !referenceOf(variable)) {
        const std::wstring text = headerText(values, index);
        const std::wstring there = header.text(name, defaultName(variable));
        // Names of records are the same in any case.
        const bool same = variable.kind == DimensionKind::reference
                              ? platform::compareNoCase(there, text) == 0
                              : there == text;
        if (!same)
            header.setText(name, text,
                           variable.code == kTextStyleVariable ? kTextStyleCode : kTextCode);
    }
}

} // namespace

Kdapi::ErrorStatus KdDbDatabase::getDimstyleData(KdDbDimStyleTableRecord* record) const
{
    if (!record)
        return Kdapi::eNullObjectPointer;
    if (platform::gate("KdDbDatabase::getDimstyleData") || !record->isWriteEnabled())
        return Kdapi::eNotOpenForWrite;
    ObjectAccess::willChange(*record);
    auto& values = ObjectAccess::values(*record);
    for (std::size_t index = 0; index < values.size(); ++index)
        values[index] = currentValue(*contents_, korra::dimensionVariables()[index]);
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbDatabase::setDimstyleData(const KdDbDimStyleTableRecord* record)
{
    if (!record)
        return Kdapi::eNullObjectPointer;
    if (platform::gate("KdDbDatabase::setDimstyleData", record->objectId()))
        return Kdapi::eInvalidInput;
    const auto& values = ObjectAccess::values(const_cast<KdDbDimStyleTableRecord&>(*record));
    for (std::size_t index = 0; index < values.size(); ++index)
        store(contents_->header, values, index);
    return Kdapi::eOk;
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
