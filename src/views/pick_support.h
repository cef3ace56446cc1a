#pragma once

#include "kd/db.h"

/// What the pick functions share.
namespace pick {

/// The id of an entity name; null when the name names nothing.
KdDbObjectId idOf(const kds_name name);

/// The outermost container of a pick: the last node of the chain; null for an empty chain.
const resbuf* outermost(const resbuf* chain);

/// The outermost container that is no viewport, in which the picked space ends; null when the
/// entity itself is at the top.
const resbuf* topLevel(const resbuf* chain);

bool isKeyHeld(int key);

/// The left mouse button, or the right one where the user has swapped them.
bool isPrimaryButtonHeld();
bool isSecondaryButtonHeld();

} // namespace pick
