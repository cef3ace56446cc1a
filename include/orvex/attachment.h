#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Entities inside block references, and where annotations attach to them.
///
/// A product of transforms has the outermost reference on its left: it maps what is inside to where
/// it shows.

/// Looks for an entity inside a block reference, also in nested ones: attributes of a reference
/// first, then its block's entities in order, each nested reference followed down at once.
/// @param container  open for reading; what is no block reference contains nothing
/// @param xform  a transform to begin with; multiplied by the block transforms of the references on
///               the way to the target. Untouched when the target is not found
ORVEX_API bool GetComplexEntTransform(const KdDbEntity* container, KdDbObjectId target,
                                      KdGeMatrix3d& xform);

/// As GetComplexEntTransform() above, for the id of the container.
/// @return also true, with the identity, where the target is null or the container itself
ORVEX_API bool GetComplexEntTransform(KdDbObjectId containerId, KdDbObjectId target,
                                      KdGeMatrix3d& xform);

/// Lists what a block reference is made of: its attributes, then the entities of its block, in the
/// place of a nested reference what that one is made of.
/// @param reference  open for reading; anything else has nothing inside
/// @param ids  appended to; the ids of a block's entities come once for each insertion
/// @return true
ORVEX_API bool GetSubIdsFromBlockRef(KdDbBlockReference* reference, KdArray<KdDbObjectId>& ids);

/// The point of a line, a circle, an arc or a light polyline that is nearest to a point, and the
/// direction along the curve there that has the given point on its left.
///
/// Circles and arcs are measured in the plane of the drawing; beyond its ends an arc gives the
/// nearer end. A line is unbounded; one of no length gives its end. Of a polyline the nearest
/// segment counts.
/// @param point  of a polyline without segments the origin
/// @param angle  radians; of a polyline without segments untouched
/// @param xform  from the entity's coordinates to those of the pick point
/// @return false, nothing written, for an id that cannot be opened and for other kinds
ORVEX_API bool GetAttachedParam(KdGePoint3d& point, double& angle, const KdDbObjectId& entityId,
                                const KdGeMatrix3d& xform, const KdGePoint3d& pickPoint);
