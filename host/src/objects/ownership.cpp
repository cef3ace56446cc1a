#include "objects/contents.h"
#include "objects/object_slots.h"

#include "platform/gate.h"

namespace korra {
namespace {

KdDbHandle claimHandle(DatabaseContents& contents, KdDbHandle wanted)
{
    if (wanted.isNull() || contents.byHandle.contains(wanted.value())) {
        while (contents.nextHandle == 0 || contents.byHandle.contains(contents.nextHandle))
            ++contents.nextHandle;
        wanted = KdDbHandle(contents.nextHandle);
    }
    if (wanted.value() >= contents.nextHandle)
        contents.nextHandle = wanted.value() + 1;
    return wanted;
}

void adoptParts(KdDbDatabase& database, KdDbObject& owner)
{
    for (KdDbObject* part : ObjectAccess::parts(owner)) {
        if (!ObjectAccess::slot(*part))
            ObjectAccess::adopt(database, part, owner.objectId(), {}, false);
    }
}

} // namespace

KdDbObjectId ObjectAccess::adopt(KdDbDatabase& database, KdDbObject* object, KdDbObjectId owner,
                                 KdDbHandle handle, bool open)
{
    DatabaseContents& contents = database.contents();
    ObjectSlot& slot = contents.store->add();
    slot.database = &database;
    slot.object = object;
    slot.handle = claimHandle(contents, handle);
    slot.writing = slot.changed = slot.touched = open;
    contents.slots.push_back(&slot);
    contents.byHandle.emplace(slot.handle.value(), &slot);

    unlinkFree(*object);
    object->slot_ = &slot;
    object->owner_ = owner;
    adoptParts(database, *object);
    return KdDbObjectId(&slot);
}

std::vector<KdDbObject*> ObjectAccess::parts(KdDbObject& object)
{
    if (auto* curve = KdDbVertexCurve::cast(&object))
        return {curve->vertices_.begin(), curve->vertices_.end()};
    if (auto* reference = KdDbBlockReference::cast(&object))
        return {reference->attributes_.begin(), reference->attributes_.end()};
    return {};
}

std::vector<KdDbObjectId> ObjectAccess::owned(KdDbObject& object)
{
    std::vector<KdDbObjectId> ids;
    for (const KdDbObject* part : parts(object))
        ids.push_back(part->objectId());
    if (auto* dictionary = KdDbDictionary::cast(&object)) {
        for (const auto& entry : entries(*dictionary))
            ids.push_back(entry.id);
    }
    if (object.extras_)
        ids.push_back(object.extras_->extensionDictionary);
    // An entry may name an object that belongs elsewhere; that one stays.
    std::erase_if(ids, [&](KdDbObjectId id) {
        return !ObjectAccess::object(id) ||
               ObjectAccess::object(id)->ownerId() != object.objectId();
    });
    return ids;
}

void ObjectAccess::setErased(KdDbObject& object, bool erased)
{
    ObjectSlot& slot = *object.slot_;
    if (slot.erased == erased)
        return; // also ends a circle of owners, which a damaged file can hold
    slot.erased = erased;
    slot.changed = true;
    for (const KdDbObjectId id : owned(object))
        setErased(*ObjectAccess::object(id), erased);
}

} // namespace korra

Kdapi::ErrorStatus KdDbObject::erase(bool erasing)
{
    if (platform::gate("KdDbObject::erase", objectId(), erasing))
        return Kdapi::eNotOpenForWrite;
    if (!slot_)
        return Kdapi::eNotInDatabase;
    if (!slot_->writing)
        return Kdapi::eNotOpenForWrite;
    if (slot_->erased == erasing)
        return erasing ? Kdapi::eWasErased : Kdapi::eWasNotErased;
    if (erasing && isIndispensable())
        return Kdapi::eObjectInUse;
    korra::ObjectAccess::setErased(*this, erasing);
    return beginChange();
}
