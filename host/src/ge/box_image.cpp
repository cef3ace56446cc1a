#include "ge/box_image.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korra {

KdGeExtents3d boxOfAll()
{
    constexpr double kFar = std::numeric_limits<double>::infinity();
    KdGeExtents3d box;
    box.addPoint({-kFar, -kFar, -kFar});
    box.addPoint({kFar, kFar, kFar});
    return box;
}

bool isBounded(const KdGeExtents3d& box)
{
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (std::isinf(box.minPoint()[axis]) || std::isinf(box.maxPoint()[axis]))
            return box.isEmpty();
    }
    return true;
}

/// Each axis by itself, its terms in the order of a point's image: where axes stay axes the box is
/// that of the corners' images to the last bit.
KdGeExtents3d imageOf(const KdGeExtents3d& box, const KdGeMatrix3d& map)
{
    if (box.isEmpty())
        return box;
    if (!isBounded(box))
        return boxOfAll();
    KdGePoint3d low;
    KdGePoint3d high;
    for (unsigned int row = 0; row < 3; ++row) {
        low[row] = high[row] = 0.0;
        for (unsigned int axis = 0; axis < 3; ++axis) {
            const double a = map(row, axis) * box.minPoint()[axis];
            const double b = map(row, axis) * box.maxPoint()[axis];
            low[row] += std::min(a, b);
            high[row] += std::max(a, b);
        }
        low[row] += map(row, 3);
        high[row] += map(row, 3);
    }
    KdGeExtents3d image;
    image.addPoint(low);
    image.addPoint(high);
    return image;
}

} // namespace korra
