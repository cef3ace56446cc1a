#pragma once

#include "kd/db.h"

#include <memory>
#include <optional>
#include <vector>

namespace support {

/// The entities of a block in their order, without erased ones and those that cannot be told;
/// nullopt when the host has no iterator to give.
inline std::optional<std::vector<KdDbObjectId>> entitiesOf(const KdDbBlockTableRecord& block)
{
    KdDbBlockTableRecordIterator* made = nullptr;
    block.newIterator(made, true, true);
    const std::unique_ptr<KdDbBlockTableRecordIterator> walk(made);
    if (!walk)
        return std::nullopt;
    std::vector<KdDbObjectId> ids;
    for (walk->start(); !walk->done(); walk->step()) {
        KdDbObjectId id;
        if (walk->getEntityId(id) == Kdapi::eOk)
            ids.push_back(id);
    }
    return ids;
}

/// The attributes of a block reference in their order.
inline std::vector<KdDbObjectId> attributesOf(const KdDbBlockReference& reference)
{
    const std::unique_ptr<KdDbObjectIterator> walk(reference.attributeIterator());
    std::vector<KdDbObjectId> ids;
    if (!walk)
        return ids;
    for (walk->start(); !walk->done(); walk->step())
        ids.push_back(walk->objectId());
    return ids;
}

} // namespace support
