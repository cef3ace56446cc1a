#pragma once

#include "kd/db.h"

namespace support {

/// The host's working database at this moment; null when there is none.
inline KdDbDatabase* workingDatabase()
{
    return kddbHostApplicationServices()->workingDatabase();
}

} // namespace support
