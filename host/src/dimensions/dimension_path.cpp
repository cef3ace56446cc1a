#include "dimensions/dimension_line.h"

#include <algorithm>
#include <cmath>

namespace korra {

StraightPath::StraightPath(const KdGePoint2d& start, const KdGePoint2d& end)
    : start_(start), length_(start.distanceTo(end)), direction_((end - start) / length_)
{
}

double StraightPath::wayOf(const KdGePoint2d& point) const
{
    return (point - start_).dotProduct(direction_);
}

void StraightPath::draw(DimensionSheet& sheet, double from, double to) const
{
    sheet.line(at(from), at(to), sheet.look().lineColor);
}

ArcPath::ArcPath(const KdGePoint2d& center, double radius, double startAngle, double sweep)
    : center_(center),
      radius_(radius),
      startAngle_(startAngle),
      sweep_(sweep),
      side_(sweep < 0.0 ? -1.0 : 1.0)
{
}

KdGePoint2d ArcPath::at(double way) const
{
    const double angle = angleAt(way);
    return center_ + KdGeVector2d(std::cos(angle), std::sin(angle)) * radius_;
}

KdGeVector2d ArcPath::direction(double way) const
{
    const double angle = angleAt(way);
    return KdGeVector2d(-std::sin(angle), std::cos(angle)) * side_;
}

double ArcPath::wayOf(const KdGePoint2d& point) const
{
    const KdGeVector2d spoke = point - center_;
    double angle = KdGe::normalAngle((std::atan2(spoke.y, spoke.x) - startAngle_) * side_);
    // Beyond the end, up to half of the gap, the way grows on; from there it is before the start.
    if (angle > (std::abs(sweep_) + KdGe::kFullTurn) / 2.0)
        angle -= KdGe::kFullTurn;
    return angle * radius_;
}

void ArcPath::draw(DimensionSheet& sheet, double from, double to) const
{
    const double start = angleAt(from);
    const double end = angleAt(to);
    sheet.arc(center_, radius_, std::min(start, end), std::max(start, end), sheet.look().lineColor);
}

} // namespace korra
