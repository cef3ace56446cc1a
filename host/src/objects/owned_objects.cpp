#include "kd/own/owned_objects.h"

#include "kd/db/object.h"

namespace korra {

OwnedObjects::~OwnedObjects()
{
    if (areOfDatabase_)
        return;
    for (KdDbObject* object : objects_)
        delete object;
}

std::vector<KdDbObjectId> OwnedObjects::ids() const
{
    std::vector<KdDbObjectId> ids;
    ids.reserve(objects_.size());
    for (const KdDbObject* object : objects_)
        ids.push_back(object->objectId());
    return ids;
}

void OwnedObjects::reserveOne()
{
    if (objects_.size() == objects_.capacity())
        objects_.reserve(2 * objects_.size() + 1);
}

} // namespace korra
