#pragma once

#include "kd/db/database.h"
#include "kd/ge.h"

namespace korra {

/// A coordinate system as a drawing carries it.
struct UserSystem {
    KdGePoint3d origin;
    KdGeVector3d xAxis = KdGeVector3d::kXAxis;
    KdGeVector3d yAxis = KdGeVector3d::kYAxis;
    KdDbObjectId named; ///< the saved system that it is; null when it has no name
};

/// The current coordinate system of a drawing: that of the sheet while a sheet is current, else
/// that of model space. A saved system of the header that is not in the table is no name.
UserSystem currentUcs(const KdDbDatabase& database);
void setCurrentUcs(KdDbDatabase& database, const UserSystem& system);

} // namespace korra
