#pragma once

#include "kd/db/object.h"

#include <utility>

namespace support {

/// An object that is open for the length of a scope.
///
/// Every handle of the library that a host operation opened lies in one of these; nothing is closed
/// elsewhere.
template <class T>
class Opened {
public:
    /// Opens an object by its id; it must be a T.
    Opened(KdDbObjectId id, KdDb::OpenMode mode) : status_(kddbOpenObject(object_, id, mode)) {}

    /// Opens an object with another host operation.
    /// @param open  fills the pointer that it is given and returns the host's status
    template <class Open>
    explicit Opened(Open open) : status_(open(object_))
    {
    }

    ~Opened() { close(); }

    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    explicit operator bool() const { return object_ != nullptr; }

    T* operator->() const { return object_; }

    T& operator*() const { return *object_; }

    T* get() const { return object_; }

    /// What the opening came to.
    Kdapi::ErrorStatus status() const { return status_; }

    /// Closes now instead of at the end of the scope.
    /// @return the host's status; eOk when nothing is open
    Kdapi::ErrorStatus close()
    {
        T* const object = std::exchange(object_, nullptr);
        return object ? object->close() : Kdapi::eOk;
    }

private:
    T* object_ = nullptr;
    Kdapi::ErrorStatus status_;
};

} // namespace support
