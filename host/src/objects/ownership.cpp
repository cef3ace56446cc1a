#include "objects/change_log.h"
#include "objects/contents.h"
#include "objects/object_slots.h"
#include "objects/references.h"

#include "platform/gate.h"

#include <algorithm>
#include <span>
#include <unordered_set>

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
    object.describe(finder);
    return finder.take();
}

/// An object and all that it owns, directly or not, as far as `wanted` says yes.
template <class Wanted>
std::vector<KdDbObject*> withOwned(KdDbObject& object, Wanted wanted)
{
    std::vector<KdDbObject*> found;
    std::unordered_set<const KdDbObject*>
        met; // ends a circle of owners, which a damaged file can hold
    const auto meet = [&](KdDbObject* each) {
        if (wanted(*ObjectAccess::slot(*each)) && met.insert(each).second)
            found.push_back(each);
    };
    meet(&object);
    for (std::size_t next = 0; next < found.size(); ++next) {
        for (KdDbObject* owned : ownedBy(*found[next]))
            meet(owned);
    }
    return found;
}

/// Adds slots for objects that come into a database, without handles.
/// @throw std::bad_alloc with nothing changed that anybody could see
std::span<ObjectSlot* const> addSlots(DatabaseContents& contents, std::size_t count)
{
    const std::size_t before = contents.slots.size();
    contents.byHandle.reserve(count);
    try {
        for (std::size_t added = 0; added < count; ++added) {
            ObjectSlot& slot = contents.store->add();
            contents.slots.push_back(&slot);
            if (ChangeLog* const log = runningLog())
                log->noteAdded(KdDbObjectId(&slot));
        }
    } catch (...) {
        contents.slots.resize(before);
        throw;
    }
    return std::span(contents.slots).subspan(before);
}

/// Gives a new slot its handle: the one that is wanted, or the next free one.
void enterHandle(DatabaseContents& contents, ObjectSlot& slot, KdDbHandle wanted)
{
    slot.handle = wanted;
    if (wanted.isNull() || !contents.byHandle.insert(slot)) {
        slot.handle = KdDbHandle(contents.freeHandle(contents.nextHandle));
        contents.byHandle.insert(slot);
        contents.nextHandle = slot.handle.value();
    }
    contents.nextHandle = std::max(contents.nextHandle, slot.handle.value() + 1);
}

} // namespace

/// The slots come first: when memory ends, object and parts are free-standing still.
KdDbObjectId ObjectAccess::adopt(KdDbDatabase& database, KdDbObject* object, KdDbHandle handle)
{
    DatabaseContents& contents = database.contents();
    OwnedObjects* const parts = owned(*object);
    const auto slots = addSlots(contents, 1 + (parts ? parts->size() : 0));
    const auto take = [&](KdDbObject& taken, ObjectSlot& place, KdDbHandle wanted) {
        enterHandle(contents, place, wanted);
        place.database = &database;
        place.object = &taken;
        unlinkFree(taken);
        taken.slot_ = &place;
    };
    const KdDbObjectId id(slots.front());
    take(*object, *slots.front(), handle);
    if (!parts)
        return id;
    parts->handOver();
    std::size_t place = 0;
    for (KdDbObject* part : parts->objects()) {
        take(*part, *slots[++place], {});
        part->owner_ = id;
    }
    return id;
}

KdDbObjectId ObjectAccess::own(KdDbObject& owner, KdDbObject* object, Opening opening)
{
    if (isCopy(*object))
        translateNames(*object, *owner.database());
    registerApplications(*object, *owner.database());
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
    object.describe(finder);
    return finder.found();
}

void ObjectAccess::setName(KdDbSymbolTableRecord& record, std::wstring name)
{
    record.name_ = std::move(name);
    namesMayDiffer(record);
}

void ObjectAccess::namesMayDiffer(const KdDbObject& object)
{
    const KdDbDatabase* const database = object.database();
    if (!database)
        return;
    RecordNames* const ofTable = database->contents().namesIn(object.objectId());
    RecordNames* const ofOwner = database->contents().namesIn(object.ownerId());
    if (ofTable)
        ofTable->forget();
    else if (ofOwner)
        ofOwner->note(static_cast<const KdDbSymbolTableRecord&>(object));
}

void ObjectAccess::noteChange(KdDbObject& object)
{
    if (!object.slot_)
        return;
    if (ChangeLog* const log = runningLog())
        log->noteChange(object);
    announce(object);
}

void ObjectAccess::announce(const KdDbObject& object) noexcept
{
    object.contentsMayDiffer();
    object.slot_->database->contents().changes.note(*object.slot_);
}

void ObjectAccess::willChange(KdDbObject& object)
{
    noteChange(object);
    if (object.slot_)
        object.slot_->changed = true;
}

void ObjectAccess::erase(KdDbObject& object)
{
    const auto going = withOwned(object, [](const ObjectSlot& slot) { return !slot.erased; });
    for (KdDbObject* each : going)
        willChange(*each);
    for (KdDbObject* each : going) {
        each->slot_->erased = true;
        each->slot_->erasedWithOwner = each != &object;
    }
}

void ObjectAccess::bringBack(KdDbObject& object)
{
    const auto coming = withOwned(object, [&](const ObjectSlot& slot) {
        return slot.erased && (slot.erasedWithOwner || slot.object == &object);
    });
    for (KdDbObject* each : coming)
        willChange(*each);
    for (KdDbObject* each : coming) {
        each->slot_->erased = false;
        each->slot_->erasedWithOwner = false;
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
            if (erasing)
                korra::ObjectAccess::erase(*this);
            else
                korra::ObjectAccess::bringBack(*this);
            return beginChange();
        });
}
