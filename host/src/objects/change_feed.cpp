#include "objects/change_feed.h"

namespace korra {

void ChangeFeed::note(ObjectSlot& slot) noexcept
{
    ++count_;
    if (isOverfull() || (noted_ > 0 && slots_[noted_ - 1] == &slot))
        return;
    if (noted_ < slots_.size())
        slots_[noted_] = &slot;
    ++noted_;
}

} // namespace korra
