#include "ge/elliptic_arc.h"

#include "kd/ge/angle.h"

#include <cmath>
#include <numbers>

namespace korra {

std::unique_ptr<KdGeCurve3d> EllipticArc::clone() const
{
    return std::make_unique<EllipticArc>(*this);
}

KdGePoint3d EllipticArc::evalPoint(double param) const
{
    return center_ + (u_ * std::cos(param) + v_ * std::sin(param));
}

KdGeVector3d EllipticArc::firstDerivative(double param) const
{
    return v_ * std::cos(param) - u_ * std::sin(param);
}

KdGeVector3d EllipticArc::secondDerivative(double param) const
{
    return -(u_ * std::cos(param) + v_ * std::sin(param));
}

std::vector<double> EllipticArc::breaks() const
{
    constexpr double kQuarter = std::numbers::pi / 2.0;
    const double axis =
        std::atan2(2.0 * u_.dotProduct(v_), u_.lengthSqrd() - v_.lengthSqrd()) / 2.0;
    std::vector<double> result{start_};
    double turn = std::floor((start_ - axis) / kQuarter) + 1.0;
    for (; axis + turn * kQuarter < end_; ++turn) {
        if (axis + turn * kQuarter > result.back())
            result.push_back(axis + turn * kQuarter);
    }
    result.push_back(end_);
    return result;
}

KdGeExtents3d EllipticArc::boundOf(double from, double to) const
{
    return EllipticArc(center_, u_, v_, from, to).extents();
}

/// The ellipse is an affine image of a circle, and what it has beside a chord is an image too: at
/// most 1 - cos(half the angle) of the diameter's half that goes through the middle.
double EllipticArc::sagOf(double from, double to) const
{
    const double half = std::sin((to - from) / 4.0);
    return 2.0 * half * half * (evalPoint(from + (to - from) / 2.0) - center_).length();
}

bool EllipticArc::transformBy(const KdGeMatrix3d& matrix)
{
    if (!matrix.isAffine())
        return false;
    *this = EllipticArc(matrix * center_, matrix * u_, matrix * v_, start_, end_);
    return true;
}

void EllipticArc::reverse()
{
    *this = EllipticArc(center_, u_, -v_, -end_, -start_);
}

KdGeExtents3d EllipticArc::extentsUnder(const KdGeMatrix3d& matrix) const
{
    KdGeExtents3d box;
    box.addPoint(matrix * evalPoint(start_));
    box.addPoint(matrix * evalPoint(end_));
    const KdGePoint3d center = matrix * center_;
    const KdGeVector3d u = matrix * u_;
    const KdGeVector3d v = matrix * v_;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const double reach = std::hypot(u[axis], v[axis]);
        for (const double side : {1.0, -1.0}) {
            const double param = KdGe::directionAngle(side * u[axis], side * v[axis]);
            if (KdGe::normalAngle(param - start_) > end_ - start_)
                continue;
            // Another point of the box gives the other coordinates.
            KdGePoint3d corner = side > 0.0 ? box.maxPoint() : box.minPoint();
            corner[axis] = center[axis] + side * reach;
            box.addPoint(corner);
        }
    }
    return box;
}

} // namespace korra
