#include "records/extended_data.h"

#include "objects/contents.h"
#include "rx/result_buffer.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace korra {
namespace {

bool isText(short code)
{
    return (code >= kXDataText && code <= 1003) || code == kXDataHandle;
}

/// Reads one node; nullopt for a type that extended data cannot hold.
std::optional<TypedValue> valueOf(const resbuf& node)
{
    const short code = node.restype;
    if (isText(code))
        return TypedValue{code, std::wstring(node.resval.rstring ? node.resval.rstring : L"")};
    if (code == 1004) {
        const auto length = static_cast<std::size_t>(std::max<short>(node.resval.rbinary.clen, 0));
        return TypedValue{code, std::string(node.resval.rbinary.buf, length)};
    }
    if (code >= 1010 && code <= 1013) {
        const auto& point = node.resval.rpoint;
        return TypedValue{code, KdGePoint3d(point[0], point[1], point[2])};
    }
    if (code >= kXDataReal && code <= 1042)
        return TypedValue{code, node.resval.rreal};
    if (code == kXDataShort)
        return TypedValue{code, node.resval.rint};
    if (code == 1071)
        return TypedValue{code, node.resval.rlong};
    return std::nullopt;
}

void writeValue(const TypedValue& value, resbuf& node)
{
    if (const auto* const text = std::get_if<std::wstring>(&value.value)) {
        node.resval.rstring = newHostString(*text);
    } else if (const auto* const bytes = std::get_if<std::string>(&value.value)) {
        node.resval.rbinary = {static_cast<short>(bytes->size()), newHostBytes(*bytes)};
    } else if (const auto* const point = std::get_if<KdGePoint3d>(&value.value)) {
        for (unsigned int axis = 0; axis < 3; ++axis)
            node.resval.rpoint[axis] = (*point)[axis];
    } else if (const auto* const real = std::get_if<double>(&value.value)) {
        node.resval.rreal = *real;
    } else if (const auto* const number = std::get_if<short>(&value.value)) {
        node.resval.rint = *number;
    } else {
        node.resval.rlong = std::get<std::int32_t>(value.value);
    }
}

using Section = std::vector<TypedValue>;

/// Splits a list at its 1001 nodes. @return nullopt for a list that is no extended data
std::optional<std::vector<Section>> sectionsOf(const resbuf* list)
{
    if (!list || list->restype != kXDataApplication)
        return std::nullopt;
    std::vector<Section> sections;
    for (; list; list = list->rbnext) {
        std::optional<TypedValue> value = valueOf(*list);
        if (!value)
            return std::nullopt;
        if (value->code == kXDataApplication)
            sections.emplace_back();
        sections.back().push_back(std::move(*value));
    }
    return sections;
}

bool isRegistered(const KdDbDatabase* database, const Section& section)
{
    const auto& name = std::get<std::wstring>(section.front().value);
    return !database || !database->contents().record(TableKind::regApp, name).isNull();
}

} // namespace

std::pair<std::size_t, std::size_t> applicationRange(const std::vector<TypedValue>& data,
                                                     std::wstring_view application)
{
    const auto isBegin = [](const TypedValue& value) { return value.code == kXDataApplication; };
    const auto begin = std::ranges::find_if(data, [&](const TypedValue& value) {
        return isBegin(value) &&
               platform::compareNoCase(std::get<std::wstring>(value.value), application) == 0;
    });
    const auto end = begin == data.end() ? begin : std::find_if(begin + 1, data.end(), isBegin);
    return {static_cast<std::size_t>(begin - data.begin()),
            static_cast<std::size_t>(end - data.begin())};
}

void replaceApplicationData(std::vector<TypedValue>& data, const std::vector<TypedValue>& section)
{
    const auto [first, last] =
        applicationRange(data, std::get<std::wstring>(section.front().value));
    const auto place = data.erase(data.begin() + static_cast<std::ptrdiff_t>(first),
                                  data.begin() + static_cast<std::ptrdiff_t>(last));
    if (section.size() > 1)
        data.insert(place, section.begin(), section.end());
}

} // namespace korra

resbuf* KdDbObject::xData(const wchar_t* applicationName) const
{
    return platform::gate("KdDbObject::xData", objectId(), applicationName)
        .guard(nullptr, [&]() -> resbuf* {
            if (!extras_)
                return nullptr;
            const std::vector<korra::TypedValue>& data = extras_->xData;
            const auto [first, last] = applicationName
                                           ? korra::applicationRange(data, applicationName)
                                           : std::pair(std::size_t{0}, data.size());
            korra::ResbufBuilder list;
            for (std::size_t index = first; index < last; ++index)
                korra::writeValue(data[index], list.append(data[index].code));
            return list.release();
        });
}

Kdapi::ErrorStatus KdDbObject::setXData(const resbuf* list)
{
    return platform::gate("KdDbObject::setXData", objectId()).guard(Kdapi::eNotOpenForWrite, [&] {
        const auto sections = korra::sectionsOf(list);
        if (!sections)
            return Kdapi::eInvalidInput;
        const KdDbDatabase* home =
            database() ? database() : kddbHostApplicationServices()->workingDatabase();
        for (const korra::Section& section : *sections) {
            if (!korra::isRegistered(home, section))
                return Kdapi::eRegappIdNotFound;
        }
        auto& data = korra::ObjectAccess::extras(*this).xData;
        std::vector<korra::TypedValue> changed = data;
        for (const korra::Section& section : *sections)
            korra::replaceApplicationData(changed, section);
        const Kdapi::ErrorStatus status = beginChange();
        if (status == Kdapi::eOk)
            data = std::move(changed);
        return status;
    });
}
