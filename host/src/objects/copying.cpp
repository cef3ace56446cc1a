#include "objects/field_values.h"
#include "objects/object_access.h"

#include "platform/gate.h"

#include <memory>
#include <utility>

namespace korra {
namespace {

std::unique_ptr<KdDbObject> copyOf(const KdDbObject& source);

template <class Part>
void copyParts(const std::vector<Part*>& source, std::vector<Part*>& target)
{
    for (const Part* part : source) {
        if (!part->isErased())
            target.push_back(static_cast<Part*>(copyOf(*part).release()));
    }
}

void copyParts(KdDbObject& source, KdDbObject& target)
{
    if (auto* curve = KdDbVertexCurve::cast(&source))
        copyParts(ObjectAccess::vertices(*curve),
                  ObjectAccess::vertices(static_cast<KdDbVertexCurve&>(target)));
    else if (auto* reference = KdDbBlockReference::cast(&source))
        copyParts(ObjectAccess::attributes(*reference),
                  ObjectAccess::attributes(static_cast<KdDbBlockReference&>(target)));
}

void copyXData(const KdDbObject& source, KdDbObject& target)
{
    if (const ObjectExtras* extras = ObjectAccess::extras(source))
        ObjectAccess::extras(target).xData = extras->xData;
    else if (ObjectAccess::extras(std::as_const(target)))
        ObjectAccess::extras(target).xData.clear();
}

std::unique_ptr<KdDbObject> copyOf(const KdDbObject& source)
{
    std::unique_ptr<KdDbObject> copy(ObjectAccess::newOfSameClass(source));
    if (!copy)
        return nullptr;
    copyFields(source, *copy);
    copyXData(source, *copy);
    copyParts(const_cast<KdDbObject&>(source), *copy);
    return copy;
}

bool isUnknown(const KdDbObject& object)
{
    return UnknownEntity::cast(&object) || UnknownObject::cast(&object);
}

} // namespace

FieldValues fieldValues(const KdDbObject& object)
{
    // Visitors share one form for reading and writing; the recorder leaves the object as it is.
    FieldRecorder recorder;
    ObjectAccess::describe(const_cast<KdDbObject&>(object), recorder);
    return recorder.take();
}

void copyFields(const KdDbObject& source, KdDbObject& target)
{
    FieldPlayer player(fieldValues(source));
    ObjectAccess::describe(target, player);
}

bool haveSameFields(const KdDbObject& left, const KdDbObject& right)
{
    return left.isA() == right.isA() && fieldValues(left) == fieldValues(right);
}

} // namespace korra

Kdapi::ErrorStatus KdDbObject::copyFrom(const KdRxObject* source)
{
    if (platform::gate("KdDbObject::copyFrom", objectId()))
        return Kdapi::eNotThatKindOfClass;
    if (!source)
        return Kdapi::eNullObjectPointer;
    if (source->isA() != isA() || korra::isUnknown(*this))
        return Kdapi::eNotThatKindOfClass;
    if (const auto status = beginChange())
        return status;
    if (source == this)
        return Kdapi::eOk;
    const auto& object = static_cast<const KdDbObject&>(*source);
    korra::copyFields(object, *this);
    korra::copyXData(object, *this);
    return Kdapi::eOk;
}

KdRxObject* KdDbObject::clone() const
{
    if (platform::gate("KdDbObject::clone", objectId()) || korra::isUnknown(*this))
        return nullptr;
    return korra::copyOf(*this).release();
}
