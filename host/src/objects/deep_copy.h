#pragma once

#include "kd/db/object.h"

#include <unordered_map>
#include <vector>

namespace korra {

/// What stands in a database for each object that was copied into it, or that it had already.
using IdMap = std::unordered_map<KdDbObjectId, KdDbObjectId>;

/// Copies objects with all that they own and need into a database, which may be their own.
///
/// A record that they need is the one of the same name where the database has one, else it is
/// copied too, a block with its entities; an anonymous block gets a free name. What they refer to
/// without needing it is kept where it is copied as well, or is of the database itself, else it is
/// lost. Objects of kinds that the host does not know are left out.
/// @param owner  of the copies: a block for entities, a table for records, a dictionary for others
/// @param map  takes what became of each object; what it holds already counts as copied
void deepCopy(const std::vector<KdDbObjectId>& ids, KdDbObject& owner, IdMap& map);

} // namespace korra
