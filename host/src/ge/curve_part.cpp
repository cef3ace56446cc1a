#include "ge/curve_part.h"

#include "ge/smooth_curve.h"

#include <cmath>

namespace korra {

KdGeVector3d CurvePart::secondDerivative(double param) const
{
    if (smooth)
        return smooth->secondDerivative(param);
    return arc ? arc->normal().crossProduct(tangent(param)) : KdGeVector3d();
}

double CurvePart::sagOf(double low, double high) const
{
    if (smooth)
        return smooth->sagOf(low, high);
    const double half = arc ? std::sin((high - low) / 4.0) : 0.0;
    return arc ? 2.0 * half * half * arc->radius() : 0.0;
}

double CurvePart::nearestParam(const KdGePoint3d& point) const
{
    return smooth ? smooth->nearestParam(point, from, to) : curve->nearestParam(point);
}

std::vector<double> CurvePart::ends() const
{
    std::vector<double> result;
    for (const double end : {from, to}) {
        if (std::isfinite(end))
            result.push_back(end);
    }
    return result;
}

void appendParts(const KdGeCurve3d& curve, std::size_t piece, std::vector<CurvePart>& parts)
{
    CurvePart part;
    part.curve = &curve;
    part.piece = piece;
    part.smooth = dynamic_cast<const SmoothCurve*>(&curve);
    if (!part.smooth) {
        part.line = dynamic_cast<const KdGeLinearEnt3d*>(&curve);
        part.arc = dynamic_cast<const KdGeCircArc3d*>(&curve);
        part.from = curve.startParam();
        part.to = curve.endParam();
        part.box = curve.extents();
        parts.push_back(part);
        return;
    }
    const std::vector<double> breaks = part.smooth->breaks();
    for (std::size_t i = 1; i < breaks.size(); ++i) {
        part.from = breaks[i - 1];
        part.to = breaks[i];
        part.box = part.smooth->boundOf(part.from, part.to);
        parts.push_back(part);
    }
}

} // namespace korra
