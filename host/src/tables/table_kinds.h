#pragma once

#include "kd/db/tables.h"
#include "objects/object_visitor.h"

#include <optional>

namespace korra {

/// A table's kind; nullopt for an object that is no table.
std::optional<TableKind> tableKindOf(const KdDbObject& table);

/// True for a record that a table can take.
bool holdsRecordsLike(const KdDbSymbolTable& table, const KdDbSymbolTableRecord& record);

} // namespace korra
