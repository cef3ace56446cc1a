#include "blocks/draw_block.h"

#include "blocks/block_boxes.h"
#include "ge/box_image.h"
#include "kd/db.h"
#include "objects/contents.h"
#include "platform/text.h"

#include <utility>

namespace korra {
namespace {

/// Deeper nesting is a block that contains itself by way of others.
constexpr std::size_t kDeepest = 100;

constexpr std::uint16_t kForegroundColor = 7;

bool isNamed(KdDbObjectId linetype, std::wstring_view name)
{
    const auto* const record = ObjectAccess::live<KdDbLinetypeTableRecord>(linetype);
    return record && platform::compareNoCase(record->name(), name) == 0;
}

KdDbObjectId effectiveLayer(const KdDbEntity& entity, const DrawSink& sink)
{
    if (!sink.surroundings())
        return entity.layerId();
    const auto* const layer = ObjectAccess::live<KdDbLayerTableRecord>(entity.layerId());
    return layer && layer->name() == L"0" ? sink.surroundings()->layer : entity.layerId();
}

/// What "by block" means outside every block.
Traits ofNoBlock()
{
    Traits traits;
    traits.color.setColorIndex(kForegroundColor);
    return traits;
}

} // namespace

Traits traitsOf(const KdDbEntity& entity, const DrawSink& sink)
{
    Traits traits = ofNoBlock();
    traits.layer = effectiveLayer(entity, sink);
    if (!sink.needs().looks)
        return traits;
    traits.filled = entity.isFilled();
    const Traits byBlock = sink.surroundings() ? *sink.surroundings() : ofNoBlock();
    if (const auto* const layer = ObjectAccess::live<KdDbLayerTableRecord>(traits.layer)) {
        traits.color = layer->color();
        traits.linetype = layer->linetypeObjectId();
        traits.lineWeight = layer->lineWeight();
    }
    if (entity.color().colorMethod() == KdCmColor::kByBlock)
        traits.color = byBlock.color;
    else if (entity.color().colorMethod() != KdCmColor::kByLayer)
        traits.color = entity.color();
    if (isNamed(entity.linetypeId(), L"ByBlock"))
        traits.linetype = byBlock.linetype;
    else if (!entity.linetypeId().isNull() && !isNamed(entity.linetypeId(), L"ByLayer"))
        traits.linetype = entity.linetypeId();
    if (entity.lineWeight() == KdDb::kLnWtByBlock)
        traits.lineWeight = byBlock.lineWeight;
    else if (entity.lineWeight() != KdDb::kLnWtByLayer)
        traits.lineWeight = entity.lineWeight();
    return traits;
}

bool isHidden(const KdDbEntity& entity, const DrawSink& sink)
{
    if (sink.needs().hidden)
        return false;
    if (entity.visibility() == KdDb::kInvisible)
        return true;
    if (sink.surroundings()) {
        const auto* const definition = KdDbAttributeDefinition::cast(&entity);
        if (definition && (!definition->isConstant() || definition->isInvisible()))
            return true;
    }
    const auto* const layer =
        ObjectAccess::live<KdDbLayerTableRecord>(effectiveLayer(entity, sink));
    if (!layer)
        return false;
    return layer->isFrozen() || (layer->isOff() && !KdDbBlockReference::cast(&entity));
}

void drawEntity(const KdDbEntity& entity, DrawSink& sink)
{
    if (isHidden(entity, sink))
        return;
    sink.beginEntity(entity.objectId(), traitsOf(entity, sink));
    entity.draw(sink);
    sink.endEntity();
}

/// What is looked at in any order, as for its extents, is not worth making boxes for.
void drawBlockContents(KdDbObjectId block, DrawSink& sink)
{
    const auto* const record = ObjectAccess::live<KdDbBlockTableRecord>(block);
    if (!record)
        return;
    if (sink.needs().order || BlockBoxes::areMade(*record)) {
        BlockBoxes::of(*record).drawWanted(
            sink, [&](const KdDbEntity& entity) { drawEntity(entity, sink); });
        return;
    }
    for (const KdDbEntity* entity : ObjectAccess::entities(*record).each()) {
        if (!entity->isErased())
            drawEntity(*entity, sink);
    }
}

KdGeExtents3d boxOfShown(KdDbObjectId block, const KdGeMatrix3d& transform)
{
    const auto* const record = ObjectAccess::live<KdDbBlockTableRecord>(block);
    return record ? imageOf(BlockBoxes::of(*record).bounds(), transform) : KdGeExtents3d();
}

void drawShownBlock(const KdDbEntity& owner, BlockRole role, KdDbObjectId block,
                    const KdGeMatrix3d& transform, DrawSink& sink)
{
    const KdGeExtents3d box = boxOfShown(block, transform);
    if (sink.depth() >= kDeepest || box.isEmpty() || !sink.wants(box))
        return;
    sink.beginBlock(owner.objectId(), role, transform, traitsOf(owner, sink));
    drawBlockContents(block, sink);
    sink.endBlock();
}

} // namespace korra
