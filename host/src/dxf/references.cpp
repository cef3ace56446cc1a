#include "dxf/references.h"

#include "form/numbers.h"
#include "objects/kinds.h"

#include "platform/text.h"

namespace korra {

std::wstring folded(std::wstring_view name)
{
    std::wstring text(name);
    for (wchar_t& character : text)
        character = platform::foldCase(character);
    return text;
}

namespace {

std::optional<TableKind> tableOfRecords(const KdRxClass* kind)
{
    for (int table = 0; table < kTableKinds; ++table) {
        if (kindOfRecords(TableKind(table)).description() == kind)
            return TableKind(table);
    }
    return std::nullopt;
}

} // namespace

std::optional<KdDbObjectId> referredTo(const DatabaseContents& contents, std::string_view bytes,
                                       const KdRxClass* kind)
{
    const auto handle = parseHandle(bytes);
    const auto slot = contents.byHandle.find(handle.value_or(0));
    if (slot != contents.byHandle.end() && (!kind || slot->second->object->isKindOf(kind)))
        return KdDbObjectId(slot->second);
    if (const auto table = tableOfRecords(kind))
        return contents.record(*table, contents.header.encoding().decode(bytes));
    return handle || bytes.empty() ? std::optional(KdDbObjectId()) : std::nullopt;
}

References::References(DatabaseContents& contents) : contents_(contents)
{
    for (std::size_t kind = 0; kind < kTableKinds; ++kind) {
        auto* const owner = ObjectAccess::live<KdDbSymbolTable>(contents.tables[kind]);
        if (!owner)
            continue;
        for (const KdDbSymbolTableRecord* record : ObjectAccess::records(*owner).each())
            records_[kind].emplace(folded(record->name()), // the first of a name counts
                                   record->objectId());
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

KdDbObjectId References::named(TableKind kind, std::string_view bytes, NamedBy by)
{
    Known& known = known_[static_cast<std::size_t>(kind)];
    if (const auto found = known.find(bytes); found != known.end())
        return found->second;
    const std::wstring name = contents_.header.encoding().decode(bytes);
    KdDbObjectId id = find(kind, name);
    if (id.isNull())
        id = substitute(kind, name, by);
    if (by != NamedBy::layer)
        known.emplace(bytes, id);
    return id;
}

KdDbObjectId References::substitute(TableKind kind, std::wstring_view name, NamedBy by)
{
    if (kind == TableKind::layer && !name.empty())
        return recordOrNew(kind, name);
    return standard(kind, by);
}

KdDbObjectId References::standard(TableKind kind, NamedBy by)
{
    const wchar_t* name = standardName(kind, by);
    return name ? recordOrNew(kind, name) : KdDbObjectId();
}

KdDbObjectId References::recordOrNew(TableKind kind, std::wstring_view name)
{
    if (const KdDbObjectId existing = find(kind, name); !existing.isNull())
        return existing;
    KdDbSymbolTable& owner = table(kind);
    auto* const record = static_cast<KdDbSymbolTableRecord*>(kindOfRecords(kind).make());
    ObjectAccess::name(*record) = name;
    if (auto* const layer = KdDbLayerTableRecord::cast(record))
        layer->setLinetypeObjectId(standard(TableKind::linetype, NamedBy::layer));
    const KdDbObjectId id = ObjectAccess::append(owner, record);
    records_[static_cast<std::size_t>(kind)].emplace(folded(name), id);
    return id;
}

KdDbSymbolTable& References::table(TableKind kind)
{
    KdDbObjectId& id = contents_.tables[static_cast<std::size_t>(kind)];
    if (id.isNull())
        id = ObjectAccess::adopt(contents_.database, kindOfTable(kind).make());
    return static_cast<KdDbSymbolTable&>(*ObjectAccess::object(id));
}

} // namespace korra
