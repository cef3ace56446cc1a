#include "kd/db/kept_entities.h"

KDRX_DEFINE_MEMBERS(KdDbPolygonMesh, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbPolyFaceMesh, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDb3dSolid, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbBody, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbHatch, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbSequenceEnd, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbMline, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbFcf, KdDbEntity)
