#pragma once

#include "kd/db/block_record.h"

namespace korra {

/// The draw order table in the extension dictionary of a block; null when there is none.
KdDbObjectId sortentsTableOf(const KdDbBlockTableRecord& block);

/// Makes an empty draw order table for a block of a database that has none, and leaves it closed.
KdDbObjectId makeSortentsTable(KdDbBlockTableRecord& block);

} // namespace korra
