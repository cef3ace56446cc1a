#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korra {

struct ObjectSlot;

/// The slots of a drawing by their handles.
class HandleTable {
public:
    /// Null for a handle that no slot has.
    ObjectSlot* find(std::uint64_t handle) const;

    bool contains(std::uint64_t handle) const { return find(handle) != nullptr; }

    /// Makes room for so many slots more: entering them cannot fail.
    void reserve(std::size_t more);

    /// Enters a slot by its handle, with room reserved. @return false when another one has it
    bool insert(ObjectSlot& slot) noexcept;

    void clear();

private:
    std::size_t placeFor(std::uint64_t handle) const;

    /// A power of two; each slot at the place that its handle gives, or behind it where that and
    /// all between were taken. Never full, so that a search ends.
    std::vector<ObjectSlot*> places_;
    std::size_t count_ = 0;
};

} // namespace korra
