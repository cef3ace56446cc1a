#include "kd/ge/circ_arc2d.h"

#include "kd/ge/angle.h"

#include <cmath>

void KdGeCurve2d::getSamplePoints(int count, KdArray<KdGePoint2d>& points) const
{
    points.removeAll();
    for (int i = 0; i < count && count > 1; ++i)
        points.append(pointAt(static_cast<double>(i) / (count - 1)));
}

KdGeCircArc2d KdGeCircArc2d::fromBulge(const KdGePoint2d& start, const KdGePoint2d& end,
                                       double bulge)
{
    KdGeCircArc2d arc;
    arc.arc_ = KdGeCircArc3d::fromBulge({start.x, start.y, 0.0}, {end.x, end.y, 0.0}, bulge);
    // The tangent keeps its direction however far the centre is; the radius is at right angles.
    const KdGeVector3d tangent = arc.arc_.firstDerivative(arc.arc_.startParam());
    arc.startAngle_ = bulge < 0.0 ? KdGe::directionAngle(-tangent.y, tangent.x)
                                  : KdGe::directionAngle(tangent.y, -tangent.x);
    return arc;
}

KdGePoint2d KdGeCircArc2d::pointAt(double part) const
{
    const KdGePoint3d point = arc_.evalPoint(std::lerp(arc_.startParam(), arc_.endParam(), part));
    return {point.x, point.y};
}
