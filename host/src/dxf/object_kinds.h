#pragma once

#include "objects/kinds.h"
#include "objects/object_access.h"

#include <memory>
#include <string>
#include <string_view>

namespace korra {

class TagList;

/// Codes of a block's fields in its table record, and in the BLOCK that begins it.
inline constexpr int kBlockRecordCodes[] = {2, 340};
inline constexpr int kBlockCodes[] = {2, 10, 20, 30, 70};

/// A new object for the tags of an entity, or of an object in the objects section; of an unknown
/// class where no class stands for the type. Vertices and attributes included.
/// @param type  lies in the text of the drawing's file
std::unique_ptr<KdDbObject> newObject(Kind::Place place, std::string_view type,
                                      const TagList& tags);

/// A new table or record.
std::unique_ptr<KdDbObject> newOfKind(const Kind& kind);

/// True for an object that is kept as its file has it, vertices of a mesh and all.
bool isUnknown(const KdDbObject& object);

/// The name of an object's type in files.
std::string_view typeName(const KdDbObject& object);

/// An object in messages.
std::string nameOf(const KdDbObject& object);

} // namespace korra
