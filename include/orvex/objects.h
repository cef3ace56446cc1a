#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// The smallest operations on database objects: add, erase, copy, redraw, reorder, ask.
///
/// What an operation opens it closes again on every path; nothing is printed.

/// Adds a new entity to the current space of a database and leaves it open.
/// @param entity  in no database yet; stays the caller's to close, and on failure to delete
/// @param id  the entity's new id
/// @param database  must not be null
/// @return eOk; the status of opening the space, of appending, or of closing the space
ORVEX_API Kdapi::ErrorStatus addToDb(KdDbEntity* entity, KdDbObjectId& id, KdDbDatabase* database);

/// As addToDb() above, without the new id.
ORVEX_API Kdapi::ErrorStatus addToDb(KdDbEntity* entity, KdDbDatabase* database);

/// Adds a new entity to the current space of a database and closes it, unlike addToDb().
/// @param entity  in no database yet; not to be used after success. On failure it stays the
///                caller's: to delete, or to close when it is in the database already
/// @param id  the entity's new id
/// @param database  must not be null
/// @return eOk; the status of the first step that failed
ORVEX_API Kdapi::ErrorStatus postToDb(KdDbEntity* entity, KdDbObjectId& id, KdDbDatabase* database);

/// As postToDb() above, without the new id.
ORVEX_API Kdapi::ErrorStatus postToDb(KdDbEntity* entity, KdDbDatabase* database);

/// Erases objects of any kind, in array order.
///
/// Stops at the first object that cannot be opened for writing or that refuses to be erased; the
/// objects before it stay erased.
/// @param ids  objects of any open database; may be empty
/// @return 1 when every object was erased (an empty array included), else 0
ORVEX_API int EraseObject(KdArray<KdDbObjectId> ids);

/// Erases one object of any kind.
/// @return 1; 0 when it cannot be opened for writing or refuses to be erased
ORVEX_API int EraseObject(KdDbObjectId id);

/// Gives an entity the contents of another one of its class.
/// @param source  open for reading
/// @param destination  open for writing, or in no database
/// @return the host's status; eNullObjectPointer (15), nothing done, when either is null
ORVEX_API Kdapi::ErrorStatus CopyEntity(KdDbEntity* source, KdDbEntity* destination);

/// Gives an object of any kind the contents of another one, as CopyEntity() does.
ORVEX_API Kdapi::ErrorStatus CopyObject(KdDbObject* source, KdDbObject* destination);

/// Has the host make the graphics of an object anew and draw it; nothing for null, for an erased
/// object and for one that is in no database.
ORVEX_API void EntUpdate(KdDbObject* object);

/// Updates an object by its id, also an erased one; nothing for null.
ORVEX_API void EntUpdate(KdDbObjectId id);

/// Puts an entity first in model space's drawing order: it is drawn before all others, beneath
/// them.
///
/// The model space is always that of the working database, wherever the entity is; the host may
/// refuse an entity of another space, which makes no difference to the result.
/// @return 1; 0 when the id is not valid (IsValidId) or the order cannot be read
ORVEX_API int DrawOrderMoveToLast(const KdDbObjectId& id);

/// True for an entity that is not erased and can be opened for reading now.
ORVEX_API bool IsValidId(const KdDbObjectId& id);

/// Whether an entity is part of the current space of its own database.
/// @return 1 or 0; 0 also when the id is no entity that can be opened for reading
ORVEX_API int isEntityInCurrentSpaceId(KdDbObjectId& id);

/// Whether an open entity is; it must not be null and must be in a database.
ORVEX_API int isEntityInCurrentSpaceId(KdDbEntity* entity);
