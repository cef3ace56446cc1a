#include "ed/editor.h"
#include "ed/user_system.h"
#include "ed/views.h"
#include "kd/ed.h"
#include "objects/object_slots.h"
#include "platform/gate.h"

#include <cmath>
#include <optional>

namespace korra::ed {
namespace {

enum System : short { kWorld = 0, kUser = 1, kDisplay = 2, kSheetDisplay = 3 };

/// The normal of an entity that lies in a plane; the world's z axis for one that does not.
template <class... Planar>
KdGeVector3d normalOf(const KdDbEntity& entity)
{
    KdGeVector3d normal = KdGeVector3d::kZAxis;
    const auto take = [&](const auto* planar) {
        return planar && (normal = planar->normal(), true);
    };
    static_cast<void>((take(Planar::cast(&entity)) || ...));
    return normal;
}

std::optional<KdGeMatrix3d> entityToWorld(const kds_name name)
{
    const ObjectSlot* const slot = runningSlots()->find(name);
    const auto* const entity = slot ? KdDbEntity::cast(slot->object) : nullptr;
    if (!entity)
        return std::nullopt;
    return KdGeMatrix3d::planeToWorld(
        normalOf<KdDbArc, KdDbCircle, KdDbPolyline, KdDbText, KdDbBlockReference, KdDbDimension>(
            *entity));
}

/// A viewport is seen on its sheet, without regard to perspective; a tile of the model tab is on
/// none.
std::optional<KdGeMatrix3d> sheetDisplayToWorld(const KdDbDatabase& database)
{
    const auto* const viewport = ObjectAccess::live<KdDbViewport>(currentViewport(database));
    if (!viewport)
        return std::nullopt;
    return displayToWorld(viewOf(*viewport)) * displayToSheet(*viewport).inverse();
}

std::optional<KdGeMatrix3d> numberedToWorld(const KdDbDatabase& database, short system)
{
    switch (system) {
    case kWorld:
        return KdGeMatrix3d::kIdentity;
    case kUser:
        return userToWorld(database);
    case kDisplay:
        return displayToWorld(currentView(database));
    case kSheetDisplay:
        return sheetDisplayToWorld(database);
    default:
        return std::nullopt;
    }
}

std::optional<KdGeMatrix3d> toWorld(const KdDbDatabase& database, const resbuf& designator)
{
    switch (designator.restype) {
    case RTSHORT:
        return numberedToWorld(database, designator.resval.rint);
    case RT3DPOINT: {
        const double* const normal = designator.resval.rpoint;
        return KdGeMatrix3d::planeToWorld({normal[0], normal[1], normal[2]});
    }
    case RTENAME:
        return entityToWorld(designator.resval.rlname);
    default:
        return std::nullopt;
    }
}

bool isNumbered(const resbuf& designator, short system)
{
    return designator.restype == RTSHORT && designator.resval.rint == system;
}

/// The display system of the sheet is reached from the display system alone.
bool arePartners(const resbuf& one, const resbuf& other)
{
    return !isNumbered(one, kSheetDisplay) || isNumbered(other, kDisplay) ||
           isNumbered(other, kSheetDisplay);
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedTrans(const kds_point point, const resbuf* from, const resbuf* to, int displacement,
              kds_point result)
{
    return platform::gate("kdedTrans", displacement).guard(RTERROR, [&] {
        const KdDbDatabase* const database = currentDatabase();
        if (!database || !point || !from || !to || !result)
            return RTERROR;
        if (!arePartners(*from, *to) || !arePartners(*to, *from))
            return RTERROR;
        const auto source = toWorld(*database, *from);
        const auto target = toWorld(*database, *to);
        if (!source || !target)
            return RTERROR;

        const KdGeMatrix3d matrix = target->inverse() * *source;
        const KdGePoint3d given(point[0], point[1], point[2]);
        const KdGePoint3d image =
            displacement ? KdGePoint3d::kOrigin + matrix * given.asVector() : matrix * given;
        for (unsigned int axis = 0; axis < 3; ++axis)
            result[axis] = image[axis];
        return RTNORM;
    });
}

double kdutAngle(const kds_point from, const kds_point to)
{
    return platform::gate("kdutAngle").always([&] {
        return KdGe::directionAngle(to[0] - from[0], to[1] - from[1]);
    });
}

void kdutPolar(const kds_point from, double angle, double dist, kds_point result)
{
    platform::gate("kdutPolar", angle, dist).always([&] {
        result[0] = from[0] + dist * std::cos(angle);
        result[1] = from[1] + dist * std::sin(angle);
        result[2] = from[2];
    });
}
