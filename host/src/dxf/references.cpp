#include "dxf/references.h"

#include "dxf/object_kinds.h"

#include "platform/text.h"

namespace korra {

std::wstring folded(std::wstring_view name)
{
    std::wstring text(name);
    for (wchar_t& character : text)
        character = platform::foldCase(character);
    return text;
}

const wchar_t* standardName(TableKind kind, bool ofLayer)
{
    switch (kind) {
    case TableKind::layer:
        return L"0";
    case TableKind::linetype:
        return ofLayer ? L"Continuous" : L"ByLayer";
    case TableKind::textStyle:
    case TableKind::dimStyle:
        return L"Standard";
    default:
        return nullptr;
    }
}

References::References(DatabaseContents& contents) : contents_(contents)
{
    for (std::size_t kind = 0; kind < kTableKinds; ++kind) {
        auto* owner = ObjectAccess::live<KdDbSymbolTable>(contents.tables[kind]);
        if (!owner)
            continue;
        for (const KdDbObjectId id : ObjectAccess::records(*owner)) {
            const auto* record = static_cast<KdDbSymbolTableRecord*>(ObjectAccess::object(id));
            records_[kind].emplace(folded(record->name()), id); // the first of a name counts
        }
    }
}

KdDbObjectId References::at(std::uint64_t handle) const
{
    const auto found = contents_.byHandle.find(handle);
    return found == contents_.byHandle.end() ? KdDbObjectId() : KdDbObjectId(found->second);
}

KdDbObjectId References::find(TableKind kind, std::wstring_view name) const
{
    const auto& records = records_[static_cast<std::size_t>(kind)];
    const auto found = records.find(folded(name));
    return found == records.end() ? KdDbObjectId() : found->second;
}

KdDbObjectId References::named(TableKind kind, std::string_view bytes, bool ofLayer)
{
    Known& known = known_[static_cast<std::size_t>(kind)];
    if (const auto found = known.find(bytes); found != known.end())
        return found->second;
    const std::wstring name = contents_.header.encoding().decode(bytes);
    KdDbObjectId id = find(kind, name);
    if (id.isNull())
        id = substitute(kind, name, ofLayer);
    if (!ofLayer)
        known.emplace(bytes, id);
    return id;
}

KdDbObjectId References::substitute(TableKind kind, std::wstring_view name, bool ofLayer)
{
    if (kind == TableKind::layer && !name.empty())
        return recordOrNew(kind, name);
    return standard(kind, ofLayer);
}

KdDbObjectId References::standard(TableKind kind, bool ofLayer)
{
    const wchar_t* name = standardName(kind, ofLayer);
    return name ? recordOrNew(kind, name) : KdDbObjectId();
}

KdDbObjectId References::recordOrNew(TableKind kind, std::wstring_view name)
{
    if (const KdDbObjectId existing = find(kind, name); !existing.isNull())
        return existing;
    KdDbSymbolTable& owner = table(kind);
    KdDbSymbolTableRecord* record = newRecord(kind);
    ObjectAccess::name(*record) = name;
    if (auto* layer = KdDbLayerTableRecord::cast(record))
        layer->setLinetypeObjectId(standard(TableKind::linetype, true));
    const KdDbObjectId id =
        ObjectAccess::adopt(contents_.database, record, owner.objectId(), {}, false);
    ObjectAccess::records(owner).push_back(id);
    records_[static_cast<std::size_t>(kind)].emplace(folded(name), id);
    return id;
}

KdDbSymbolTable& References::table(TableKind kind)
{
    KdDbObjectId& id = contents_.tables[static_cast<std::size_t>(kind)];
    if (id.isNull())
        id = ObjectAccess::adopt(contents_.database, newTable(kind), {}, {}, false);
    return static_cast<KdDbSymbolTable&>(*ObjectAccess::object(id));
}

} // namespace korra
