#include "ed/regeneration.h"
#include "kd/db.h"
#include "kd/ed.h"
#include "objects/object_slots.h"
#include "platform/gate.h"

namespace korra::ed {
namespace {

KdDbEntity* namedEntity(const kds_name name)
{
    const ObjectSlot* const slot = name && runningSlots() ? runningSlots()->find(name) : nullptr;
    return slot ? KdDbEntity::cast(slot->object) : nullptr;
}

/// The last of the modes: 1 shows, 2 hides, 3 highlights, 4 takes the highlight off.
constexpr int kLastMode = 4;

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kddbEntUpd(const kds_name entity)
{
    return platform::gate("kddbEntUpd").guard(RTERROR, [&] {
        KdDbEntity* const named = namedEntity(entity);
        if (!named)
            return RTERROR;
        regenerate(named->objectId());
        return RTNORM;
    });
}

int kdedRedraw(const kds_name entity, int mode)
{
    // Nothing is on a screen that would have to change.
    return platform::gate("kdedRedraw", mode).guard(RTERROR, [&] {
        return namedEntity(entity) && mode >= 0 && mode <= kLastMode ? RTNORM : RTERROR;
    });
}
