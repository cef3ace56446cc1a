#include "dxf/block_nesting.h"

#include "dxf/drawing_error.h"

#include "platform/text.h"

#include <algorithm>
#include <unordered_map>

namespace korra {
namespace {

/// Entities of blocks are drawn and picked recursively; real drawings stay below fifty levels.
constexpr int kDeepestNesting = 500;

/// The block that an entity shows; null for one that shows none.
KdDbBlockTableRecord* blockShownBy(const KdDbObject* entity)
{
    if (const auto* reference = KdDbBlockReference::cast(entity))
        return ObjectAccess::live<KdDbBlockTableRecord>(reference->blockTableRecord());
    if (const auto* dimension = KdDbDimension::cast(entity))
        return ObjectAccess::live<KdDbBlockTableRecord>(dimension->dimBlockId());
    return nullptr;
}

/// Walks every block to the blocks that it shows, without recursion: a file decides how deep.
class NestingWalk {
public:
    NestingWalk(const ReadFile& file, const std::vector<KdDbObjectId>& ids) : file_(file), ids_(ids)
    {
    }

    void visit(KdDbBlockTableRecord& block)
    {
        enter(block);
        while (!path_.empty()) {
            Step& step = path_.back();
            const auto& entities = ObjectAccess::entities(*step.block);
            if (step.next == entities.size())
                leave();
            else if (auto* shown = blockShownBy(ObjectAccess::object(entities[step.next++])))
                follow(*shown);
        }
    }

private:
    struct Step {
        KdDbBlockTableRecord* block;
        std::size_t next = 0; ///< entity to look at
        int depth = 1;        ///< levels of blocks from here on
    };

    static constexpr int kOnPath = -1;

    void enter(KdDbBlockTableRecord& block)
    {
        if (depths_.emplace(&block, kOnPath).second)
            path_.push_back({&block});
    }

    void follow(KdDbBlockTableRecord& shown)
    {
        const auto known = depths_.find(&shown);
        if (known == depths_.end())
            enter(shown);
        else if (known->second == kOnPath)
            fail(shown, " contains itself");
        else
            deepen(known->second + 1);
    }

    void deepen(int depth)
    {
        if (path_.empty())
            return;
        path_.back().depth = std::max(path_.back().depth, depth);
        if (path_.back().depth > kDeepestNesting)
            fail(*path_.back().block, " nests more than 500 blocks deep");
    }

    void leave()
    {
        const Step done = path_.back();
        path_.pop_back();
        depths_[done.block] = done.depth;
        deepen(done.depth + 1);
    }

    [[noreturn]] void fail(const KdDbBlockTableRecord& block, const char* what) const
    {
        std::wstring name = block.name();
        std::ranges::replace_if(
            name, [](wchar_t c) { return c < L' '; }, L'?');
        throw DrawingError{lineOf(block), "the block \"" + platform::toUtf8(name) + '"' + what};
    }

    /// A space that the file does not define is blamed on the first entity in it that shows a
    /// block.
    std::size_t lineOf(const KdDbBlockTableRecord& block) const
    {
        for (const ReadBlock& read : file_.blocks) {
            if (ids_[read.record] == block.objectId())
                return read.line;
        }
        for (std::size_t index = 0; index < ids_.size(); ++index) {
            const KdDbObject* object = ObjectAccess::object(ids_[index]);
            if (object->ownerId() == block.objectId() && blockShownBy(object))
                return file_.objects[index].line;
        }
        return 0;
    }

    const ReadFile& file_;
    const std::vector<KdDbObjectId>& ids_;
    std::vector<Step> path_;
    std::unordered_map<const KdDbBlockTableRecord*, int> depths_;
};

} // namespace

void checkBlockNesting(const DatabaseContents& contents, const ReadFile& file,
                       const std::vector<KdDbObjectId>& ids)
{
    auto* table = ObjectAccess::live<KdDbSymbolTable>(contents.table(TableKind::block));
    if (!table)
        return;
    NestingWalk walk(file, ids);
    for (const KdDbObjectId id : ObjectAccess::records(*table)) {
        if (auto* block = ObjectAccess::live<KdDbBlockTableRecord>(id))
            walk.visit(*block);
    }
}

} // namespace korra
