#include "ge/box_tree.h"

#include <utility>

namespace korra {
namespace {

constexpr double kCells = 1 << 21; ///< along each axis; three times 21 bits fit into a number

/// Puts two zero bits behind each of the lowest 21 bits.
std::uint64_t spread(std::uint64_t bits)
{
    bits = (bits | bits << 32) & 0x001f00000000ffffU;
    bits = (bits | bits << 16) & 0x001f0000ff0000ffU;
    bits = (bits | bits << 8) & 0x100f00f00f00f00fU;
    bits = (bits | bits << 4) & 0x10c30c30c30c30c3U;
    return (bits | bits << 2) & 0x1249249249249249U;
}

/// Where the middle of a box lies along Morton's curve through the cells of the bounds.
std::uint64_t placeOnCurve(const KdGeExtents3d& box, const KdGeExtents3d& bounds)
{
    std::uint64_t place = 0;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const double from = bounds.minPoint()[axis];
        const double size = bounds.maxPoint()[axis] - from;
        const double middle = box.minPoint()[axis] / 2.0 + box.maxPoint()[axis] / 2.0;
        const double cell = (middle - from) / size * kCells;
        // What is not a number, as in bounds without size, lies in the first cell.
        const double inside = cell > 0.0 ? std::min(cell, kCells - 1.0) : 0.0;
        place |= spread(static_cast<std::uint64_t>(inside)) << axis;
    }
    return place;
}

std::vector<BoxTree::Leaf> alongCurve(const std::vector<BoxTree::Leaf>& leaves)
{
    KdGeExtents3d bounds;
    for (const BoxTree::Leaf& leaf : leaves)
        bounds.addExt(leaf.box);
    std::vector<std::pair<std::uint64_t, std::uint32_t>> order;
    order.reserve(leaves.size());
    for (const BoxTree::Leaf& leaf : leaves)
        order.emplace_back(placeOnCurve(leaf.box, bounds), order.size());
    std::ranges::sort(order);
    std::vector<BoxTree::Leaf> sorted;
    sorted.reserve(leaves.size());
    for (const auto& [place, index] : order)
        sorted.push_back(leaves[index]);
    return sorted;
}

const KdGeExtents3d& boxOf(const BoxTree::Leaf& leaf)
{
    return leaf.box;
}

const KdGeExtents3d& boxOf(const KdGeExtents3d& node)
{
    return node;
}

/// The boxes around every so many of a level.
template <class Below>
std::vector<KdGeExtents3d> levelOver(const std::vector<Below>& below, std::size_t fan)
{
    std::vector<KdGeExtents3d> level((below.size() + fan - 1) / fan);
    for (std::size_t child = 0; child < below.size(); ++child)
        level[child / fan].addExt(boxOf(below[child]));
    return level;
}

} // namespace

BoxTree::BoxTree(std::vector<Leaf> leaves) : leaves_(alongCurve(leaves))
{
    if (leaves_.empty())
        return;
    levels_.push_back(levelOver(leaves_, kFan));
    while (levels_.back().size() > 1)
        levels_.push_back(levelOver(levels_.back(), kFan));
}

} // namespace korra
