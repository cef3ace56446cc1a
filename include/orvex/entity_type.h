#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// What kind of entity an object is, by its class; the numbers are fixed.
enum EntityType : int {
    kOtherType = 0, ///< also for what is no entity
    kLineType = 1,
    kPolylineType = 2,
    kArcType = 3,
    kCircleType = 4,
    kEllipseType = 5,
    kFlatPolylineType = 6,
    kSpatialPolylineType = 7,
    kSplineType = 8,
    kPointType = 9,
    kFaceType = 10,
    kPolygonMeshType = 11,
    kModelSolidType = 12,
    kRegionType = 13,
    kBodyType = 14,
    kBlockReferenceType = 15,
    kTextType = 16,
    kAttributeDefinitionType = 17,
    kAttributeType = 18,
    kPolyFaceMeshType = 19,
    kHatchType = 20,
    kDimensionType = 21,
    kTraceType = 22,
    kSolidType = 23,
    kMTextType = 24,
    kVertexType = 25,
    kSequenceEndType = 26,
    kLeaderType = 28,
    kFcfType = 29,
    kMlineType = 101,
    kXlineType = 102,
    kViewportType = 201,
};

/// The kind of an object, of a class derived from a listed one as well: an attribute is one, though
/// its class derives from that of texts.
/// @param object  not null; it need not be open
ORVEX_API EntityType getEntType(const KdDbObject* object);
