#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// What kind of entity an object is, by its class; the numbers are fixed.
enum EntityType : int {
    kOtherType = 0,
    kLineType = 1,
    kPolylineType = 2,
    kArcType = 3,
    kCircleType = 4
};

ORVEX_API EntityType getEntType(const KdDbObject* object);
