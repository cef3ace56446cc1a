#pragma once

#include "objects/object_access.h"

#include <string_view>

namespace korra {

/// Codes of extended data that name something: an application, an object by its handle.
inline constexpr short kXDataApplication = 1001;
inline constexpr short kXDataHandle = 1005;

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

/// Gives a drawing the record of an application, without which no object may hold data of it. One
/// that the host made to complete the drawing is from now on a part of it, which is saved.
void registerApplication(KdDbDatabase& database, std::wstring_view application);

/// Registers the applications that have hung data on an object or its parts.
void registerApplications(const KdDbObject& object, KdDbDatabase& database);

/// Has all that names a record in files written anew, for the record gets another name.
void willRename(const KdDbSymbolTableRecord& record);

} // namespace korra
