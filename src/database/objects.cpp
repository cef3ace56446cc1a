#include "orvex/objects.h"

#include "support/open_table.h"
#include "support/working_database.h"

#include "kd/ed.h"

using support::Opened;
using support::openTable;
using support::workingDatabase;

Kdapi::ErrorStatus addToDb(KdDbEntity* entity, KdDbObjectId& id, KdDbDatabase* database)
{
    Opened<KdDbBlockTableRecord> space(database->currentSpaceId(), KdDb::kForWrite);
    if (!space)
        return space.status();
    const Kdapi::ErrorStatus appended = space->appendKdDbEntity(id, entity);
    if (appended != Kdapi::eOk)
        return appended;
    return space.close();
}

Kdapi::ErrorStatus addToDb(KdDbEntity* entity, KdDbDatabase* database)
{
    KdDbObjectId discarded;
    return addToDb(entity, discarded, database);
}

Kdapi::ErrorStatus postToDb(KdDbEntity* entity, KdDbObjectId& id, KdDbDatabase* database)
{
    const Kdapi::ErrorStatus added = addToDb(entity, id, database);
    return added == Kdapi::eOk ? entity->close() : added;
}

Kdapi::ErrorStatus postToDb(KdDbEntity* entity, KdDbDatabase* database)
{
    KdDbObjectId discarded;
    return postToDb(entity, discarded, database);
}

int EraseObject(KdArray<KdDbObjectId> ids)
{
    for (const KdDbObjectId id : ids) {
        if (!EraseObject(id))
            return 0;
    }
    return 1;
}

int EraseObject(KdDbObjectId id)
{
    const Opened<KdDbObject> object(id, KdDb::kForWrite);
    return object && object->erase(true) == Kdapi::eOk;
}

Kdapi::ErrorStatus CopyEntity(KdDbEntity* source, KdDbEntity* destination)
{
    return CopyObject(source, destination);
}

Kdapi::ErrorStatus CopyObject(KdDbObject* source, KdDbObject* destination)
{
    if (!source || !destination)
        return Kdapi::eNullObjectPointer;
    return destination->copyFrom(source);
}

void EntUpdate(KdDbObject* object)
{
    if (object && !object->isErased())
        EntUpdate(object->objectId());
}

void EntUpdate(KdDbObjectId id)
{
    if (id.isNull())
        return;
    kds_name name{};
    kddbGetKdsName(name, id);
    kddbEntUpd(name);
    kdedRedraw(name, 0);
}

bool IsValidId(const KdDbObjectId& id)
{
    if (id.isNull() || id.isErased() || !id.isValid())
        return false;
    return bool(Opened<KdDbEntity>(id, KdDb::kForRead));
}

int isEntityInCurrentSpaceId(KdDbObjectId& id)
{
    const Opened<KdDbEntity> entity(id, KdDb::kForRead);
    return entity && isEntityInCurrentSpaceId(entity.get());
}

int isEntityInCurrentSpaceId(KdDbEntity* entity)
{
    return entity->ownerId() == entity->database()->currentSpaceId();
}

namespace {

Opened<KdDbBlockTableRecord> openModelSpace()
{
    const auto blocks = openTable<KdDbBlockTable>(workingDatabase(), KdDb::kForRead);
    KdDbObjectId id;
    if (blocks)
        blocks->getIdAt(L"*Model_Space", id, false);
    return Opened<KdDbBlockTableRecord>(id, KdDb::kForWrite);
}

Opened<KdDbSortentsTable> openModelSpaceOrder()
{
    const Opened<KdDbBlockTableRecord> space = openModelSpace();
    return Opened<KdDbSortentsTable>([&](KdDbSortentsTable*& table) {
        return space ? space->getSortentsTable(table, KdDb::kForWrite, true) : space.status();
    });
}

} // namespace

int DrawOrderMoveToLast(const KdDbObjectId& id)
{
    if (!IsValidId(id))
        return 0;
    const Opened<KdDbSortentsTable> table = openModelSpaceOrder();
    KdArray<KdDbObjectId> order;
    if (!table || table->getFullDrawOrder(order, false) != Kdapi::eOk)
        return 0;
    int place = 0;
    if (order.find(id, place))
        order.removeAt(place);
    order.insertAt(0, id);
    table->setRelativeDrawOrder(order);
    return 1;
}
