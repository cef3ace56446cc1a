#pragma once

#include "ge/box_tree.h"
#include "gi/draw_sink.h"
#include "kd/db/block_record.h"

#include <unordered_map>
#include <utility>
#include <vector>

namespace korra {

/// A tree of boxes over the entities of a block, so that devices go only where a box matters to
/// them.
///
/// A box is around all that its entity can show, hidden or not, in the coordinates of the block;
/// that of an entity that shows a block is the box of this block, transformed. What has changed is
/// found out when the boxes are asked for: entities that changed leave the tree for a short list,
/// and when that grows too long the tree is made anew. A block whose bounds differ has the entities
/// that show it measured again.
class BlockBoxes {
public:
    explicit BlockBoxes(const KdDbBlockTableRecord& block) : block_(block) {}

    /// The boxes of a block that is in a database, as everything is now.
    /// @throw std::bad_alloc
    static const BlockBoxes& of(const KdDbBlockTableRecord& block);

    /// True once they were asked for.
    static bool areMade(const KdDbBlockTableRecord& block) { return block.boxes_ != nullptr; }

    /// A box around everything; empty where there is nothing to see.
    KdGeExtents3d bounds() const;

    /// The blocks that entities of this one show, those that are not erased.
    std::vector<KdDbObjectId> shownBlocks() const;

    /// Calls `draw` with each entity that is not erased and whose box the sink wants: in drawing
    /// order where the sink needs it.
    template <class Draw>
    void drawWanted(DrawSink& sink, Draw draw) const;

private:
    /// A block that entities of this one show.
    struct Shown {
        KdDbObjectId block;
        std::uint64_t version = 0;        ///< of its boxes when these entities were measured
        std::vector<std::uint32_t> users; ///< places of the entities, ascending
    };

    static void hearOfChanges(DatabaseContents& contents);
    static void hearOf(const KdDbObject& object);
    static void forgetAll(const DatabaseContents& contents);
    static void forgetOf(KdDbObjectId block);
    static BlockBoxes* shownBoxes(const Shown& shown);
    static void bringUpToDate(BlockBoxes& boxes, std::uint64_t changes);

    void forget();
    void touch(const KdDbEntity& entity);
    void collect(std::uint64_t changes);
    void meetNewEntities();
    void noteShown(std::uint32_t place);
    void measure();
    void loosen(std::uint32_t place, const KdGeExtents3d& box);
    void pack();

    const KdDbEntity& entity(std::uint32_t place) const { return *block_.entities_[place]; }

    /// What sorts the entities: the drawing order's handles where the block has such an order.
    std::pair<std::uint64_t, std::uint32_t> sortKey(std::uint32_t place) const
    {
        return {sortHandles_.empty() ? 0 : sortHandles_[place], place};
    }

    template <class Meet>
    void search(DrawSink& sink, Meet meet) const;

    const KdDbBlockTableRecord& block_;
    std::uint64_t checked_ = 0;              ///< the count of changes that was heard of last
    std::uint64_t version_ = 0;              ///< another one when users have to be measured again
    std::uint64_t replacements_ = 0;         ///< of the list of entities
    KdDbObjectId orderTable_;                ///< the drawing order; null where the block has none
    std::vector<std::uint64_t> sortHandles_; ///< by place
    std::vector<bool> isLoose_; ///< by place, of all entities met: what the tree says is void
    std::vector<BoxTree::Leaf> loose_;
    std::vector<std::uint32_t> pending_; ///< places of entities to be measured
    std::vector<Shown> shown_;
    std::unordered_map<KdDbObjectId, std::size_t> shownAt_; ///< by block
    BoxTree tree_;                                          ///< its leaves that are loose are void
};

template <class Meet>
void BlockBoxes::search(DrawSink& sink, Meet meet) const
{
    const auto wants = [&](const KdGeExtents3d& box) { return sink.wants(box); };
    tree_.search(wants, [&](std::uint32_t place) {
        if (!isLoose_[place])
            meet(place);
    });
    for (const BoxTree::Leaf& leaf : loose_) {
        if (!leaf.box.isEmpty() && wants(leaf.box))
            meet(leaf.item);
    }
}

template <class Draw>
void BlockBoxes::drawWanted(DrawSink& sink, Draw draw) const
{
    std::vector<std::uint32_t> wanted;
    const auto drawUnlessErased = [&](std::uint32_t place) {
        if (!entity(place).isErased())
            draw(entity(place));
    };
    if (!sink.needs().order) {
        search(sink, drawUnlessErased);
        return;
    }
    search(sink, [&](std::uint32_t place) { wanted.push_back(place); });
    std::ranges::sort(wanted, {}, [this](std::uint32_t place) { return sortKey(place); });
    std::ranges::for_each(wanted, drawUnlessErased);
}

} // namespace korra
