#pragma once

#include "objects/object_access.h"

namespace korra {

/// An object that the host opens for itself, for the length of a scope.
template <class T>
class HostOpened {
public:
    HostOpened(KdDbObjectId id, KdDb::OpenMode mode)
    {
        KdDbObject* object = nullptr;
        status_ = ObjectAccess::open(object, id, mode);
        object_ = T::cast(object);
        if (!object || object_)
            return;
        ObjectAccess::close(*object);
        status_ = Kdapi::eNotThatKindOfClass;
    }

    ~HostOpened()
    {
        if (object_)
            ObjectAccess::close(*object_);
    }

    HostOpened(const HostOpened&) = delete;
    HostOpened& operator=(const HostOpened&) = delete;

    /// False for an object of another kind and for one that cannot be opened.
    explicit operator bool() const { return object_ != nullptr; }

    Kdapi::ErrorStatus status() const { return status_; }

    T* operator->() const { return object_; }

    T& operator*() const { return *object_; }

private:
    T* object_ = nullptr;
    Kdapi::ErrorStatus status_ = Kdapi::eOk;
};

} // namespace korra
