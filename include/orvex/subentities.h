#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// What a pick hit exactly: reading the host's description of a selection, and the edge under a
/// point.

/// Reads the description list of one member of a selection set.
/// @param list  as the host's selection-set naming gives it; stays the caller's
/// @param method  how it was selected: 1 by a pick, 4 at a point, else another way
/// @param name1, name2  both: the selected entity
/// @param marker  graphics marker of the picked part
/// @param pickPt  the pick point, for methods 1 and 4 only; else untouched
/// @param direction  the direction vector that methods 1 and 4 may carry; else untouched
/// @return 1; 0, nothing written, for null and for a list that does not begin with a list start or
///         ends before the marker
ORVEX_API int extractEntityInfo(resbuf* list, int& method, kds_name name1, kds_name name2,
                                short& marker, KdGePoint3d& pickPt, KdGeVector3d& direction);

/// A copy of the edge at a point, or of the whole entity when it has no edge there.
/// @param id  only has to be valid: what is examined is the entity found at `pt`
/// @param pt  user coordinates
/// @param subEnt  the copy, in world coordinates and in no database; the caller deletes it.
///                Untouched where several edges meet at the marker
/// @param xform  from the picked entity's coordinates to the world; may be null; written together
///               with `subEnt`
/// @return RTNORM; RTNONE for an id that is null or not valid and where nothing can be selected;
///         RTCAN when the selection is cancelled or the nested entity cannot be reached
ORVEX_API int GetSubEntByPt(KdDbObjectId id, KdGePoint3d pt, KdDbEntity*& subEnt,
                            KdGeMatrix3d* xform);
