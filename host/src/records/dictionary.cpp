#include "kd/db/database.h"

#include "objects/object_access.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbDictionary, KdDbObject)

KdDbDictionary::KdDbDictionary() = default;
KdDbDictionary::~KdDbDictionary() = default;

void KdDbDictionary::describe(korra::ObjectVisitor& visitor)
{
    visitor.integer(280, hardOwner_, false);
    visitor.integer(281, cloning_);
    visitor.list(3, entries_, [this](korra::ObjectVisitor& element, Entry& entry) {
        // The code of the reference says whether the dictionary keeps the object alive.
        KdDbObjectId soft;
        KdDbObjectId hard;
        (hardOwner_ ? hard : soft) = entry.id;
        element.text(3, entry.name);
        element.handle(350, soft);
        element.handle(360, hard);
        entry.id = hard.isNull() ? soft : hard;
    });
}

/// The dictionary of everything and the one of the layouts.
bool KdDbDictionary::isIndispensable() const
{
    return database() && (objectId() == database()->namedObjectsDictionaryId() ||
                          objectId() == database()->layoutDictionaryId());
}

Kdapi::ErrorStatus KdDbDictionary::getAt(const wchar_t* name, KdDbObjectId& id) const
{
    if (platform::gate("KdDbDictionary::getAt", objectId(), name) || !name)
        return Kdapi::eKeyNotFound;
    for (const Entry& entry : entries_) {
        if (!entry.id.isNull() && !entry.id.isErased() &&
            platform::compareNoCase(entry.name, name) == 0) {
            id = entry.id;
            return Kdapi::eOk;
        }
    }
    return Kdapi::eKeyNotFound;
}

Kdapi::ErrorStatus KdDbDictionary::setAt(const wchar_t* name, KdDbObject* object, KdDbObjectId& id)
{
    if (platform::gate("KdDbDictionary::setAt", objectId(), name))
        return Kdapi::eNotOpenForWrite;
    if (!name || !*name)
        return Kdapi::eInvalidKey;
    if (!object)
        return Kdapi::eNullObjectPointer;
    if (object->database())
        return Kdapi::eAlreadyInDb;
    if (!database())
        return Kdapi::eNotInDatabase;
    if (const auto status = beginChange())
        return status;
    id = ObjectAccess::adopt(*database(), object, objectId());
    ObjectAccess::enter(*this, name, id);
    return Kdapi::eOk;
}

int KdDbDictionary::numEntries() const
{
    return static_cast<int>(std::ranges::count_if(
        entries_, [](const Entry& entry) { return !entry.id.isNull() && !entry.id.isErased(); }));
}

namespace korra {

void ObjectAccess::enter(KdDbDictionary& dictionary, std::wstring_view name, KdDbObjectId id)
{
    markChanged(dictionary);
    for (KdDbDictionary::Entry& entry : dictionary.entries_) {
        if (platform::compareNoCase(entry.name, name) != 0)
            continue;
        if (KdDbObject* replaced = object(entry.id); replaced && entry.id != id)
            setErased(*replaced, true);
        entry = {std::wstring(name), id};
        return;
    }
    dictionary.entries_.push_back({std::wstring(name), id});
}

KdDbDictionary& ObjectAccess::extensionDictionary(KdDbObject& object)
{
    KdDbObjectId& id = extras(object).extensionDictionary;
    if (KdDbDictionary* existing = live<KdDbDictionary>(id))
        return *existing;
    auto* dictionary = new KdDbDictionary;
    dictionary->hardOwner_ = true;
    id = adopt(*object.database(), dictionary, object.objectId(), {}, false);
    markChanged(object);
    return *dictionary;
}

} // namespace korra

KdDbObjectId KdDbObject::extensionDictionary() const
{
    if (!extras_ || extras_->extensionDictionary.isErased())
        return {};
    return extras_->extensionDictionary;
}

Kdapi::ErrorStatus KdDbObject::createExtensionDictionary()
{
    if (platform::gate("KdDbObject::createExtensionDictionary", objectId()))
        return Kdapi::eNotOpenForWrite;
    if (!database())
        return Kdapi::eNotInDatabase;
    if (const auto status = beginChange())
        return status;
    ObjectAccess::extensionDictionary(*this);
    return Kdapi::eOk;
}
