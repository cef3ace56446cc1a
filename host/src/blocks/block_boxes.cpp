#include "blocks/block_boxes.h"

#include "blocks/draw_order.h"
#include "ge/box_image.h"
#include "gi/extents_sink.h"
#include "objects/contents.h"

#include <algorithm>
#include <span>

namespace korra {
namespace {

/// Collects the box of all that an entity can show; blocks count by their boxes.
class BoxSink final : public ExtentsSink {
public:
    BoxSink() : ExtentsSink(DrawNeeds{.looks = false, .order = false, .hidden = true}) {}

    bool wants(const KdGeExtents3d& box) override
    {
        extents_.addExt(box);
        return false;
    }

    void curve(const KdGeCurve3d& curve) override
    {
        if (curve.isBounded())
            ExtentsSink::curve(curve);
        else
            extents_.addExt(boxOfAll());
    }
};

KdGeExtents3d boxOf(const KdDbEntity& entity)
{
    BoxSink sink;
    entity.draw(sink);
    return sink.extents();
}

/// The entity of a block that an object is, or is part of; null for any other object.
const KdDbEntity* entityOfBlock(const KdDbObject& object)
{
    const auto* entity = KdDbEntity::cast(&object);
    const auto* const whole =
        entity ? KdDbEntity::cast(ObjectAccess::object(entity->ownerId())) : nullptr;
    return whole ? whole : entity;
}

/// How many entities may be beside a tree before it is made anew.
std::size_t mostLoose(std::size_t entities)
{
    return 64 + entities / 64;
}

} // namespace

const BlockBoxes& BlockBoxes::of(const KdDbBlockTableRecord& block)
{
    DatabaseContents& contents = block.database()->contents();
    hearOfChanges(contents);
    if (!block.boxes_)
        block.boxes_ = std::make_unique<BlockBoxes>(block);
    if (block.boxes_->checked_ != contents.changes.count())
        bringUpToDate(*block.boxes_, contents.changes.count());
    return *block.boxes_;
}

KdGeExtents3d BlockBoxes::bounds() const
{
    KdGeExtents3d bounds = tree_.bounds();
    for (const BoxTree::Leaf& leaf : loose_)
        bounds.addExt(leaf.box);
    return bounds;
}

std::vector<KdDbObjectId> BlockBoxes::shownBlocks() const
{
    std::vector<KdDbObjectId> blocks;
    for (const Shown& shown : shown_) {
        const bool isUsed = std::ranges::any_of(shown.users, [&](std::uint32_t place) {
            return !entity(place).isErased() && entity(place).shownBlock().block == shown.block;
        });
        if (isUsed)
            blocks.push_back(shown.block);
    }
    return blocks;
}

/// Tells the blocks what has changed since this was called last.
void BlockBoxes::hearOfChanges(DatabaseContents& contents)
{
    if (contents.changes.isOverfull())
        forgetAll(contents);
    for (const ObjectSlot* slot : contents.changes.noted()) {
        if (slot->object)
            hearOf(*slot->object);
    }
    contents.changes.clear();
}

void BlockBoxes::hearOf(const KdDbObject& object)
{
    if (const KdDbEntity* const entity = entityOfBlock(object)) {
        const auto* const block =
            KdDbBlockTableRecord::cast(ObjectAccess::object(entity->ownerId()));
        if (block && block->boxes_)
            block->boxes_->touch(*entity);
    } else if (const auto* const block = KdDbBlockTableRecord::cast(&object)) {
        if (block->boxes_)
            ++block->boxes_->version_; // the base point, or whether there is such a block
    } else if (const auto* const order = KdDbSortentsTable::cast(&object)) {
        forgetOf(order->block());
    } else if (KdDbTextStyleTableRecord::cast(&object)) {
        forgetAll(object.database()->contents());
    }
}

void BlockBoxes::forgetOf(KdDbObjectId block)
{
    const auto* const record = KdDbBlockTableRecord::cast(ObjectAccess::object(block));
    if (record && record->boxes_)
        record->boxes_->forget();
}

void BlockBoxes::forgetAll(const DatabaseContents& contents)
{
    const auto* const table =
        KdDbSymbolTable::cast(ObjectAccess::object(contents.table(TableKind::block)));
    if (!table)
        return;
    for (const KdDbSymbolTableRecord* record : ObjectAccess::records(*table).each())
        forgetOf(record->objectId());
}

void BlockBoxes::forget()
{
    ++version_;
    checked_ = 0;
    orderTable_.setNull();
    sortHandles_.clear();
    isLoose_.clear();
    loose_.clear();
    pending_.clear();
    shown_.clear();
    shownAt_.clear();
    tree_ = {};
}

/// Entities stand in a block in the order in which they came into the drawing.
void BlockBoxes::touch(const KdDbEntity& entity)
{
    const auto& entities = block_.entities_.objects();
    const auto known = std::span(entities).first(std::min(entities.size(), isLoose_.size()));
    const auto index = [](const KdDbObject* object) { return ObjectAccess::slot(*object)->index; };
    const auto place = std::ranges::lower_bound(known, index(&entity), {}, index);
    if (place != known.end() && *place == &entity)
        pending_.push_back(static_cast<std::uint32_t>(place - known.begin()));
}

BlockBoxes* BlockBoxes::shownBoxes(const Shown& shown)
{
    const auto* const block = ObjectAccess::live<KdDbBlockTableRecord>(shown.block);
    if (!block)
        return nullptr;
    if (!block->boxes_)
        block->boxes_ = std::make_unique<BlockBoxes>(*block);
    return block->boxes_.get();
}

/// Blocks that are shown come before those that show them, however deep they nest; without
/// recursion.
void BlockBoxes::bringUpToDate(BlockBoxes& boxes, std::uint64_t changes)
{
    struct Step {
        BlockBoxes* boxes;
        std::size_t next = 0; ///< of the blocks that it shows
    };

    std::vector<Step> path;
    const auto enter = [&](BlockBoxes& entered) {
        path.push_back({&entered});
        entered.collect(changes);
    };
    try {
        enter(boxes);
        while (!path.empty()) {
            Step& step = path.back();
            if (step.next == step.boxes->shown_.size()) {
                step.boxes->measure();
                path.pop_back();
                continue;
            }
            BlockBoxes* const shown = shownBoxes(step.boxes->shown_[step.next++]);
            if (shown && shown->checked_ != changes)
                enter(*shown);
        }
    } catch (...) {
        for (const Step& step : path)
            step.boxes->forget();
        throw;
    }
}

/// Finds out which entities have to be measured, but for those that show a block that differs. From
/// here on the block counts as checked, so that one that shows itself comes to an end.
void BlockBoxes::collect(std::uint64_t changes)
{
    const OwnedObjects& entities = block_.entities_;
    if (replacements_ != entities.replacements() || orderTable_ != sortentsTableOf(block_))
        forget();
    replacements_ = entities.replacements();
    orderTable_ = sortentsTableOf(block_);
    meetNewEntities();
    for (const std::uint32_t place : pending_)
        noteShown(place);
    checked_ = changes;
}

/// An entity that comes later is in no drawing order yet: its own handle sorts it.
void BlockBoxes::meetNewEntities()
{
    const std::size_t met = isLoose_.size();
    const std::size_t count = block_.entities_.size();
    const auto* const order = ObjectAccess::live<KdDbSortentsTable>(orderTable_);
    const auto handles =
        order && met == 0 ? order->sortHandles() : std::unordered_map<KdDbObjectId, KdDbHandle>();
    const bool isSorted = !handles.empty() || !sortHandles_.empty();
    isLoose_.resize(count, false);
    for (std::size_t place = met; place < count; ++place) {
        const KdDbObjectId id = block_.entities_[place]->objectId();
        const auto handle = handles.find(id);
        if (isSorted)
            sortHandles_.push_back(
                (handle == handles.end() ? id.handle() : handle->second).value());
        pending_.push_back(static_cast<std::uint32_t>(place));
    }
}

void BlockBoxes::noteShown(std::uint32_t place)
{
    const KdDbObjectId block = entity(place).shownBlock().block;
    if (block.isNull())
        return;
    const auto [known, isNew] = shownAt_.emplace(block, shown_.size());
    if (isNew)
        shown_.push_back({block, 0, {}});
    std::vector<std::uint32_t>& users = shown_[known->second].users;
    const auto at = std::ranges::lower_bound(users, place);
    if (at == users.end() || *at != place)
        users.insert(at, place);
}

void BlockBoxes::measure()
{
    for (Shown& shown : shown_) {
        const BlockBoxes* const boxes = shownBoxes(shown);
        const std::uint64_t version = boxes ? boxes->version_ : 0;
        if (std::exchange(shown.version, version) != version)
            pending_.insert(pending_.end(), shown.users.begin(), shown.users.end());
    }
    if (pending_.empty())
        return;
    std::ranges::sort(pending_);
    pending_.erase(std::unique(pending_.begin(), pending_.end()), pending_.end());
    const KdGeExtents3d before = bounds();
    for (const std::uint32_t place : pending_)
        loosen(place, boxOf(entity(place)));
    pending_.clear();
    const auto packable = std::ranges::count_if(loose_, isBounded, &BoxTree::Leaf::box);
    if (static_cast<std::size_t>(packable) > mostLoose(isLoose_.size()))
        pack();
    if (!(bounds() == before))
        ++version_;
}

void BlockBoxes::loosen(std::uint32_t place, const KdGeExtents3d& box)
{
    const auto known =
        isLoose_[place] ? std::ranges::find(loose_, place, &BoxTree::Leaf::item) : loose_.end();
    if (known != loose_.end())
        known->box = box;
    else
        loose_.push_back({box, place});
    isLoose_[place] = true;
}

/// What shows nothing stays out of the tree, and out of the list until it changes; what has no
/// bounds stays in the list.
void BlockBoxes::pack()
{
    std::vector<BoxTree::Leaf> leaves;
    leaves.reserve(tree_.leaves().size() + loose_.size());
    for (const BoxTree::Leaf& leaf : tree_.leaves()) {
        if (!isLoose_[leaf.item])
            leaves.push_back(leaf);
    }
    std::vector<BoxTree::Leaf> unbounded;
    for (const BoxTree::Leaf& leaf : loose_) {
        if (!leaf.box.isEmpty())
            (isBounded(leaf.box) ? leaves : unbounded).push_back(leaf);
    }
    tree_ = BoxTree(std::move(leaves));
    isLoose_.assign(isLoose_.size(), false);
    loose_ = std::move(unbounded);
    for (const BoxTree::Leaf& leaf : loose_)
        isLoose_[leaf.item] = true;
}

} // namespace korra
