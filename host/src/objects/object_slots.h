#pragma once

#include "objects/object_access.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace korra {

/// Every slot of the host: none is freed before the host has stopped and its databases are deleted,
/// so an id never dangles while the host runs.
class ObjectSlots {
public:
    ObjectSlots();
    ~ObjectSlots();
    ObjectSlots(const ObjectSlots&) = delete;
    ObjectSlots& operator=(const ObjectSlots&) = delete;

    ObjectSlot& add();

    /// The slot that an entity name means; null for anything that this host did not hand out.
    ObjectSlot* find(const kds_name name);

    void writeName(const ObjectSlot& slot, kds_name name) const;

    /// Objects that are open, in words.
    std::vector<std::string> openObjects() const;

private:
    std::deque<ObjectSlot> slots_;
    std::int64_t generation_; ///< of this host among all that the program started
};

/// The slots of the running host; null when none runs.
const std::shared_ptr<ObjectSlots>& runningSlots();

/// Gives a host that starts its slots; null ends them with the host.
void setRunningSlots(std::shared_ptr<ObjectSlots> slots);

} // namespace korra
