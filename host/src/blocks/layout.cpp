#include "kd/db/layout.h"
#include "kd/db.h"

#include "blocks/spaces.h"
#include "objects/object_access.h"
#include "objects/setters.h"

#include "platform/gate.h"

#include <algorithm>

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbLayout, KdDbObject)

namespace korra {

std::vector<KdDbObjectId> viewportsOf(const KdDbBlockTableRecord& sheet)
{
    std::vector<KdDbObjectId> viewports;
    for (const KdDbEntity* entity : ObjectAccess::entities(sheet).each()) {
        if (!entity->isErased() && KdDbViewport::cast(entity))
            viewports.push_back(entity->objectId());
    }
    const auto isOwn = [](KdDbObjectId id) {
        return ObjectAccess::live<KdDbViewport>(id)->number() == 1;
    };
    std::stable_partition(viewports.begin(), viewports.end(), isOwn);
    return viewports;
}

} // namespace korra

void KdDbLayout::describe(korra::ObjectVisitor& visitor)
{
    KdDbObject::describe(visitor);
    visitor.behindMarker(1, "PlotSettings"); // which use the same codes
    visitor.behindMarker(2, "Layout");
    visitor.text(1, name_);
    visitor.integer(70, flags_);
    visitor.integer(71, tabOrder_);
    visitor.reference(330, block_, korra::Reference::soft, KdDbBlockTableRecord::desc());
}

Kdapi::ErrorStatus KdDbLayout::setLayoutName(const wchar_t* name)
{
    return setIf("KdDbLayout::setLayoutName", name && *name, name_, name);
}

KdArray<KdDbObjectId> KdDbLayout::getViewportArray() const
{
    KdArray<KdDbObjectId> viewports;
    const auto* const sheet = ObjectAccess::live<KdDbBlockTableRecord>(block_);
    return platform::gate("KdDbLayout::getViewportArray", objectId())
        .guard(KdArray<KdDbObjectId>(), [&] {
            if (!sheet || tabOrder_ == 0)
                return viewports;
            for (const KdDbObjectId id : korra::viewportsOf(*sheet))
                viewports.append(id);
            return viewports;
        });
}
