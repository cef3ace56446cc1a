#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbArc, KdDbCurve)

KdDbArc::KdDbArc(const KdGePoint3d& center, double radius, double startAngle, double endAngle)
    : KdDbArc(center, KdGeVector3d::kZAxis, radius, startAngle, endAngle)
{
}

KdDbArc::KdDbArc(const KdGePoint3d& center, const KdGeVector3d& normal, double radius,
                 double startAngle, double endAngle)
    : place_(normal),
      center_(place_.toPlane() * center),
      radius_(radius),
      startAngle_(startAngle),
      endAngle_(endAngle)
{
}

KdGePoint3d KdDbArc::center() const
{
    return place_.toBlock() * center_;
}

std::unique_ptr<KdGeCurve3d> KdDbArc::geometry() const
{
    if (!(radius_ > 0.0))
        return nullptr;
    const KdGeMatrix3d toBlock = place_.toBlock();
    return std::make_unique<KdGeCircArc3d>(toBlock * center_, normal(),
                                           toBlock * KdGeVector3d::kXAxis, radius_, startAngle_,
                                           endAngle_);
}

Kdapi::ErrorStatus KdDbArc::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::similarities, [&] {
        const korra::PlaneImage image = place_.transformBy(matrix);
        center_.transformBy(image.map);
        radius_ *= image.scale;
        startAngle_ = image.angle(startAngle_);
        endAngle_ = image.angle(endAngle_);
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbArc::newEdge(int) const
{
    return new KdDbArc(center(), normal(), radius_, startAngle_, endAngle_);
}

void KdDbArc::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Circle");
    place_.describeThickness(visitor);
    visitor.point(10, center_);
    visitor.real(40, radius_);
    place_.describeNormal(visitor);
    visitor.behindMarker(3, "Arc");
    visitor.angle(50, startAngle_);
    visitor.angle(51, endAngle_);
}
