#include "orvex/entity_type.h"

namespace {

struct Row {
    KdRxClass* (*description)();
    EntityType type;
};

/// In the order of the tests: of classes that derive from each other the derived ones come first.
constexpr Row kRows[] = {
    {&KdDbLine::desc, kLineType},
    {&KdDbPolyline::desc, kPolylineType},
    {&KdDbArc::desc, kArcType},
    {&KdDbCircle::desc, kCircleType},
    {&KdDbEllipse::desc, kEllipseType},
    {&KdDb2dPolyline::desc, kFlatPolylineType},
    {&KdDb3dPolyline::desc, kSpatialPolylineType},
    {&KdDbPolygonMesh::desc, kPolygonMeshType},
    {&KdDbPolyFaceMesh::desc, kPolyFaceMeshType},
    {&KdDbSpline::desc, kSplineType},
    {&KdDbPoint::desc, kPointType},
    {&KdDbFace::desc, kFaceType},
    {&KdDb3dSolid::desc, kModelSolidType},
    {&KdDbRegion::desc, kRegionType},
    {&KdDbBody::desc, kBodyType},
    {&KdDbBlockReference::desc, kBlockReferenceType},
    {&KdDbAttributeDefinition::desc, kAttributeDefinitionType},
    {&KdDbAttribute::desc, kAttributeType},
    {&KdDbText::desc, kTextType},
    {&KdDbHatch::desc, kHatchType},
    {&KdDbDimension::desc, kDimensionType},
    {&KdDbTrace::desc, kTraceType},
    {&KdDbSolid::desc, kSolidType},
    {&KdDbMText::desc, kMTextType},
    {&KdDbVertex::desc, kVertexType},
    {&KdDbSequenceEnd::desc, kSequenceEndType},
    {&KdDbMline::desc, kMlineType},
    {&KdDbXline::desc, kXlineType},
    {&KdDbViewport::desc, kViewportType},
    {&KdDbLeader::desc, kLeaderType},
    {&KdDbFcf::desc, kFcfType},
};

} // namespace

EntityType getEntType(const KdDbObject* object)
{
    for (const Row& row : kRows) {
        const KdRxClass* const description = object->isA();
        if (description && description->isDerivedFrom(row.description()))
            return row.type;
    }
    return kOtherType;
}
