#pragma once

#include "kd/db/ids.h"
#include "kd/ge.h"
#include "platform/tally.h"

#include <cstdint>
#include <map>
#include <vector>

namespace korra::ed {

/// A member of a selection set and how it came into it.
struct Selected {
    KdDbObjectId entity;
    std::int64_t marker = 0; ///< of the graphics that were picked
    KdGePoint3d point;       ///< of the pick, user coordinates
};

/// The selection sets that are not freed yet, by the number in their names.
class SelectionSets {
public:
    /// Writes the name of a new set.
    void add(std::vector<Selected> members, kds_name name);

    /// The members of a set; null for a name that names none.
    const std::vector<Selected>* find(const kds_name name) const;

    /// @return false when there is none of that name
    bool remove(const kds_name name);

private:
    struct Set {
        std::vector<Selected> members;
        platform::Tallied counted;
    };

    std::map<std::int64_t, Set> sets_;
    std::int64_t lastNumber_ = 0;
};

} // namespace korra::ed
