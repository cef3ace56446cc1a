#include "objects/change_log.h"

#include <utility>

namespace korra {

void ChangeLog::noteChange(const KdDbObject& object)
{
    const KdDbObjectId id = object.objectId();
    if (before_.contains(id))
        return;
    const ObjectSlot& slot = *id.slot();
    before_.emplace(id, Before{valuesOf(object, Extent::everything), slot.erased,
                               slot.erasedWithOwner, slot.changed});
}

void ChangeLog::noteAdded(KdDbObjectId id)
{
    added_.push_back(id);
}

void ChangeLog::takeBack()
{
    for (auto& [id, before] : std::exchange(before_, {})) {
        KdDbObject* const object = ObjectAccess::object(id);
        if (!object)
            continue;
        giveValues(*object, std::move(before.values), Extent::everything);
        ObjectSlot& slot = *id.slot();
        slot.erased = before.erased;
        slot.erasedWithOwner = before.erasedWithOwner;
        slot.changed = before.changed;
        slot.touched = false;
        ObjectAccess::announce(*object);
    }
    for (const KdDbObjectId id : std::exchange(added_, {})) {
        id.slot()->erased = true;
        id.slot()->touched = false;
    }
}

void ChangeLog::moveInto(ChangeLog& outer)
{
    outer.before_.merge(before_); // what was noted outside before holds
    outer.added_.insert(outer.added_.end(), added_.begin(), added_.end());
    before_.clear();
    added_.clear();
}

} // namespace korra
