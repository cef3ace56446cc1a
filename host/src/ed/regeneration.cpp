#include "ed/regeneration.h"

#include "kd/db.h"
#include "objects/host_opened.h"
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
    const HostOpened<KdDbDimension> opened(id, KdDb::kForWrite);
    dimension->recomputeDimBlock(false);
}

} // namespace korra::ed
