#include "entities/entity_plane.h"

#include <algorithm>
#include <cmath>

namespace korra {

bool isSimilarity(const KdGeMatrix3d& matrix)
{
    KdGePoint3d origin;
    KdGeVector3d axes[3];
    matrix.getCoordSystem(origin, axes[0], axes[1], axes[2]);
    // Products of unit vectors turned in floating point stay well below this.
    constexpr double kRelative = 1e-9;
    const double size = axes[0].lengthSqrd();
    for (int i = 0; i < 3; ++i) {
        const KdGeVector3d& next = axes[(i + 1) % 3];
        if (std::abs(next.lengthSqrd() - size) > kRelative * size ||
            std::abs(axes[i].dotProduct(next)) > kRelative * size)
            return false;
    }
    return true;
}

PlaneImage::PlaneImage(const KdGeVector3d& normal, const KdGeMatrix3d& matrix)
{
    const KdGeMatrix3d toBlock = matrix * KdGeMatrix3d::planeToWorld(normal);
    const KdGeVector3d x = toBlock * KdGeVector3d::kXAxis;
    const KdGeVector3d y = toBlock * KdGeVector3d::kYAxis;
    scale = x.length();
    newNormal = x.crossProduct(y) / (scale * scale);
    map = KdGeMatrix3d::worldToPlane(newNormal) * toBlock;
}

double PlaneImage::angle(double radians) const
{
    const KdGeVector3d image = map * KdGeVector3d(std::cos(radians), std::sin(radians), 0.0);
    return KdGe::directionAngle(image.x, image.y);
}

} // namespace korra
