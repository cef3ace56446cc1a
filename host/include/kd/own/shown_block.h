#pragma once

#include "kd/db/ids.h"

namespace korra {

/// A block that an entity shows, and how often it does.
struct ShownBlock {
    KdDbObjectId block; ///< null: the entity shows none
    double times = 1.0;
};

} // namespace korra
