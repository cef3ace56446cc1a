#pragma once

#include "kd/db/ids.h"

#include <cstddef>
#include <vector>

namespace korra {

/// The place behind `place` (or before it) whose object is not erased, or is when erased ones are
/// not skipped; past the end of the list when there is none.
inline std::size_t followingId(const std::vector<KdDbObjectId>& ids, std::size_t place,
                               bool forward, bool skipErased)
{
    do
        place += forward ? std::size_t{1} : ~std::size_t{0}; // below the first wraps past the end
    while (place < ids.size() && skipErased && ids[place].isErased());
    return place;
}

/// The first place of a list (or its last one) under the same rule.
inline std::size_t firstId(const std::vector<KdDbObjectId>& ids, bool atBeginning, bool skipErased)
{
    return followingId(ids, atBeginning ? ~std::size_t{0} : ids.size(), atBeginning, skipErased);
}

} // namespace korra
