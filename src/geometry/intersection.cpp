#include "orvex/intersection.h"

#include "support/opened.h"

#include <algorithm>

using support::Opened;

namespace {

/// Both entities are closed again before a list is made.
KdArray<KdGePoint3d> commonPoints(KdDbObjectId firstId, KdDbObjectId secondId)
{
    KdArray<KdGePoint3d> found;
    const Opened<KdDbEntity> first(firstId, KdDb::kForRead);
    if (!first)
        return found;
    const Opened<KdDbEntity> second(secondId, KdDb::kForRead);
    if (!second)
        return found;
    KdGePlane plane;
    KdDb::Planarity planarity = KdDb::kNonPlanar;
    first->getPlane(plane, planarity);
    first->intersectWith(second.get(), KdDb::kOnBothOperands, plane, found, 0, 0);
    return found;
}

} // namespace

int kds_intersect(const kds_name first, const kds_name second, resbuf** points)
{
    if (!points || *points)
        return 0;
    KdDbObjectId firstId;
    KdDbObjectId secondId;
    kddbGetObjectId(firstId, first);
    kddbGetObjectId(secondId, second);
    const KdArray<KdGePoint3d> found = commonPoints(firstId, secondId);

    resbuf** end = points;
    for (const KdGePoint3d& point : found) {
        resbuf* const record = kdutNewRb(RT3DPOINT);
        if (!record)
            continue;
        const double coordinates[] = {point.x, point.y, point.z};
        std::ranges::copy(coordinates, record->resval.rpoint);
        *end = record;
        end = &record->rbnext;
    }
    return found.length();
}
