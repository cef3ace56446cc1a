#pragma once

#include "kd/ge.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace korra {

/// Boxes in the order of a space-filling curve, under boxes of ever more of them: a search meets
/// few that it does not want.
class BoxTree {
public:
    struct Leaf {
        KdGeExtents3d box;
        std::uint32_t item = 0;
    };

    BoxTree() = default;

    /// @param leaves  with boxes that are not empty
    explicit BoxTree(std::vector<Leaf> leaves);

    const std::vector<Leaf>& leaves() const { return leaves_; }

    /// Around everything; empty without leaves.
    KdGeExtents3d bounds() const { return levels_.empty() ? KdGeExtents3d() : levels_.back()[0]; }

    /// Calls `meet` with each item whose box is wanted, whenever it comes to one.
    /// @param wants  asked of each box before what lies in it; may grow choosier while it goes on
    template <class Wants, class Meet>
    void search(Wants wants, Meet meet) const
    {
        if (!levels_.empty())
            searchNode(levels_.size() - 1, 0, wants, meet);
    }

private:
    static constexpr std::size_t kFan = 16;

    template <class Wants, class Meet>
    void searchNode(std::size_t level, std::size_t node, Wants& wants, Meet& meet) const
    {
        if (!wants(levels_[level][node]))
            return;
        const std::size_t below = level == 0 ? leaves_.size() : levels_[level - 1].size();
        const std::size_t end = std::min(below, (node + 1) * kFan);
        for (std::size_t child = node * kFan; child < end; ++child) {
            if (level > 0)
                searchNode(level - 1, child, wants, meet);
            else if (wants(leaves_[child].box))
                meet(leaves_[child].item);
        }
    }

    std::vector<Leaf> leaves_;                       ///< along the curve
    std::vector<std::vector<KdGeExtents3d>> levels_; ///< lowest first; one box in the last
};

} // namespace korra
