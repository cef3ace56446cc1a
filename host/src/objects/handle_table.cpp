#include "objects/handle_table.h"

#include "objects/object_access.h"

#include <algorithm>
#include <bit>

namespace korra {
namespace {

constexpr std::size_t kFewest = 64;

/// Scatters handles in runs: they mostly follow each other, and neighbours share their cache lines.
std::size_t scattered(std::uint64_t handle)
{
    constexpr std::uint64_t kRun = 16;
    constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15; // of 2 to the 64
    return (handle / kRun * kGoldenRatio >> 32) * kRun + handle % kRun;
}

} // namespace

/// Where a handle is, or would come.
std::size_t HandleTable::placeFor(std::uint64_t handle) const
{
    const std::size_t last = places_.size() - 1;
    std::size_t place = scattered(handle) & last;
    while (places_[place] && places_[place]->handle.value() != handle)
        place = (place + 1) & last;
    return place;
}

ObjectSlot* HandleTable::find(std::uint64_t handle) const
{
    return places_.empty() ? nullptr : places_[placeFor(handle)];
}

void HandleTable::reserve(std::size_t more)
{
    const std::size_t needed = std::max(kFewest, 2 * (count_ + more));
    if (needed <= places_.size())
        return;
    HandleTable larger;
    larger.places_.resize(std::bit_ceil(needed));
    for (ObjectSlot* const slot : places_) {
        if (slot)
            larger.insert(*slot);
    }
    *this = std::move(larger);
}

bool HandleTable::insert(ObjectSlot& slot) noexcept
{
    ObjectSlot*& place = places_[placeFor(slot.handle.value())];
    if (place)
        return false;
    place = &slot;
    ++count_;
    return true;
}

void HandleTable::clear()
{
    *this = {};
}

} // namespace korra
