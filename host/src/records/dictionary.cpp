#include "kd/db/database.h"

#include "objects/object_access.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <memory>
#include <utility>

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbDictionary, KdDbObject)

KdDbDictionary::KdDbDictionary() = default;
KdDbDictionary::~KdDbDictionary() = default;

void KdDbDictionary::describe(korra::ObjectVisitor& visitor)
{
    KdDbObject::describe(visitor);
    visitor.behindMarker(1, "Dictionary");
    visitor.integer(280, hardOwner_, false);
    visitor.integer(281, cloning_);
    visitor.list(3, entries_, [this](korra::ObjectVisitor& element, Entry& entry) {
        // The code of the reference says whether the dictionary keeps the object alive.
        KdDbObjectId soft;
        KdDbObjectId hard;
        (hardOwner_ ? hard : soft) = entry.id;
        element.text(3, entry.name);
        element.reference(350, soft, korra::Reference::softOwner, nullptr);
        element.reference(360, hard, korra::Reference::hardOwner, nullptr);
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
    return platform::gate("KdDbDictionary::getAt", objectId(), name)
        .guard(Kdapi::eKeyNotFound, [&] {
            if (!name)
                return Kdapi::eKeyNotFound;
            for (const Entry& entry : entries_) {
                if (!entry.id.isNull() && !entry.id.isErased() &&
                    platform::compareNoCase(entry.name, name) == 0) {
                    id = entry.id;
                    return Kdapi::eOk;
                }
            }
            return Kdapi::eKeyNotFound;
        });
}

Kdapi::ErrorStatus KdDbDictionary::setAt(const wchar_t* name, KdDbObject* object, KdDbObjectId& id)
{
    return platform::gate("KdDbDictionary::setAt", objectId(), name)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (!name || !*name)
                return Kdapi::eInvalidKey;
            if (const auto status = ObjectAccess::canOwn(*this, object))
                return status;
            if (const auto status = beginChange())
                return status;
            ObjectAccess::enter(*this, name, *object, korra::Opening::forWrite);
            id = object->objectId();
            return Kdapi::eOk;
        });
}

int KdDbDictionary::numEntries() const
{
    return static_cast<int>(std::ranges::count_if(
        entries_, [](const Entry& entry) { return !entry.id.isNull() && !entry.id.isErased(); }));
}

namespace korra {

void ObjectAccess::enter(KdDbDictionary& dictionary, std::wstring_view name, KdDbObject& object,
                         Opening opening)
{
    willChange(dictionary);
    std::vector<KdDbDictionary::Entry>& entries = dictionary.entries_;
    const auto known = std::ranges::find_if(entries, [&](const KdDbDictionary::Entry& entry) {
        return platform::compareNoCase(entry.name, name) == 0;
    });
    KdDbDictionary::Entry entering{std::wstring(name), {}};
    const auto enteredId = [&] {
        return object.database() ? object.objectId() : own(dictionary, &object, opening);
    };
    if (known == entries.end()) {
        entries.push_back(std::move(entering)); // an entry without an object is none
        try {
            entries.back().id = enteredId();
        } catch (...) {
            entries.pop_back();
            throw;
        }
        return;
    }
    KdDbObject* const replaced = ObjectAccess::object(known->id);
    entering.id = enteredId();
    *known = std::move(entering);
    if (replaced && replaced != &object)
        erase(*replaced);
}

KdDbDictionary& ObjectAccess::extensionDictionary(KdDbObject& object)
{
    if (auto* const existing = live<KdDbDictionary>(extras(object).extensionDictionary))
        return *existing;
    auto dictionary = std::make_unique<KdDbDictionary>();
    dictionary->hardOwner_ = true;
    willChange(object);
    extras(object).extensionDictionary = own(object, dictionary.get());
    return *dictionary.release();
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
    return platform::gate("KdDbObject::createExtensionDictionary", objectId())
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (!database())
                return Kdapi::eNotInDatabase;
            if (const auto status = beginChange())
                return status;
            ObjectAccess::extensionDictionary(*this);
            return Kdapi::eOk;
        });
}
