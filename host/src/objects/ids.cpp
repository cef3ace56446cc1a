#include "objects/object_slots.h"

#include "platform/gate.h"

#include <cstdio>

bool KdDbObjectId::isValid() const
{
    return slot_ && slot_->database;
}

bool KdDbObjectId::isErased() const
{
    return slot_ && (slot_->erased || !slot_->object);
}

KdDbDatabase* KdDbObjectId::database() const
{
    return slot_ ? slot_->database : nullptr;
}

KdDbHandle KdDbObjectId::handle() const
{
    return slot_ ? slot_->handle : KdDbHandle();
}

KdRxClass* KdDbObjectId::objectClass() const
{
    return slot_ && slot_->object ? slot_->object->isA() : nullptr;
}

std::string traceForm(KdDbObjectId id)
{
    char digits[17];
    std::snprintf(digits, sizeof digits, "%llX",
                  static_cast<unsigned long long>(id.handle().value()));
    return digits;
}

Kdapi::ErrorStatus kddbGetObjectId(KdDbObjectId& id, const kds_name name)
{
    return platform::gate("kddbGetObjectId").guard(Kdapi::eInvalidInput, [&] {
        if (!name || !korra::runningSlots())
            return Kdapi::eInvalidInput;
        korra::ObjectSlot* slot = korra::runningSlots()->find(name);
        if (!slot)
            return Kdapi::eInvalidInput;
        id = KdDbObjectId(slot);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus kddbGetKdsName(kds_name name, KdDbObjectId id)
{
    return platform::gate("kddbGetKdsName", id).guard(Kdapi::eNullObjectId, [&] {
        if (id.isNull() || !name || !korra::runningSlots())
            return Kdapi::eNullObjectId;
        korra::runningSlots()->writeName(*id.slot(), name);
        return Kdapi::eOk;
    });
}
