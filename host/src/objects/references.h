#pragma once

#include "kd/db/object.h"

class KdDbSymbolTableRecord;

namespace korra {

/// Whether one reference can be: null, or of the database and of the class.
/// @param kind  null: any class
/// @return eOk; eWrongDatabase; eNotThatKindOfClass
Kdapi::ErrorStatus checkReference(KdDbObjectId id, const KdDbDatabase& database,
                                  const KdRxClass* kind);

/// What becomes of the layers, linetypes and styles of another database that an object names.
enum class ForeignNames {
    refused,
    translated ///< see translateNames()
};

/// Whether an object can be part of a database: all that it and its parts refer to is of that
/// database and of the right kind.
/// @return as checkReference()
Kdapi::ErrorStatus checkReferences(const KdDbObject& object, const KdDbDatabase& database,
                                   ForeignNames names);

/// Gives an object and its parts a database's own layers, linetypes and styles for those of another
/// one: the records of the same names, else the standard ones. What they refer to without needing
/// it is lost.
void translateNames(KdDbObject& object, const KdDbDatabase& database);

/// Has all that names a record in files written anew, for the record gets another name.
void willRename(const KdDbSymbolTableRecord& record);

} // namespace korra
