#pragma once

#include "orvex/api.h"

#include "kd/db.h"
#include "kd/resbuf.h"

/// The points that two entities have in common, as they are, seen along the normal of the first
/// one's plane: a list of RT3DPOINT records in world coordinates, in the order of the first entity
/// and on it. Nothing is printed.
/// @param points  the address of a null list head; the caller frees the list with kdutRelRb(). It
///                stays null where there is no point; a head that is not null is left as it is, and
///                a point for which memory is short is left out
/// @return how many points there are; 0 where an entity cannot be opened
ORVEX_API int kds_intersect(const kds_name first, const kds_name second, resbuf** points);
