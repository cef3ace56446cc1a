#include "objects/contents.h"

#include "form/numbers.h"
#include "kd/db.h"
#include "objects/object_slots.h"
#include "objects/transaction.h"

#include <algorithm>

namespace korra {
namespace {

std::vector<KdDbDatabase*> databases;

} // namespace

DatabaseContents::DatabaseContents(KdDbDatabase& owner)
    : database(owner),
      store(runningSlots() ? runningSlots() : std::make_shared<ObjectSlots>()),
      transactions(std::make_unique<TransactionManager>())
{
    databases.push_back(&owner);
}

DatabaseContents::~DatabaseContents()
{
    std::erase(databases, &database);
}

void DatabaseContents::clear()
{
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
    names = {};
    changes = {};
    namedObjects = {};
    enteredViewport = {};
    activeViewMade = false;
    header = {};
    form = {};
}

std::uint64_t DatabaseContents::freeHandle(std::uint64_t from) const
{
    while (from == 0 || from > kLastHandle || byHandle.contains(from))
        from = from > kLastHandle ? 1 : from + 1;
    return from;
}

KdDbObjectId DatabaseContents::record(TableKind kind, std::wstring_view name) const
{
    const auto* const owner = ObjectAccess::live<KdDbSymbolTable>(table(kind));
    return owner ? recordNamed(*owner, name, Erased::passedOver) : KdDbObjectId();
}

KdDbBlockTableRecord* DatabaseContents::block(std::wstring_view name) const
{
    return ObjectAccess::live<KdDbBlockTableRecord>(record(TableKind::block, name));
}

KdDbObjectId recordNamed(const KdDbSymbolTable& table, std::wstring_view name, Erased erased)
{
    const KdDbDatabase* const database = table.database();
    RecordNames* const names = database ? database->contents().namesIn(table.objectId()) : nullptr;
    return names ? names->find(table, name, erased) : KdDbObjectId();
}

RecordNames* DatabaseContents::namesIn(KdDbObjectId table) const
{
    const auto place = std::ranges::find(tables, table);
    return table.isNull() || place == tables.end() ? nullptr : &names[place - tables.begin()];
}

const std::vector<KdDbDatabase*>& liveDatabases()
{
    return databases;
}

} // namespace korra
