#include "objects/contents.h"

#include "kd/db.h"
#include "objects/object_slots.h"

#include "platform/text.h"

namespace korra {
namespace {

std::vector<KdDbDatabase*> databases;

/// Owners forget their parts first: each object is deleted once, by its slot.
void forgetParts(KdDbObject& object)
{
    if (auto* const curve = KdDbVertexCurve::cast(&object))
        ObjectAccess::vertices(*curve).clear();
    else if (auto* const reference = KdDbBlockReference::cast(&object))
        ObjectAccess::attributes(*reference).clear();
}

} // namespace

DatabaseContents::DatabaseContents(KdDbDatabase& owner)
    : database(owner), store(runningSlots() ? runningSlots() : std::make_shared<ObjectSlots>())
{
    databases.push_back(&owner);
}

DatabaseContents::~DatabaseContents()
{
    std::erase(databases, &database);
}

void DatabaseContents::clear()
{
    for (const ObjectSlot* slot : slots) {
        if (slot->object)
            forgetParts(*slot->object);
    }
    for (ObjectSlot* slot : slots) {
        delete slot->object;
        slot->object = nullptr;
        slot->database = nullptr;
        slot->readers = 0;
        slot->writing = false;
    }
    slots.clear();
    byHandle.clear();
    nextHandle = 1;
    tables = {};
    namedObjects = {};
    enteredViewport = {};
    activeViewMade = false;
    header = {};
    form = {};
}

KdDbObjectId DatabaseContents::record(TableKind kind, std::wstring_view name) const
{
    const auto* const owner = ObjectAccess::live<KdDbSymbolTable>(table(kind));
    return owner ? recordNamed(*owner, name, false) : KdDbObjectId();
}

KdDbBlockTableRecord* DatabaseContents::block(std::wstring_view name) const
{
    return ObjectAccess::live<KdDbBlockTableRecord>(record(TableKind::block, name));
}

KdDbObjectId recordNamed(const KdDbSymbolTable& table, std::wstring_view name, bool erasedToo)
{
    KdDbObjectId erased;
    for (const KdDbObjectId id : ObjectAccess::records(table)) {
        const auto* const record = static_cast<KdDbSymbolTableRecord*>(ObjectAccess::object(id));
        if (!record || record->name().size() != name.size() ||
            platform::compareNoCase(record->name(), name) != 0)
            continue;
        if (!record->isErased())
            return id;
        erased = id;
    }
    return erasedToo ? erased : KdDbObjectId();
}

const std::vector<KdDbDatabase*>& liveDatabases()
{
    return databases;
}

} // namespace korra
