#include "tables/drawing_settings.h"

#include "objects/contents.h"

#include <cmath>

namespace korra {
namespace {

bool isInTable(const KdDbSymbolTableRecord& record, TableKind kind)
{
    return record.ownerId() == record.database()->contents().table(kind);
}

} // namespace

bool accepts(const Setting<int>& setting, int value)
{
    return setting.range.holds(value);
}

bool accepts(const Setting<double>& setting, double value)
{
    return setting.range.holds(value);
}

bool accepts(const Setting<KdGePoint2d>&, const KdGePoint2d& value)
{
    return std::isfinite(value.x) && std::isfinite(value.y);
}

bool accepts(const Setting<KdGePoint3d>&, const KdGePoint3d& value)
{
    return std::isfinite(value.x) && std::isfinite(value.y) && std::isfinite(value.z);
}

DrawingSettings::DrawingSettings(const KdDbDatabase& database) : contents_(database.contents()) {}

template <class T>
std::string DrawingSettings::headerName(const Setting<T>& setting) const
{
    const bool ofSheet = setting.scope == SettingScope::space && isSheetCurrent(contents_.database);
    std::string name = ofSheet ? "$P" : "$";
    for (const wchar_t* letter = setting.name; *letter; ++letter)
        name += static_cast<char>(*letter);
    return name;
}

int DrawingSettings::get(const Setting<int>& setting) const
{
    return contents_.header.integer(headerName(setting), setting.byDefault);
}

double DrawingSettings::get(const Setting<double>& setting) const
{
    return contents_.header.real(headerName(setting), setting.byDefault);
}

KdGePoint2d DrawingSettings::get(const Setting<KdGePoint2d>& setting) const
{
    const KdGePoint3d byDefault(setting.byDefault.x, setting.byDefault.y, 0.0);
    const KdGePoint3d point = contents_.header.point(headerName(setting), byDefault);
    return {point.x, point.y};
}

KdGePoint3d DrawingSettings::get(const Setting<KdGePoint3d>& setting) const
{
    return contents_.header.point(headerName(setting), setting.byDefault);
}

std::wstring DrawingSettings::get(const Setting<std::wstring>& setting) const
{
    return contents_.header.text(headerName(setting), setting.byDefault);
}

KdDbObjectId DrawingSettings::get(const RecordSetting& setting) const
{
    for (const std::wstring& name :
         {get(setting.recordName), std::wstring(setting.recordName.byDefault)}) {
        const KdDbObjectId record =
            name.empty() ? KdDbObjectId() : contents_.record(setting.table, name);
        if (!record.isNull())
            return record;
    }
    return {};
}

void DrawingSettings::set(const Setting<int>& setting, int value)
{
    contents_.header.setInteger(headerName(setting), value, setting.code);
}

void DrawingSettings::set(const Setting<double>& setting, double value)
{
    contents_.header.setReal(headerName(setting), value, setting.code);
}

void DrawingSettings::set(const Setting<KdGePoint2d>& setting, const KdGePoint2d& value)
{
    contents_.header.setPoint(headerName(setting), value);
}

void DrawingSettings::set(const Setting<KdGePoint3d>& setting, const KdGePoint3d& value)
{
    contents_.header.setPoint(headerName(setting), value);
}

void DrawingSettings::set(const Setting<std::wstring>& setting, const std::wstring& value)
{
    contents_.header.setText(headerName(setting), value, setting.code);
}

Kdapi::ErrorStatus DrawingSettings::set(const RecordSetting& setting, KdDbObjectId id)
{
    const bool mayBeNone = *setting.recordName.byDefault == L'\0';
    if (id.isNull() && !mayBeNone)
        return Kdapi::eNullObjectId;
    if (id.isErased())
        return Kdapi::eWasErased;
    const auto* const record = ObjectAccess::live<KdDbSymbolTableRecord>(id);
    if (!id.isNull() && (!record || !isInTable(*record, setting.table)))
        return Kdapi::eNotThatKindOfClass;
    if (record && record->database() != &contents_.database)
        return Kdapi::eWrongDatabase;
    set(setting.recordName, record ? std::wstring(record->name()) : std::wstring());
    return Kdapi::eOk;
}

bool isSheetCurrent(const KdDbDatabase& database)
{
    return DrawingSettings(database).get(settings::kTileMode) == 0 &&
           database.contents().enteredViewport.isNull();
}

} // namespace korra
