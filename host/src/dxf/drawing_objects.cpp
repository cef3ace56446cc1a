#include "dxf/drawing_writer.h"

#include "blocks/spaces.h"
#include "dxf/drawing_error.h"
#include "dxf/object_kinds.h"
#include "dxf/oldest_version.h"
#include "dxf/tag_text.h"
#include "form/numbers.h"

#include "platform/text.h"

#include <algorithm>
#include <limits>

namespace korra {
namespace {

bool isNamed(const KdDbBlockTableRecord& block, std::wstring_view name)
{
    return platform::compareNoCase(block.name(), name) == 0;
}

/// The spaces whose entities stand in the entities section.
bool isCurrentSpace(const KdDbBlockTableRecord& block)
{
    return isNamed(block, kModelSpace) || isNamed(block, kPaperSpace);
}

/// The BLOCK has the name a second time; it follows the first.
std::string withSecondName(std::string begin, std::string_view lineEnd)
{
    const TagList tags(begin);
    const std::size_t second = tags.find(3);
    if (second == TagList::kNone || tags[second].value == tags.valueOf(2))
        return begin;
    return withValue(tags, second, std::string(tags.valueOf(2)), lineEnd);
}

/// Behind the marker of entities, or behind the type.
std::size_t placeOfSpaceFlag(const TagList& tags)
{
    std::size_t place = 0;
    while (place < tags.size() && tags[place].part != TagPart::marker)
        ++place;
    return place < tags.size() ? place : 0;
}

bool needsSequenceEnd(KdDbObject& entity)
{
    const OwnedObjects* const parts = ObjectAccess::owned(entity);
    return parts && (KdDbVertexCurve::cast(&entity) || !parts->isEmpty());
}

} // namespace

/// The tags that a new object begins with.
std::string DrawingWriter::newObjectHead(const KdDbObject& object)
{
    return given(object.objectId(), tag(0, typeName(object))) + ownerTag(object);
}

/// Whose a new object is; nothing where the drawing does not say so.
std::string DrawingWriter::ownerTag(const KdDbObject& object) const
{
    if (!markerPrefix_ && !belongsToObjectsSection(object))
        return {};
    return tag(330, formatHandle(object.ownerId().handle().value()));
}

/// An object's tags as the file has them, with its handle.
std::string DrawingWriter::sourceText(const KdDbObject& object)
{
    const std::string_view tags = ObjectAccess::source(object);
    return ObjectAccess::slot(object)->numbered ? std::string(tags)
                                                : given(object.objectId(), tags);
}

std::string DrawingWriter::objectText(KdDbObject& object)
{
    const bool isFromFile = !ObjectAccess::source(object).empty();
    std::string text = isFromFile ? sourceText(object) : newObjectHead(object);
    if (isFromFile && !isChanged(*ObjectAccess::slot(object)))
        return text;
    return writtenAs([&] { return nameOf(object); }, [&] { return fieldsText(object, text); });
}

/// An object's tags, as they are or as a new one begins, with its fields.
std::string DrawingWriter::fieldsText(KdDbObject& object, std::string_view tags)
{
    if (auto* const viewport = isOldest_ ? KdDbViewport::cast(&object) : nullptr)
        return viewportWritten(*viewport, tags, writer_, lineEnd_);
    const bool isBlock = KdDbBlockTableRecord::cast(&object) != nullptr;
    const auto codes = isBlock ? std::span<const int>(kBlockRecordCodes) : std::span<const int>();
    return writer_.objectWritten(object, tags, codes);
}

std::string DrawingWriter::objects()
{
    std::string text;
    for (const ObjectSlot* slot : contents_.slots) {
        if (isWritten(*slot) && belongsToObjectsSection(*slot->object))
            text += objectText(*slot->object);
    }
    return text;
}

std::vector<KdDbBlockTableRecord*> DrawingWriter::liveBlocks() const
{
    std::vector<KdDbBlockTableRecord*> blocks;
    auto* const table = ObjectAccess::live<KdDbSymbolTable>(contents_.table(TableKind::block));
    if (!table)
        return blocks;
    for (KdDbSymbolTableRecord* record : ObjectAccess::records(*table).each()) {
        if (!record->isErased())
            blocks.push_back(static_cast<KdDbBlockTableRecord*>(record));
    }
    return blocks;
}

std::vector<const ObjectSlot*> DrawingWriter::entitiesToWrite(KdDbBlockTableRecord& block) const
{
    std::vector<const ObjectSlot*> slots;
    for (const KdDbEntity* entity : ObjectAccess::entities(block).each()) {
        if (isWritten(*ObjectAccess::slot(*entity)))
            slots.push_back(ObjectAccess::slot(*entity));
    }
    return slots;
}

/// Model space and the current sheet together, in the order in which their entities came.
std::string DrawingWriter::entities()
{
    std::vector<const ObjectSlot*> slots;
    for (KdDbBlockTableRecord* block : liveBlocks()) {
        if (!isCurrentSpace(*block))
            continue;
        const auto ofBlock = entitiesToWrite(*block);
        slots.insert(slots.end(), ofBlock.begin(), ofBlock.end());
    }
    std::ranges::stable_sort(slots, {}, &ObjectSlot::index);
    std::string text;
    for (const ObjectSlot* slot : slots)
        text += spaceEntityText(static_cast<KdDbEntity&>(*slot->object));
    return text;
}

/// In the entities section an entity of the sheet says so.
std::string DrawingWriter::spaceEntityText(KdDbEntity& entity)
{
    const auto* const space = KdDbBlockTableRecord::cast(ObjectAccess::object(entity.ownerId()));
    if (!space || !isNamed(*space, kPaperSpace))
        return entityText(entity);
    std::string text;
    for (const std::string& each : entityTexts(entity)) {
        const TagList tags(each);
        const std::size_t owner = tags.ownerTag();
        const bool namesSpace = owner != TagList::kNone && parseHandle(tags[owner].value) ==
                                                               space->objectId().handle().value();
        const bool isKept = namesSpace && !ObjectAccess::source(entity).empty();
        const bool isFlagged = isKept || parseWhole(tags.valueOf(67)) == 1;
        text += isFlagged ? each : withTag(tags, placeOfSpaceFlag(tags), 67, "1", lineEnd_);
    }
    return text;
}

std::string DrawingWriter::entityText(KdDbEntity& entity)
{
    const auto standIns = standInTexts(entity);
    if (!standIns)
        return objectText(entity) + partsText(entity);
    std::string text;
    for (const std::string& each : *standIns)
        text += each;
    return text;
}

/// What is written for an entity: itself with its parts, or what stands for it.
std::vector<std::string> DrawingWriter::entityTexts(KdDbEntity& entity)
{
    if (auto standIns = standInTexts(entity))
        return *std::move(standIns);
    return {objectText(entity) + partsText(entity)};
}

/// What stands for an entity: the first one has its own handle; nullopt for an entity that is
/// written itself.
std::optional<std::vector<std::string>> DrawingWriter::standInTexts(const KdDbEntity& entity)
{
    const bool mayHaveStandIns = isOldest_ || KdDbRegion::cast(&entity);
    if (!mayHaveStandIns || !isNew(*ObjectAccess::slot(entity)))
        return std::nullopt;
    return writtenAs([&] { return nameOf(entity); }, [&] { return newStandInTexts(entity); });
}

std::optional<std::vector<std::string>> DrawingWriter::newStandInTexts(const KdDbEntity& entity)
{
    const auto* const region = KdDbRegion::cast(&entity);
    const std::optional<Pieces> standIns = region ? region->newPieces() : newStandIns(entity);
    if (!standIns)
        return std::nullopt;
    const ObjectExtras* const extras = ObjectAccess::extras(entity);
    if (extras && !standIns->empty()) {
        ObjectExtras& taken = ObjectAccess::extras(*standIns->front());
        taken.xData = extras->xData;
        taken.extensionDictionary = extras->extensionDictionary;
    }
    std::vector<std::string> texts;
    for (const std::unique_ptr<KdDbEntity>& standIn : *standIns) {
        if (isOldest_)
            refuseWhatItLacks(*standIn);
        const std::string begin = tag(0, typeName(*standIn));
        const std::string head =
            texts.empty() ? given(entity.objectId(), begin) : withOwnHandle(begin);
        std::string text = writer_.objectWritten(*standIn, head + ownerTag(entity));
        if (const OwnedObjects* const parts = ObjectAccess::owned(*standIn)) {
            for (KdDbObject* part : parts->objects())
                text += writer_.objectWritten(*part, withOwnHandle(tag(0, typeName(*part))));
            text += withOwnHandle(newFrame("SEQEND", entity.objectId()));
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

/// The parts of an entity, and what ends them.
std::string DrawingWriter::partsText(KdDbEntity& entity)
{
    std::string text;
    if (const OwnedObjects* const parts = ObjectAccess::owned(entity)) {
        for (KdDbObject* part : parts->objects()) {
            if (isWritten(*ObjectAccess::slot(*part)))
                text += objectText(*part);
        }
    }
    const auto end = form_.sequenceEnds.find(entity.objectId());
    if (end != form_.sequenceEnds.end())
        text += withOwnHandle(end->second);
    else if (needsSequenceEnd(entity))
        text += withOwnHandle(newFrame("SEQEND", entity.objectId()));
    return text;
}

/// What begins or ends a list of objects, without a handle; with class markers it is an entity.
/// @param last  stem of its last marker; null: that of entities
std::string DrawingWriter::newFrame(const char* type, KdDbObjectId owner, const char* last) const
{
    std::string frame = tag(0, type);
    if (!markerPrefix_)
        return frame;
    frame += tag(330, formatHandle(owner.handle().value())) + marker("Entity") + tag(8, "0");
    return last ? frame + marker(last) : frame;
}

const FileForm::BlockFrame* DrawingWriter::frameOf(const KdDbBlockTableRecord& block) const
{
    const auto frame = form_.blocks.find(block.objectId());
    return frame == form_.blocks.end() ? nullptr : &frame->second;
}

/// True for a block that the file did not define and that now needs a definition. A current space
/// needs none: it is there anyway, and its entities stand elsewhere.
bool DrawingWriter::needsDefinition(KdDbBlockTableRecord& block) const
{
    return !isCurrentSpace(block) &&
           (isNew(*ObjectAccess::slot(block)) || !entitiesToWrite(block).empty());
}

/// Blocks with a definition to write, in the order of the file, new ones last.
std::vector<KdDbBlockTableRecord*> DrawingWriter::blocksToWrite() const
{
    std::vector<KdDbBlockTableRecord*> blocks;
    for (KdDbBlockTableRecord* block : liveBlocks()) {
        if (frameOf(*block) || writesEverything_ || needsDefinition(*block))
            blocks.push_back(block);
    }
    const auto place = [&](const KdDbBlockTableRecord* block) {
        const FileForm::BlockFrame* frame = frameOf(*block);
        return frame ? frame->place : std::numeric_limits<std::size_t>::max();
    };
    std::ranges::stable_sort(blocks, {}, place);
    return blocks;
}

std::string DrawingWriter::blocks()
{
    std::string text;
    for (KdDbBlockTableRecord* block : blocksToWrite())
        text += blockText(*block);
    return text;
}

std::string DrawingWriter::blockText(KdDbBlockTableRecord& block)
{
    const FileForm::BlockFrame* frame = frameOf(block);
    std::string text = blockBegin(block, frame);
    if (!isCurrentSpace(block)) {
        for (const ObjectSlot* slot : entitiesToWrite(block))
            text += entityText(static_cast<KdDbEntity&>(*slot->object));
    }
    return text +
           (frame ? frame->end : withOwnHandle(newFrame("ENDBLK", block.objectId(), "BlockEnd")));
}

/// The BLOCK has the handle of its record where the table of records does not have the record.
std::string DrawingWriter::blockBegin(KdDbBlockTableRecord& block,
                                      const FileForm::BlockFrame* frame)
{
    const ObjectSlot& slot = *ObjectAccess::slot(block);
    const bool isWhole = frame && !isChanged(slot);
    std::string begin = frame ? frame->begin : newFrame("BLOCK", block.objectId(), "BlockBegin");
    if (!frame && !markerPrefix_)
        begin += tag(8, "0");
    if (!writesBlockRecords() || !isWritten(slot))
        begin = given(block.objectId(), begin);
    else if (!frame)
        begin = withOwnHandle(begin);
    if (isWhole)
        return begin;
    begin = writtenAs([&] { return nameOf(block); },
                      [&] { return writer_.fieldsWritten(block, begin, kBlockCodes); });
    if (!frame)
        begin += tag(3, TagList(begin).valueOf(2)) + tag(1, "");
    return withSecondName(begin, lineEnd_);
}

} // namespace korra
