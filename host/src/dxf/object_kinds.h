#pragma once

#include "objects/object_access.h"

#include <memory>
#include <optional>
#include <string_view>

namespace korra {

class TagList;

/// Codes of a block's fields in its table record, and in the BLOCK that begins it.
inline constexpr int kBlockRecordCodes[] = {2, 340};
inline constexpr int kBlockCodes[] = {2, 10, 20, 30, 70};

/// A new object for the tags of an entity or of an object in the objects section; of an unknown
/// class where no class stands for the type. Vertices, attributes and table records included.
std::unique_ptr<KdDbObject> newEntity(std::string_view type, const TagList& tags);
std::unique_ptr<KdDbObject> newObject(std::string_view type);

/// Polylines of these flags are meshes: kept as they are, vertices and all.
bool isMesh(const TagList& polyline);

/// The name of an object's type in files.
std::string_view typeName(const KdDbObject& object);

/// A table's name in files, and the type of its records; the two are the same.
std::string_view tableName(TableKind kind);
std::optional<TableKind> tableKind(std::string_view name);

KdDbSymbolTable* newTable(TableKind kind);
KdDbSymbolTableRecord* newRecord(TableKind kind);

} // namespace korra
