#include "drawing/user_systems.h"

#include "kd/db.h"
#include "objects/contents.h"
#include "tables/drawing_settings.h"

namespace korra {

UserSystem currentUcs(const KdDbDatabase& database)
{
    const DrawingSettings drawing(database);
    return {drawing.get(settings::kUserOrigin), drawing.get(settings::kUserXAxis).asVector(),
            drawing.get(settings::kUserYAxis).asVector(), drawing.get(settings::kUserSystem)};
}

void setCurrentUcs(KdDbDatabase& database, const UserSystem& system)
{
    DrawingSettings drawing(database);
    const auto* const named = ObjectAccess::live<KdDbUCSTableRecord>(system.named);
    drawing.set(settings::kUserSystem, named ? system.named : KdDbObjectId());
    drawing.set(settings::kUserOrigin, system.origin);
    drawing.set(settings::kUserXAxis, KdGePoint3d::kOrigin + system.xAxis);
    drawing.set(settings::kUserYAxis, KdGePoint3d::kOrigin + system.yAxis);
}

} // namespace korra
