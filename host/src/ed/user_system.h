#pragma once

#include "kd/db.h"

#include <optional>
#include <string>
#include <string_view>

/// The current user coordinate system: model space and the sheets have one each, kept in the
/// drawing's header.
namespace korra::ed {

/// From the current user system to the world; the identity where the drawing holds a system whose
/// axes are of no use.
KdGeMatrix3d userToWorld(const KdDbDatabase& database);

/// The matrix of an origin and two axes; nullopt unless the axes are at right angles.
std::optional<KdGeMatrix3d> systemOf(const KdGePoint3d& origin, const KdGeVector3d& xAxis,
                                     const KdGeVector3d& yAxis);

/// Makes a system current. @param named  the saved system that it is; null: it has no name
void setUserSystem(KdDbDatabase& database, const KdGeMatrix3d& toWorld, KdDbObjectId named = {});

/// Makes a named system current. @return false, nothing changed, when there is none of that name
bool restoreUserSystem(KdDbDatabase& database, std::wstring_view name);

/// Saves the current system under a name that is not taken. @return false when it cannot be a name
bool saveUserSystem(KdDbDatabase& database, const std::wstring& name);

} // namespace korra::ed
