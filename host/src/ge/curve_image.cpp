#include "ge/curve_image.h"

#include "ge/elliptic_arc.h"

namespace korra {
namespace {

/// An arc as a curve that can follow every map without perspective.
std::unique_ptr<KdGeCurve3d> ellipticArcOf(const KdGeCircArc3d& arc)
{
    const KdGeVector3d u = arc.refVec() * arc.radius();
    return std::make_unique<EllipticArc>(arc.center(), u, arc.normal().crossProduct(u),
                                         arc.startAng(), arc.endAng());
}

} // namespace

std::unique_ptr<KdGeCurve3d> imageOf(const KdGeCurve3d& curve, const KdGeMatrix3d& matrix)
{
    if (!matrix.isAffine())
        return nullptr;
    if (const auto* const composite = dynamic_cast<const KdGeCompositeCurve3d*>(&curve)) {
        std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
        pieces.reserve(static_cast<std::size_t>(composite->numPieces()));
        for (int i = 0; i < composite->numPieces(); ++i)
            pieces.push_back(imageOf(composite->piece(i), matrix));
        return std::make_unique<KdGeCompositeCurve3d>(std::move(pieces));
    }
    std::unique_ptr<KdGeCurve3d> image = curve.clone();
    if (image->transformBy(matrix))
        return image;
    const auto* const arc = dynamic_cast<const KdGeCircArc3d*>(&curve);
    image = arc ? ellipticArcOf(*arc) : nullptr;
    return image && image->transformBy(matrix) ? std::move(image) : nullptr;
}

KdGeMatrix3d projectionOnto(const KdGePlane& plane)
{
    const KdGeVector3d& normal = plane.normal();
    const double height = (plane.pointOnPlane() - KdGePoint3d::kOrigin).dotProduct(normal);
    KdGeMatrix3d matrix;
    for (unsigned int row = 0; row < 3; ++row) {
        for (unsigned int column = 0; column < 3; ++column)
            matrix.entry[row][column] -= normal[row] * normal[column];
        matrix.entry[row][3] = normal[row] * height;
    }
    return matrix;
}

} // namespace korra
