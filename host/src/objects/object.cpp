#include "kd/db/object.h"

#include "objects/object_access.h"

#include "platform/gate.h"

using korra::ObjectAccess;
using korra::ObjectSlot;

KDRX_DEFINE_MEMBERS(KdDbObject, KdRxObject)

namespace {

KdDbObject* firstFree = nullptr;

bool isOpen(const ObjectSlot& slot)
{
    return slot.writing || slot.readers > 0;
}

} // namespace

KdDbObject::KdDbObject() : nextFree_(firstFree)
{
    if (firstFree)
        firstFree->previousFree_ = this;
    firstFree = this;
}

KdDbObject::~KdDbObject()
{
    ObjectAccess::unlinkFree(*this);
    if (slot_)
        slot_->object = nullptr;
}

KdDbObjectId KdDbObject::objectId() const
{
    return KdDbObjectId(slot_);
}

KdDbDatabase* KdDbObject::database() const
{
    return slot_ ? slot_->database : nullptr;
}

bool KdDbObject::isErased() const
{
    return slot_ && slot_->erased;
}

bool KdDbObject::isReadEnabled() const
{
    return !slot_ || isOpen(*slot_);
}

bool KdDbObject::isWriteEnabled() const
{
    return !slot_ || slot_->writing;
}

Kdapi::ErrorStatus KdDbObject::close()
{
    return platform::gate("KdDbObject::close", objectId()).afterwards(Kdapi::eNotOpenForRead, [&] {
        return ObjectAccess::close(*this);
    });
}

Kdapi::ErrorStatus KdDbObject::upgradeOpen()
{
    return platform::gate("KdDbObject::upgradeOpen", objectId()).guard(Kdapi::eWasOpenForRead, [&] {
        if (isWriteEnabled())
            return Kdapi::eOk;
        if (slot_->readers == 0)
            return Kdapi::eNotOpenForRead;
        if (slot_->readers > 1)
            return Kdapi::eWasOpenForRead;
        slot_->readers = 0;
        slot_->writing = true;
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbObject::downgradeOpen()
{
    return platform::gate("KdDbObject::downgradeOpen", objectId())
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (!slot_ || !slot_->writing)
                return Kdapi::eNotOpenForWrite;
            ObjectAccess::finishChanges(*this);
            slot_->writing = false;
            slot_->readers = 1;
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbObject::beginChange()
{
    if (!slot_) {
        contentsMayDiffer();
        return Kdapi::eOk;
    }
    if (!slot_->writing)
        return Kdapi::eNotOpenForWrite;
    ObjectAccess::willChange(*this);
    slot_->touched = true;
    return Kdapi::eOk;
}

void KdDbObject::describe(korra::ObjectVisitor& visitor)
{
    korra::ObjectExtras none;
    korra::ObjectExtras& extras = extras_ ? *extras_ : none;
    visitor.owner(owner_);
    visitor.extensionDictionary(extras.extensionDictionary);
    visitor.extendedData(extras.xData);
    visitor.source(source_);
    if (!extras_ && (!none.extensionDictionary.isNull() || !none.xData.empty()))
        extras_ = std::make_unique<korra::ObjectExtras>(std::move(none));
}

namespace korra {

void ObjectAccess::unlinkFree(KdDbObject& object)
{
    if (object.previousFree_)
        object.previousFree_->nextFree_ = object.nextFree_;
    else if (firstFree == &object)
        firstFree = object.nextFree_;
    if (object.nextFree_)
        object.nextFree_->previousFree_ = object.previousFree_;
    object.previousFree_ = nullptr;
    object.nextFree_ = nullptr;
}

std::vector<const KdRxClass*> ObjectAccess::freeStandingClasses()
{
    std::vector<const KdRxClass*> classes;
    for (const KdDbObject* object = firstFree; object; object = object->nextFree_)
        classes.push_back(object->isA());
    return classes;
}

void ObjectAccess::forgetFreeStanding()
{
    while (firstFree)
        unlinkFree(*firstFree);
}

Kdapi::ErrorStatus ObjectAccess::open(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                      bool openErased)
{
    object = nullptr;
    if (id.isNull())
        return Kdapi::eNullObjectId;
    ObjectSlot& slot = *id.slot();
    if (!slot.database || !slot.object)
        return Kdapi::eNullDatabase;
    if (slot.erased && !openErased)
        return Kdapi::eWasErased;
    if (slot.writing)
        return Kdapi::eWasOpenForWrite;
    if (mode == KdDb::kForWrite && slot.readers > 0)
        return Kdapi::eWasOpenForRead;
    if (mode == KdDb::kForWrite)
        slot.writing = true;
    else
        ++slot.readers;
    object = slot.object;
    return Kdapi::eOk;
}

Kdapi::ErrorStatus ObjectAccess::close(KdDbObject& object)
{
    ObjectSlot* slot = object.slot_;
    if (!slot)
        return Kdapi::eNotInDatabase;
    if (!isOpen(*slot))
        return Kdapi::eNotOpenForRead;
    if (slot->held > 0)
        --slot->held;
    if (slot->writing) {
        finishChanges(object);
        slot->writing = false;
    } else {
        --slot->readers;
    }
    return Kdapi::eOk;
}

void ObjectAccess::finishChanges(KdDbObject& object)
{
    if (object.slot_->touched && !object.slot_->erased)
        object.changesDone();
    object.slot_->touched = false;
}

ObjectExtras& ObjectAccess::extras(KdDbObject& object)
{
    if (!object.extras_)
        object.extras_ = std::make_unique<ObjectExtras>();
    return *object.extras_;
}

KDRX_DEFINE_MEMBERS(UnknownEntity, KdDbEntity)
KDRX_DEFINE_MEMBERS(UnknownObject, KdDbObject)

} // namespace korra

Kdapi::ErrorStatus kddbOpenObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                  bool openErased)
{
    return kddbOpenObject(object, id, mode, nullptr, openErased);
}

Kdapi::ErrorStatus kddbOpenObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                  KdRxClass* description, bool openErased)
{
    object = nullptr;
    return platform::gate("kddbOpenObject", id, mode).guard(Kdapi::eWasOpenForWrite, [&] {
        const Kdapi::ErrorStatus status = ObjectAccess::open(object, id, mode, openErased);
        if (status != Kdapi::eOk || !description || object->isKindOf(description))
            return status;
        ObjectAccess::close(*object);
        object = nullptr;
        return Kdapi::eNotThatKindOfClass;
    });
}
