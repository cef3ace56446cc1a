#pragma once

#include "gi/draw_sink.h"
#include "kd/db/entity.h"

namespace korra {

/// Draws one entity into a sink unless it is hidden where it would be drawn now.
void drawEntity(const KdDbEntity& entity, DrawSink& sink);

/// Draws the entities of a block (model space, a sheet) that the sink wants, in drawing order where
/// it needs that; nothing for an id that is no block.
void drawBlockContents(KdDbObjectId block, DrawSink& sink);

/// Around all that a block shows, hidden or not, where a transform puts it; empty for an id that is
/// no block.
KdGeExtents3d boxOfShown(KdDbObjectId block, const KdGeMatrix3d& transform);

/// Draws the entities of a block as part of an entity, where the sink wants them; nothing below a
/// hundred nested blocks.
/// @param transform  from the block's coordinates to those the owner draws in
void drawShownBlock(const KdDbEntity& owner, BlockRole role, KdDbObjectId block,
                    const KdGeMatrix3d& transform, DrawSink& sink);

/// How an entity looks where it would be drawn now.
///
/// By layer is the look of the entity's layer, by block that of the reference around; outside every
/// block the foreground colour, a continuous line and the default weight. Layer "0" inside a block
/// is the layer of the reference. A sink that shows no looks is told the layer alone.
Traits traitsOf(const KdDbEntity& entity, const DrawSink& sink);

/// True when the sink does not show what is hidden, and its layer or the entity itself keeps it
/// from being seen where it would be drawn now.
///
/// A frozen layer hides everything on it, a layer that is off the entities on it but not what a
/// block reference on it shows from other layers. A template of an attribute is seen only outside
/// references, unless constant.
bool isHidden(const KdDbEntity& entity, const DrawSink& sink);

} // namespace korra
