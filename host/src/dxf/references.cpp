#include "dxf/references.h"

#include "form/numbers.h"
#include "objects/kinds.h"

namespace korra {

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
    ObjectSlot* const slot = contents.byHandle.find(handle.value_or(0));
    if (slot && (!kind || slot->object->isKindOf(kind)))
        return KdDbObjectId(slot);
    if (const auto table = tableOfRecords(kind))
        return contents.record(*table, contents.header.encoding().decode(bytes));
    return handle || bytes.empty() ? std::optional(KdDbObjectId()) : std::nullopt;
}

KdDbObjectId References::at(std::uint64_t handle) const
{
    return KdDbObjectId(contents_.byHandle.find(handle));
}

KdDbObjectId References::named(TableKind kind, std::string_view bytes, NamedBy by)
{
    Known& known = known_[static_cast<std::size_t>(kind)];
    if (const auto found = known.find(bytes); found != known.end())
        return found->second;
    const std::wstring name = contents_.header.encoding().decode(bytes);
    KdDbObjectId id = contents_.record(kind, name);
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

KdDbObjectId References::findStandard(TableKind kind, NamedBy by)
{
    const wchar_t* name = standardName(kind, by);
    return name ? recordOrNew(kind, name) : KdDbObjectId();
}

KdDbObjectId References::recordOrNew(TableKind kind, std::wstring_view name)
{
    if (const KdDbObjectId existing = contents_.record(kind, name); !existing.isNull())
        return existing;
    KdDbSymbolTable& owner = table(kind);
    auto* const record = static_cast<KdDbSymbolTableRecord*>(kindOfRecords(kind).make());
    ObjectAccess::setName(*record, std::wstring(name));
    if (auto* const layer = KdDbLayerTableRecord::cast(record))
        layer->setLinetypeObjectId(standard(TableKind::linetype, NamedBy::layer));
    return ObjectAccess::append(owner, record);
}

KdDbSymbolTable& References::table(TableKind kind)
{
    KdDbObjectId& id = contents_.tables[static_cast<std::size_t>(kind)];
    if (id.isNull())
        id = ObjectAccess::adopt(contents_.database, kindOfTable(kind).make());
    return static_cast<KdDbSymbolTable&>(*ObjectAccess::object(id));
}

} // namespace korra
