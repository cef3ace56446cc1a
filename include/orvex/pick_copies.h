#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Picking a copy of an entity.
///
/// The copy is in no database, lies in the world of the current space, and belongs to the caller,
/// who deletes it. Of a light polyline it is the picked segment alone, a line or an arc: the first
/// one that the pick point is nearest to.
///
/// A copy that the host refuses to transform lies where the picked entity lies in its own block.
/// That is everything that is seen through a viewport in perspective and, in a reference that
/// scales unevenly, all but points, lines and polylines without arcs. `xform` tells the way that
/// it could not go.
///
/// The results of a pick are those of picking.h, but every end without a pick is RTNONE unless the
/// primary button is held: then nothing was there, RTERROR. On any status other than RTNORM the
/// outputs are untouched. RTNORM without a copy means that the picked entity could not be opened or
/// copied; preset `ent` with null to tell.

/// Picks the innermost entity; Ctrl does not snap.
/// @param prompt  null: the host's own
/// @param ent  the copy
/// @param pt  the picked point, world
/// @param id  the picked entity itself
/// @param outerId  the top-level entity that contains it, a viewport only while that cannot be
///                 opened; `id` when it is contained in none
/// @param xform  from the picked entity's coordinates to the copy's; may be null
ORVEX_API int rx_entsel(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt, KdDbObjectId& id,
                        KdDbObjectId& outerId, KdGeMatrix3d* xform);

/// Picks the innermost entity without telling the top-level one.
ORVEX_API int rx_entsel(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt, KdDbObjectId& id,
                        KdGeMatrix3d* xform);

/// Picks the innermost entity without telling ids.
ORVEX_API int rx_entsel(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt,
                        KdGeMatrix3d* xform);

/// Picks the innermost entity without giving a copy.
ORVEX_API int rx_entsel(const wchar_t* prompt, KdDbObjectId& id, KdGePoint3d& pt,
                        KdGeMatrix3d* xform);

/// A pick, or a keyword and then a number.
/// @param valuePrompt  asks for the number
/// @param keywords  as the host takes them, "First Second"; null or empty: none
/// @param value  the number; untouched unless one was given
/// @return as a pick; RTKWORD for a keyword with a number, else what ended the number prompt
ORVEX_API int rx_entsel(const wchar_t* prompt, const wchar_t* valuePrompt, const wchar_t* keywords,
                        KdDbEntity*& ent, KdGePoint3d& pt, double& value, KdGeMatrix3d* xform);

/// As rx_entsel(), but `pt` is the cursor's point on every status other than RTNORM and RTCAN.
ORVEX_API int rx_entsel_ext(const wchar_t* prompt, KdDbEntity*& ent, KdGePoint3d& pt,
                            KdDbObjectId& id, KdGeMatrix3d* xform);
