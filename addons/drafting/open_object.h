#pragma once

#include "orvex/orvex.h"

#include <memory>

struct CloseObject {
    void operator()(KdDbObject* object) const { object->close(); }
};

/// An object that is open for the length of a scope; null when it could not be opened.
template <class T>
using OpenObject = std::unique_ptr<T, CloseObject>;

/// Gives up an entity that could not be added: one that came into the drawing all the same is
/// closed, any other one deleted.
inline void giveUp(KdDbEntity* entity)
{
    if (entity->objectId().isNull())
        delete entity;
    else
        entity->close();
}

/// @param status  the host's status
template <class T>
OpenObject<T> openObject(KdDbObjectId id, KdDb::OpenMode mode, Kdapi::ErrorStatus& status)
{
    T* object = nullptr;
    status = kddbOpenObject(object, id, mode);
    return OpenObject<T>(object);
}
