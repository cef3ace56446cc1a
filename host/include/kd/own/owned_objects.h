#pragma once

#include "kd/db/ids.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class KdDbObject;

namespace korra {

/// What an object owns as part of itself, in its order: vertices, attributes, records, entities.
///
/// Objects that are in no database are deleted with the list. Once they are in one they go with the
/// database, and stay in the list also while they are erased.
class OwnedObjects {
public:
    using Objects = std::vector<KdDbObject*>;

    OwnedObjects() = default;
    ~OwnedObjects();
    OwnedObjects(const OwnedObjects&) = delete;
    OwnedObjects& operator=(const OwnedObjects&) = delete;

    const Objects& objects() const { return objects_; }

    bool isEmpty() const { return objects_.empty(); }

    std::size_t size() const { return objects_.size(); }

    /// Ids of the objects; null ones while they are in no database.
    std::vector<KdDbObjectId> ids() const;

    /// Takes an object over. With room reserved it cannot fail.
    void append(KdDbObject* object) { objects_.push_back(object); }

    void reserveOne();

    /// Another list of objects that are in the database all the same.
    void replace(Objects objects)
    {
        objects_ = std::move(objects);
        ++replacements_;
    }

    /// How often there was another list: since the last one objects were only appended.
    std::uint64_t replacements() const { return replacements_; }

    /// The objects have come into a database, which deletes them.
    void handOver() { areOfDatabase_ = true; }

private:
    Objects objects_;
    std::uint64_t replacements_ = 0;
    bool areOfDatabase_ = false;
};

/// A list of owned objects of one class.
template <class T>
class Owned : public OwnedObjects {
public:
    T* operator[](std::size_t place) const { return static_cast<T*>(objects()[place]); }

    class Iterator {
    public:
        explicit Iterator(Objects::const_iterator place) : place_(place) {}

        T* operator*() const { return static_cast<T*>(*place_); }

        Iterator& operator++()
        {
            ++place_;
            return *this;
        }

        bool operator==(const Iterator&) const = default;

    private:
        Objects::const_iterator place_;
    };

    struct Range {
        Iterator first;
        Iterator last;

        Iterator begin() const { return first; }

        Iterator end() const { return last; }
    };

    /// The objects in their order, erased ones included.
    Range each() const { return {Iterator(objects().begin()), Iterator(objects().end())}; }
};

} // namespace korra
