#include "ed/editor.h"
#include "ed/object_change.h"
#include "ed/regeneration.h"
#include "kd/ed.h"
#include "objects/object_slots.h"
#include "platform/gate.h"

namespace korra::ed {
namespace {

bool differsFromFile(KdDbObjectId id)
{
    return !id.isNull() && id.slot()->changed;
}

} // namespace

void regenerate(KdDbObjectId id)
{
    auto* const dimension = ObjectAccess::live<KdDbDimension>(id);
    if (!dimension || (!differsFromFile(id) && !differsFromFile(dimension->dimensionStyle())))
        return;
    // Whoever has it open for writing may go on; for anybody else it is opened here.
    const ObjectChange<KdDbDimension> opened(id);
    dimension->recomputeDimBlock(false);
}

} // namespace korra::ed

namespace {

using namespace korra;

KdDbEntity* namedEntity(const kds_name name)
{
    const ObjectSlot* const slot = name && runningSlots() ? runningSlots()->find(name) : nullptr;
    return slot ? KdDbEntity::cast(slot->object) : nullptr;
}

/// The last of the modes: 1 shows, 2 hides, 3 highlights, 4 takes the highlight off.
constexpr int kLastMode = 4;

} // namespace

int kddbEntUpd(const kds_name entity)
{
    const bool failing = platform::gate("kddbEntUpd");
    KdDbEntity* const named = namedEntity(entity);
    if (failing || !named)
        return RTERROR;
    ed::regenerate(named->objectId());
    return RTNORM;
}

int kdedRedraw(const kds_name entity, int mode)
{
    const bool failing = platform::gate("kdedRedraw", mode);
    // Nothing is on a screen that would have to change.
    return !failing && namedEntity(entity) && mode >= 0 && mode <= kLastMode ? RTNORM : RTERROR;
}
