#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korra {

struct ObjectSlot;

/// Which objects of a drawing have changed since they were asked for, for those who keep what
/// follows from them, such as boxes. Only the latest are remembered.
class ChangeFeed {
public:
    /// An object is about to change, or has changed.
    void note(ObjectSlot& slot) noexcept;

    /// Grows with every change.
    std::uint64_t count() const { return count_; }

    bool isEmpty() const { return noted_ == 0; }

    /// True when anything may have changed: there were too many to remember.
    bool isOverfull() const { return noted_ > slots_.size(); }

    /// What has changed, some of it more than once; nothing to go by when there were too many.
    std::span<ObjectSlot* const> noted() const
    {
        return std::span(slots_).first(isOverfull() ? 0 : noted_);
    }

    void clear() noexcept { noted_ = 0; }

private:
    std::array<ObjectSlot*, 1024> slots_{};
    std::size_t noted_ = 0; ///< one more than there is room for: too many
    std::uint64_t count_ = 1;
};

} // namespace korra
