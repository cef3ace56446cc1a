#include "kd/db/ellipse.h"

#include "ge/elliptic_arc.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

#include <cmath>

KDRX_DEFINE_MEMBERS(KdDbEllipse, KdDbCurve)

KdDbEllipse::KdDbEllipse(const KdGePoint3d& center, const KdGeVector3d& normal,
                         const KdGeVector3d& majorAxis, double radiusRatio, double startAngle,
                         double endAngle)
    : center_(center),
      majorAxis_(majorAxis),
      normal_(normal.normal()),
      radiusRatio_(radiusRatio),
      startAngle_(startAngle),
      endAngle_(endAngle)
{
}

KdGeVector3d KdDbEllipse::minorAxis() const
{
    return normal_.crossProduct(majorAxis_) * radiusRatio_;
}

std::unique_ptr<KdGeCurve3d> KdDbEllipse::geometry() const
{
    const KdGeVector3d minor = minorAxis();
    const bool isSound = minor.length() > 0.0 && std::isfinite(minor.length()) &&
                         std::isfinite(startAngle_) && std::isfinite(endAngle_);
    if (!isSound)
        return nullptr;
    // A circle's arc knows when two angles are the same or a full turn apart.
    const KdGeCircArc3d turn(KdGePoint3d::kOrigin, KdGeVector3d::kZAxis, KdGeVector3d::kXAxis, 1.0,
                             startAngle_, endAngle_);
    return std::make_unique<korra::EllipticArc>(center_, majorAxis_, minor, turn.startAng(),
                                                turn.endAng());
}

Kdapi::ErrorStatus KdDbEllipse::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        // The images of the axes are conjugate half diameters; where the sum of squares of
        // u cos t + v sin t is largest, it is the new major axis.
        const KdGeVector3d u = matrix * majorAxis_;
        const KdGeVector3d v = matrix * minorAxis();
        const double turn =
            std::atan2(2.0 * u.dotProduct(v), u.lengthSqrd() - v.lengthSqrd()) / 2.0;
        const KdGeVector3d major = u * std::cos(turn) + v * std::sin(turn);
        const KdGeVector3d minor = v * std::cos(turn) - u * std::sin(turn);
        center_.transformBy(matrix);
        majorAxis_ = major;
        normal_ = major.crossProduct(minor).normal();
        radiusRatio_ = minor.length() / major.length();
        startAngle_ -= turn;
        endAngle_ -= turn;
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbEllipse::newEdge(int) const
{
    return new KdDbEllipse(center_, normal_, majorAxis_, radiusRatio_, startAngle_, endAngle_);
}

void KdDbEllipse::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Ellipse");
    visitor.point(10, center_);
    korra::storedVector(visitor, 11, majorAxis_);
    visitor.vector(210, normal_, KdGeVector3d::kZAxis);
    visitor.real(40, radiusRatio_);
    visitor.real(41, startAngle_);
    visitor.real(42, endAngle_);
}
