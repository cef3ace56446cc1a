#include "orvex/entity_type.h"

EntityType getEntType(const KdDbObject* object)
{
    if (KdDbLine::cast(object))
        return kLineType;
    if (KdDbPolyline::cast(object))
        return kPolylineType;
    if (KdDbArc::cast(object))
        return kArcType;
    if (KdDbCircle::cast(object))
        return kCircleType;
    return kOtherType;
}
