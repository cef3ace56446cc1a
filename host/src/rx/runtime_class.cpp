#include "kd/rx.h"

#include "platform/gate.h"

KdRxClass::KdRxClass(const wchar_t* name, KdRxClass* parent) : name_(name), parent_(parent) {}

bool KdRxClass::isDerivedFrom(const KdRxClass* other) const
{
    if (!other)
        return false;
    const KdRxClass* each = this;
    while (each && each != other)
        each = each->parent_;
    return each != nullptr;
}

KdRxClass* KdRxObject::desc()
{
    static KdRxClass description(L"KdRxObject", nullptr);
    return &description;
}

Kdapi::ErrorStatus KdRxObject::copyFrom(const KdRxObject* source)
{
    if (!source)
        return Kdapi::eNullObjectPointer;
    return source->isKindOf(isA()) ? Kdapi::eOk : Kdapi::eNotThatKindOfClass;
}

void kdrxBuildClassHierarchy()
{
    // A class knows its base from the start, so that there are no links to make.
    platform::gate("kdrxBuildClassHierarchy").always([] {});
}

void deleteKdRxClass(KdRxClass* description)
{
    platform::gate("deleteKdRxClass", description ? description->name() : nullptr).always([&] {
        delete description;
    });
}
