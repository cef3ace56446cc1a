#include "gi/draw_sink.h"

#include "db/contents.h"

#include <utility>

namespace korra {

namespace {

/// Deeper nesting is a block that contains itself by way of others.
constexpr std::size_t kDeepest = 100;

void drawEntity(KdDbObjectId id, DrawSink& sink)
{
    if (const auto* entity = ObjectAccess::live<KdDbEntity>(id))
        sink.entity(*entity);
}

} // namespace

std::array<KdGePoint3d, 4> TextRun::corners() const
{
    return {frame * KdGePoint3d(0.0, 0.0, 0.0), frame * KdGePoint3d(width, 0.0, 0.0),
            frame * KdGePoint3d(width, height, 0.0), frame * KdGePoint3d(0.0, height, 0.0)};
}

void DrawSink::entity(const KdDbEntity& entity)
{
    if (!isHidden(entity))
        ObjectAccess::draw(entity, *this);
}

void DrawSink::block(const KdDbEntity& owner, KdDbObjectId block, const KdGeMatrix3d& transform)
{
    if (inheritedLayers_.size() >= kDeepest)
        return;
    const KdDbObjectId layer = effectiveLayer(owner);
    inheritedLayers_.push_back(layer);
    transforms_.push_back(transforms_.back() * transform);
    transformChanged();
    drawBlockContents(block, *this);
    transforms_.pop_back();
    inheritedLayers_.pop_back();
    transformChanged();
}

KdDbObjectId DrawSink::effectiveLayer(const KdDbEntity& entity) const
{
    if (inheritedLayers_.empty())
        return entity.layerId();
    const auto* layer = ObjectAccess::live<KdDbLayerTableRecord>(entity.layerId());
    return layer && layer->name() == L"0" ? inheritedLayers_.back() : entity.layerId();
}

bool DrawSink::isHidden(const KdDbEntity& entity) const
{
    if (entity.visibility() == KdDb::kInvisible)
        return true;
    if (!inheritedLayers_.empty()) {
        const auto* definition = KdDbAttributeDefinition::cast(&entity);
        if (definition && (!definition->isConstant() || definition->isInvisible()))
            return true;
    }
    const auto* layer = ObjectAccess::live<KdDbLayerTableRecord>(effectiveLayer(entity));
    if (!layer)
        return false;
    return layer->isFrozen() || (layer->isOff() && !KdDbBlockReference::cast(&entity));
}

void drawBlockContents(KdDbObjectId block, DrawSink& sink)
{
    auto* record = ObjectAccess::live<KdDbBlockTableRecord>(block);
    if (!record)
        return;
    // Only a block with an extension dictionary can have an order other than its own.
    const ObjectExtras* extras = ObjectAccess::extras(std::as_const(*record));
    if (!extras || extras->extensionDictionary.isNull()) {
        for (const KdDbObjectId id : ObjectAccess::entities(*record))
            drawEntity(id, sink);
        return;
    }
    for (const KdDbObjectId id : drawOrder(*record))
        drawEntity(id, sink);
}

} // namespace korra
