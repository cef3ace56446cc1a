#pragma once

#include "objects/object_access.h"

namespace korra::ed {

/// An object open for writing for the length of a scope, for a change that the host itself makes.
template <class T>
class ObjectChange {
public:
    explicit ObjectChange(KdDbObjectId id)
    {
        if (!ObjectAccess::live<T>(id))
            return;
        KdDbObject* object = nullptr;
        ObjectAccess::open(object, id, KdDb::kForWrite, false);
        object_ = static_cast<T*>(object);
    }

    ~ObjectChange()
    {
        if (object_)
            ObjectAccess::close(*object_);
    }

    ObjectChange(const ObjectChange&) = delete;
    ObjectChange& operator=(const ObjectChange&) = delete;

    /// False for an object of another kind and for one that is open elsewhere.
    explicit operator bool() const { return object_ != nullptr; }

    T* operator->() const { return object_; }

    T& operator*() const { return *object_; }

private:
    T* object_ = nullptr;
};

} // namespace korra::ed
