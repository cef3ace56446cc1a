#include "objects/change_log.h"
#include "objects/contents.h"
#include "objects/object_slots.h"
#include "objects/references.h"

#include "platform/gate.h"

namespace korra {
namespace {

class ListFinder final : public PassingVisitor {
public:
    OwnedObjects* found() const { return found_; }

    void owned(OwnedObjects& objects) override { found_ = &objects; }

private:
    OwnedObjects* found_ = nullptr;
};

/// Collects all that an object owns: parts, its extension dictionary, entries that name it as their
/// owner. An entry may name an object that belongs elsewhere; that one stays.
class OwnedFinder final : public PassingVisitor {
public:
    explicit OwnedFinder(const KdDbObject& owner) : owner_(owner.objectId()) {}

    std::vector<KdDbObject*> take() { return std::move(found_); }

    void reference(int, KdDbObjectId& value, Reference meaning, const KdRxClass*) override
    {
        if (meaning == Reference::softOwner || meaning == Reference::hardOwner)
            add(ObjectAccess::object(value));
    }

    void extensionDictionary(KdDbObjectId& value) override { add(ObjectAccess::object(value)); }

    void owned(OwnedObjects& objects) override
    {
        for (KdDbObject* object : objects.objects())
            add(object);
    }

private:
    void add(KdDbObject* object)
    {
        if (object && object->ownerId() == owner_)
            found_.push_back(object);
    }

    KdDbObjectId owner_;
    std::vector<KdDbObject*> found_;
};

std::vector<KdDbObject*> ownedBy(KdDbObject& object)
{
    OwnedFinder finder(object);
    ObjectAccess::describe(object, finder);
    return finder.take();
}

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

/// A slot for an object that comes into a database.
/// @throw std::bad_alloc with nothing changed that anybody could see
ObjectSlot& newSlot(DatabaseContents& contents, KdDbHandle wanted)
{
    ObjectSlot& slot = contents.store->add();
    slot.handle = claimHandle(contents, wanted);
    contents.slots.push_back(&slot);
    try {
        contents.byHandle.emplace(slot.handle.value(), &slot);
        if (ChangeLog* const log = runningLog())
            log->noteAdded(KdDbObjectId(&slot));
    } catch (...) {
        contents.byHandle.erase(slot.handle.value());
        contents.slots.pop_back();
        throw;
    }
    return slot;
}

} // namespace

/// The slots come first: when memory ends, object and parts are free-standing still.
KdDbObjectId ObjectAccess::adopt(KdDbDatabase& database, KdDbObject* object, KdDbHandle handle)
{
    DatabaseContents& contents = database.contents();
    OwnedObjects* const parts = owned(*object);
    ObjectSlot& slot = newSlot(contents, handle);
    std::size_t readied = 0;
    try {
        for (; parts && readied < parts->size(); ++readied)
            newSlot(contents, {});
    } catch (...) {
        for (std::size_t count = 0; count <= readied; ++count) {
            contents.byHandle.erase(contents.slots.back()->handle.value());
            contents.slots.pop_back();
        }
        throw;
    }
    const auto take = [&](KdDbObject& taken, ObjectSlot& place) {
        place.database = &database;
        place.object = &taken;
        unlinkFree(taken);
        taken.slot_ = &place;
    };
    take(*object, slot);
    if (!parts)
        return KdDbObjectId(&slot);
    parts->handOver();
    std::size_t place = contents.slots.size() - parts->size();
    for (KdDbObject* part : parts->objects()) {
        take(*part, *contents.slots[place++]);
        part->owner_ = KdDbObjectId(&slot);
    }
    return KdDbObjectId(&slot);
}

KdDbObjectId ObjectAccess::own(KdDbObject& owner, KdDbObject* object, Opening opening)
{
    if (isCopy(*object))
        translateNames(*object, *owner.database());
    const KdDbObjectId id = adopt(*owner.database(), object);
    setOwner(*object, owner.objectId());
    ObjectSlot& slot = *id.slot();
    slot.writing = slot.changed = slot.touched = opening == Opening::forWrite;
    return id;
}

KdDbObjectId ObjectAccess::append(KdDbObject& owner, KdDbObject* object, Opening opening)
{
    OwnedObjects& list = *owned(owner);
    list.reserveOne();
    noteChange(owner);
    const KdDbObjectId id = own(owner, object, opening);
    list.append(object);
    return id;
}

Kdapi::ErrorStatus ObjectAccess::canOwn(const KdDbObject& owner, const KdDbObject* object)
{
    if (!object)
        return Kdapi::eNullObjectPointer;
    if (object->database())
        return Kdapi::eAlreadyInDb;
    if (!owner.database())
        return Kdapi::eNotInDatabase;
    return checkReferences(*object, *owner.database(),
                           isCopy(*object) ? ForeignNames::translated : ForeignNames::refused);
}

Kdapi::ErrorStatus ObjectAccess::appendPart(KdDbEntity& entity, KdDbEntity* part, KdDbObjectId& id)
{
    const auto refused = canOwn(entity, part);
    if (refused != Kdapi::eOk && refused != Kdapi::eNotInDatabase)
        return refused;
    if (const auto status = entity.beginChange())
        return status;
    if (entity.database()) {
        id = append(entity, part, Opening::forWrite);
        return Kdapi::eOk;
    }
    OwnedObjects& parts = *owned(entity);
    parts.reserveOne();
    parts.append(part);
    return Kdapi::eOk;
}

OwnedObjects* ObjectAccess::owned(KdDbObject& object)
{
    ListFinder finder;
    describe(object, finder);
    return finder.found();
}

void ObjectAccess::noteChange(KdDbObject& object)
{
    ChangeLog* const log = object.slot_ ? runningLog() : nullptr;
    if (log)
        log->noteChange(object);
}

void ObjectAccess::willChange(KdDbObject& object)
{
    noteChange(object);
    if (object.slot_)
        object.slot_->changed = true;
}

void ObjectAccess::setErased(KdDbObject& object, bool erased)
{
    if (object.isErased() == erased)
        return;
    std::vector<KdDbObject*> pending{&object};
    while (!pending.empty()) {
        KdDbObject& next = *pending.back();
        pending.pop_back();
        willChange(next);
        ObjectSlot& slot = *next.slot_;
        slot.erased = erased;
        slot.erasedWithOwner = erased && &next != &object;
        for (KdDbObject* owned : ownedBy(next)) {
            // Also ends a circle of owners, which a damaged file can hold.
            const ObjectSlot& its = *owned->slot_;
            if (erased ? !its.erased : its.erasedWithOwner)
                pending.push_back(owned);
        }
    }
}

} // namespace korra

Kdapi::ErrorStatus KdDbObject::erase(bool erasing)
{
    return platform::gate("KdDbObject::erase", objectId(), erasing)
        .guard(Kdapi::eNotOpenForWrite, [&] {
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
        });
}
