#include "dxf/block_nesting.h"

#include "dxf/drawing_error.h"

#include "platform/text.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <vector>

namespace korra {
namespace {

/// Entities of blocks are drawn and picked recursively; real drawings stay below fifty levels.
constexpr int kDeepestNesting = 500;

/// A few references in each of a few dozen blocks could show more than anyone can draw.
constexpr double kMostEntities = 1e8;

using LineOf = std::function<std::size_t(const KdDbBlockTableRecord&)>;

/// Walks every block to the blocks that it shows, without recursion: a file decides how deep.
class NestingWalk {
public:
    explicit NestingWalk(const LineOf& lineOf) : lineOf_(lineOf) {}

    void visit(KdDbBlockTableRecord& block)
    {
        enter(block);
        while (!path_.empty()) {
            Step& step = path_.back();
            const auto& entities = ObjectAccess::entities(*step.block).objects();
            if (step.next == entities.size())
                leave();
            else
                look(static_cast<const KdDbEntity&>(*entities[step.next++]));
        }
    }

private:
    /// What drawing a block comes to.
    struct Extent {
        int depth = 1;         ///< levels of blocks
        double entities = 0.0; ///< with those of the blocks that it shows
    };

    struct Step {
        KdDbBlockTableRecord* block;
        std::size_t next = 0; ///< entity to look at
        double times = 1.0;   ///< that the entity looked at last shows its block
        Extent extent = {};
    };

    void enter(KdDbBlockTableRecord& block)
    {
        if (extents_.emplace(&block, std::nullopt).second)
            path_.push_back({&block});
    }

    void look(const KdDbEntity& entity)
    {
        if (entity.isErased())
            return;
        const ShownBlock shown = entity.shownBlock();
        Step& step = path_.back();
        step.times = shown.times;
        step.extent.entities += shown.times;
        if (auto* const block = ObjectAccess::live<KdDbBlockTableRecord>(shown.block))
            follow(*block);
    }

    void follow(KdDbBlockTableRecord& shown)
    {
        const auto known = extents_.find(&shown);
        if (known == extents_.end())
            enter(shown);
        else if (!known->second)
            fail(shown, " contains itself");
        else
            add(*known->second);
    }

    /// Adds a block's extent to that of the block on the path that shows it.
    void add(const Extent& shown)
    {
        if (path_.empty())
            return;
        Step& step = path_.back();
        step.extent.depth = std::max(step.extent.depth, shown.depth + 1);
        step.extent.entities += step.times * shown.entities;
        if (step.extent.depth > kDeepestNesting)
            fail(*step.block, " nests more than 500 blocks deep");
    }

    void leave()
    {
        const Step done = path_.back();
        path_.pop_back();
        if (done.extent.entities > kMostEntities)
            fail(*done.block, " shows more than 100000000 entities");
        extents_[done.block] = done.extent;
        add(done.extent);
    }

    [[noreturn]] void fail(const KdDbBlockTableRecord& block, const char* what) const
    {
        std::wstring name = block.name();
        std::ranges::replace_if(
            name, [](wchar_t c) { return c < L' '; }, L'?');
        throw DrawingError{lineOf_(block), "the block \"" + platform::toUtf8(name) + '"' + what};
    }

    const LineOf& lineOf_;
    std::vector<Step> path_;
    std::unordered_map<const KdDbBlockTableRecord*, std::optional<Extent>>
        extents_; ///< none: on path
};

} // namespace

void checkBlockNesting(const DatabaseContents& contents, const LineOf& lineOf)
{
    auto* const table = ObjectAccess::live<KdDbSymbolTable>(contents.table(TableKind::block));
    if (!table)
        return;
    NestingWalk walk(lineOf);
    for (KdDbSymbolTableRecord* record : ObjectAccess::records(*table).each()) {
        if (!record->isErased())
            walk.visit(static_cast<KdDbBlockTableRecord&>(*record));
    }
}

} // namespace korra
