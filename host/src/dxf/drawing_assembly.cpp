#include "dxf/drawing_assembly.h"

#include "blocks/spaces.h"
#include "drawing/complete_drawing.h"
#include "dxf/block_nesting.h"
#include "dxf/object_kinds.h"
#include "dxf/oldest_version.h"
#include "form/numbers.h"

#include <algorithm>

namespace korra {
namespace {

/// Names are read by then, that of the record going before that of the BLOCK.
constexpr int kBlockFieldCodes[] = {10, 20, 30, 70};

/// Makes an object part of another one, last in its list.
void place(KdDbObject& part, KdDbObject& owner)
{
    ObjectAccess::setOwner(part, owner.objectId());
    ObjectAccess::owned(owner)->append(&part);
}

} // namespace

DrawingAssembly::DrawingAssembly(DatabaseContents& contents, ReadFile& file)
    : contents_(contents), file_(file)
{
}

void DrawingAssembly::run()
{
    contents_.header = std::move(file_.header);
    contents_.form = std::move(file_.form);
    adoptObjects();
    placeRecords();
    keepForm();
    references_.emplace(contents_);
    reader_.emplace(*references_, contents_.header.encoding());
    placeEntities();
    readFields();
    placeObjects();
    bindLayouts();
    checkBlockNesting(contents_,
                      [this](const KdDbBlockTableRecord& block) { return lineOf(block); });
    complete();
}

/// Handles that the file does not give follow the last one that it does, in the order of the file.
void DrawingAssembly::adoptObjects()
{
    const std::string seed(
        contents_.header.has("$HANDSEED")
            ? contents_.header.encoding().encode(contents_.header.text("$HANDSEED", L""))
            : std::string());
    contents_.nextHandle = std::max(contents_.form.lastHandle + 1, parseHandle(seed).value_or(0));
    contents_.slots.reserve(file_.objects.size());
    contents_.byHandle.reserve(file_.objects.size());
    ids_.reserve(file_.objects.size());
    for (ReadObject& read : file_.objects) {
        const KdDbObjectId id =
            ObjectAccess::adopt(contents_.database, read.object.release(), KdDbHandle(read.handle));
        id.slot()->numbered = id.handle() == KdDbHandle(read.handle);
        ids_.push_back(id);
    }
}

void DrawingAssembly::placeRecords()
{
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        if (file_.objects[index].place == FilePlace::table) {
            const auto kind = tableKindOf(object(index));
            contents_.tables[static_cast<std::size_t>(kind.value())] = ids_[index];
        }
    }
    KdDbObjectId& blocks = contents_.tables[static_cast<std::size_t>(TableKind::block)];
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        const ReadObject& read = file_.objects[index];
        if (read.place != FilePlace::record)
            continue;
        if (read.parent == ReadObject::kNone && blocks.isNull())
            blocks = ObjectAccess::adopt(contents_.database, kindOfTable(TableKind::block).make());
        const KdDbObjectId table = read.parent == ReadObject::kNone ? blocks : ids_[read.parent];
        place(object(index), *ObjectAccess::object(table));
    }
}

/// What is kept by object can be entered now that objects have ids.
void DrawingAssembly::keepForm()
{
    for (const ReadBlock& block : file_.blocks)
        contents_.form.blocks.emplace(ids_[block.record], block.frame);
    for (auto& [entity, end] : file_.sequenceEnds)
        contents_.form.sequenceEnds.emplace(ids_[entity], std::move(end));
}

void DrawingAssembly::placeEntities()
{
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        const ReadObject& read = file_.objects[index];
        if (read.place == FilePlace::part) {
            place(object(index), object(read.parent));
            continue;
        }
        if (read.place != FilePlace::entities && read.place != FilePlace::block)
            continue;
        auto& block = read.place == FilePlace::block
                          ? static_cast<KdDbBlockTableRecord&>(object(read.parent))
                          : spaceOf(read);
        place(object(index), block);
    }
}

/// In the entities section the owner says the space, where it is one; else the flag 67.
KdDbBlockTableRecord& DrawingAssembly::spaceOf(const ReadObject& read)
{
    const auto [known, isNew] = spaces_.try_emplace({read.owner, read.onSheet}, nullptr);
    if (!isNew)
        return *known->second;
    KdDbObject* owner = ObjectAccess::object(references_->at(read.owner));
    auto* space = KdDbBlockTableRecord::cast(owner);
    if (!space || !isSpaceName(space->name()))
        space = static_cast<KdDbBlockTableRecord*>(ObjectAccess::object(
            references_->recordOrNew(TableKind::block, read.onSheet ? kPaperSpace : kModelSpace)));
    known->second = space;
    return *space;
}

void DrawingAssembly::readFields()
{
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        if (file_.objects[index].place != FilePlace::table)
            readFieldsOf(index);
    }
    readBlockFields();
}

void DrawingAssembly::readFieldsOf(std::size_t index)
{
    KdDbObject& target = object(index);
    const std::string_view source = ObjectAccess::source(target);
    if (source.empty())
        return; // a block without a record
    const bool isBlock = KdDbBlockTableRecord::cast(&target) != nullptr;
    reader_->read(target, source, file_.objects[index].line,
                  isBlock ? std::span<const int>(kBlockRecordCodes) : std::span<const int>(),
                  Extensions::read);
    if (KdDbViewport::cast(&target))
        readView(target, source, file_.objects[index].line);
}

/// Of a viewport as older drawings have it.
void DrawingAssembly::readView(KdDbObject& viewport, std::string_view source, std::size_t line)
{
    if (const std::string view = viewTags(source); !view.empty())
        reader_->read(viewport, view, line, kViewCodes, Extensions::ignored);
}

void DrawingAssembly::readBlockFields()
{
    for (const ReadBlock& block : file_.blocks) {
        KdDbObject& record = object(block.record);
        const bool hasRecord = !ObjectAccess::source(record).empty();
        reader_->read(record, block.frame.begin, block.line, kBlockFieldCodes,
                      hasRecord ? Extensions::ignored : Extensions::read);
    }
}

/// The first dictionary without an owner is the one of everything.
void DrawingAssembly::placeObjects()
{
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        const ReadObject& read = file_.objects[index];
        if (read.place != FilePlace::objects)
            continue;
        const KdDbObjectId owner = references_->at(read.owner);
        ObjectAccess::setOwner(object(index), owner);
        if (owner.isNull() && contents_.namedObjects.isNull() &&
            KdDbDictionary::cast(&object(index)))
            contents_.namedObjects = ids_[index];
    }
}

/// A layout names its block; the block of an older file does not name its layout.
void DrawingAssembly::bindLayouts()
{
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        if (file_.objects[index].place != FilePlace::objects)
            continue;
        const KdDbObjectId id = ids_[index];
        const auto* const layout = KdDbLayout::cast(&object(index));
        auto* const block =
            layout ? ObjectAccess::live<KdDbBlockTableRecord>(layout->getBlockTableRecordId())
                   : nullptr;
        if (block && !ObjectAccess::live<KdDbLayout>(block->getLayoutId()))
            ObjectAccess::layout(*block) = id;
    }
}

/// Where a block is defined; of a space that the file does not define the first entity in it that
/// shows a block.
std::size_t DrawingAssembly::lineOf(const KdDbBlockTableRecord& block) const
{
    for (const ReadBlock& read : file_.blocks) {
        if (ids_[read.record] == block.objectId())
            return read.line;
    }
    for (std::size_t index = 0; index < ids_.size(); ++index) {
        const auto* const entity = KdDbEntity::cast(ObjectAccess::object(ids_[index]));
        if (entity && entity->ownerId() == block.objectId() && !entity->shownBlock().block.isNull())
            return file_.objects[index].line;
    }
    return 0;
}

/// What the host adds to make the drawing whole is no change of it: it is added again when the file
/// is read the next time.
void DrawingAssembly::complete()
{
    completeDrawing(contents_);
    for (ObjectSlot* slot : contents_.slots) {
        if (slot->changed && !ObjectAccess::source(*slot->object).empty())
            contents_.form.completed.insert(KdDbObjectId(slot));
        slot->changed = false;
        slot->touched = false;
        contents_.form.lastReadIndex = std::max(contents_.form.lastReadIndex, slot->index);
    }
}

} // namespace korra
