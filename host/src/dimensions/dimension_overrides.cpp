#include "dimensions/dimension_overrides.h"

#include "objects/contents.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "records/extended_data.h"
#include "tables/dimension_accessors.h"

#include <utility>

namespace korra {

namespace {

constexpr const wchar_t* kApplication = L"ACAD";
constexpr const wchar_t* kSection = L"DSTYLE";

bool beginsSection(const TypedValue& node)
{
    const auto* const text = std::get_if<std::wstring>(&node.value);
    return node.code == kXDataText && text && platform::compareNoCase(*text, kSection) == 0;
}

std::optional<double> numberIn(const TypedValue& node)
{
    if (const short* number = std::get_if<short>(&node.value))
        return *number;
    if (const std::int32_t* number = std::get_if<std::int32_t>(&node.value))
        return *number;
    if (const double* number = std::get_if<double>(&node.value))
        return *number;
    return std::nullopt;
}

KdDbObjectId objectOfHandle(const KdDbDatabase* database, const std::wstring& text)
{
    if (!database)
        return {};
    const std::uint64_t handle = std::wcstoull(text.c_str(), nullptr, 16);
    return KdDbObjectId(database->contents().byHandle.find(handle));
}

/// What an override's value node says; none where it is of another kind than the variable.
std::optional<KdDbDimensionValue>
readValue(const TypedValue& node, const DimensionVariable& variable, const KdDbDatabase* database)
{
    const auto* const text = std::get_if<std::wstring>(&node.value);
    if (variable.kind == DimensionKind::text || variable.kind == DimensionKind::reference) {
        if (!text)
            return std::nullopt;
        return variable.kind == DimensionKind::text
                   ? KdDbDimensionValue(*text)
                   : KdDbDimensionValue(objectOfHandle(database, *text));
    }
    const auto number = numberIn(node);
    if (!number || !accepts(variable, *number))
        return std::nullopt;
    return valueOf(variable, *number);
}

TypedValue valueNode(const DimensionVariable& variable, double number)
{
    const short code = overrideValueCode(variable.kind);
    if (code == kXDataReal)
        return {code, number};
    return {code, static_cast<short>(number)};
}

TypedValue bracket(const wchar_t* text)
{
    return {kXDataBracket, std::wstring(text)};
}

KdDbDimensionValue styleValue(KdDbObjectId id, std::size_t index)
{
    auto* const style = ObjectAccess::live<KdDbDimStyleTableRecord>(id);
    return style ? ObjectAccess::values(*style)[index] : defaultValue(dimensionVariables()[index]);
}

} // namespace

OverrideSections::OverrideSections(const std::vector<TypedValue>& data) : data_(data)
{
    auto [at, end] = applicationRange(data, kApplication);
    while (at < end) {
        if (beginsSection(data[at]))
            at = readSection(at + 1, end);
        else
            ++at;
    }
}

/// @param at  behind the section's name. @return the position behind the section
std::size_t OverrideSections::readSection(std::size_t at, std::size_t end)
{
    const bool opened = at < end;
    at += opened ? 1 : 0;
    const auto closes = [&](std::size_t node) { return data_[node].code == kXDataBracket; };
    while (at + 1 < end && !closes(at) && !closes(at + 1)) {
        pairs.push_back(at);
        at += 2;
    }
    if (!firstSectionEnd) {
        firstSectionEnd = at;
        isOpened = opened;
    }
    while (at < end && !closes(at))
        ++at;
    return std::min(at + 1, end);
}

std::optional<std::size_t> OverrideSections::valueOf(int code) const
{
    for (const std::size_t pair : pairs) {
        const auto* const number = std::get_if<short>(&data_[pair].value);
        if (data_[pair].code == kXDataShort && number && *number == code)
            return pair + 1;
    }
    return std::nullopt;
}

void storeOverride(std::vector<TypedValue>& data, const DimensionVariable& variable, double number)
{
    const OverrideSections sections(data);
    const TypedValue value = valueNode(variable, number);
    if (const auto known = sections.valueOf(variable.code)) {
        data[*known] = value;
        return;
    }
    std::vector<TypedValue> added;
    const auto addPair = [&] {
        added.push_back({kXDataShort, static_cast<short>(variable.code)});
        added.push_back(value);
    };
    std::size_t at = 0;
    if (sections.firstSectionEnd) {
        at = *sections.firstSectionEnd;
        if (!sections.isOpened)
            added.push_back(bracket(L"{"));
        addPair();
    } else {
        const auto [first, end] = applicationRange(data, kApplication);
        at = end;
        if (first == end)
            added.push_back({kXDataApplication, std::wstring(kApplication)});
        added.push_back({kXDataText, std::wstring(kSection)});
        added.push_back(bracket(L"{"));
        addPair();
        added.push_back(bracket(L"}"));
    }
    data.insert(data.begin() + static_cast<std::ptrdiff_t>(at), added.begin(), added.end());
}

KdDbDimensionValue dimensionValue(const KdDbObject& drawn, KdDbObjectId style, int index)
{
    const auto place = static_cast<std::size_t>(index);
    const DimensionVariable& variable = dimensionVariables()[place];
    if (const ObjectExtras* extras = ObjectAccess::extras(drawn)) {
        const auto node = OverrideSections(extras->xData).valueOf(variable.code);
        if (node) {
            if (auto value = readValue(extras->xData[*node], variable, drawn.database()))
                return std::move(*value);
        }
    }
    const bool isCurrent = style.isNull() && drawn.database();
    return styleValue(isCurrent ? drawn.database()->dimstyle() : style, place);
}

KdDbDimensionValue dimensionValue(const KdDbDimension& dimension, int index)
{
    return dimensionValue(dimension, dimension.dimensionStyle(), index);
}

std::vector<KdDbDimensionValue> dimensionValues(const KdDbDimension& dimension)
{
    std::vector<KdDbDimensionValue> values;
    for (std::size_t i = 0; i < dimensionVariables().size(); ++i)
        values.push_back(dimensionValue(dimension, static_cast<int>(i)));
    return values;
}

} // namespace korra

#define DEFINE_OVERRIDE_ACCESSOR(Type, getter, setter, code)                                       \
    Type KdDbDimension::getter() const                                                             \
    {                                                                                              \
        const int index = korra::dimensionVariableIndex(code);                                     \
        return static_cast<Type>(korra::numberOf(korra::dimensionValue(*this, index)));            \
    }                                                                                              \
    Kdapi::ErrorStatus KdDbDimension::setter(Type value)                                           \
    {                                                                                              \
        return platform::gate("KdDbDimension::" #setter, objectId(), value)                        \
            .guard(Kdapi::eInvalidInput,                                                           \
                   [&] { return setOverride(code, static_cast<double>(value)); });                 \
    }

KORRA_DIMENSION_ACCESSORS(DEFINE_OVERRIDE_ACCESSOR)

#undef DEFINE_OVERRIDE_ACCESSOR

Kdapi::ErrorStatus KdDbDimension::setOverride(int code, double value)
{
    if (const auto status = beginChange())
        return status;
    const auto index = static_cast<std::size_t>(korra::dimensionVariableIndex(code));
    const korra::DimensionVariable& variable = korra::dimensionVariables()[index];
    if (!korra::accepts(variable, value))
        return Kdapi::eInvalidInput;
    if (database())
        korra::registerApplication(*database(), korra::kApplication);
    korra::storeOverride(korra::ObjectAccess::extras(*this).xData, variable, value);
    return Kdapi::eOk;
}
