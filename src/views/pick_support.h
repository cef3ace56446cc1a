#pragma once

#include "kd/db.h"

/// What the pick functions share.
namespace pick {

/// The id of an entity name; null when the name names nothing.
KdDbObjectId idOf(const kds_name name);

/// The outermost container of a pick: the last node of the chain; null for an empty chain.
const resbuf* outermost(const resbuf* chain);

/// The outermost container, or the one inside it where that is a viewport that can be read; null
/// when the entity itself is at the top.
const resbuf* topLevel(const resbuf* chain);

/// True for a viewport, also for one that cannot be opened now.
bool isViewport(KdDbObjectId id);

bool isKeyHeld(int key);

/// The left mouse button, or the right one where the user has swapped them.
bool isPrimaryButtonHeld();
bool isSecondaryButtonHeld();

} // namespace pick
