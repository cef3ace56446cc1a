#include "ed/regeneration.h"

#include "ed/object_change.h"
#include "kd/db.h"
#include "objects/object_slots.h"

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
