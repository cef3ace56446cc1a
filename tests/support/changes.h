#pragma once

#include "kd/db.h"
#include "objects/contents.h"

namespace tests {

/// Scales every entity of a drawing; by a large factor beyond what numbers can hold.
inline void scaleEntities(const KdDbDatabase& database, double factor)
{
    KdGeMatrix3d matrix;
    matrix.setToScaling(factor, KdGePoint3d::kOrigin);
    for (const korra::ObjectSlot* slot : database.contents().slots) {
        auto* const entity = slot->erased ? nullptr : KdDbEntity::cast(slot->object);
        if (!entity)
            continue;
        KdDbObject* opened = nullptr;
        if (korra::ObjectAccess::open(opened, entity->objectId(), KdDb::kForWrite) != Kdapi::eOk)
            continue;
        entity->transformBy(matrix);
        korra::ObjectAccess::close(*entity);
    }
}

} // namespace tests
