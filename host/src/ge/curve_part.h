#pragma once

#include "kd/ge.h"

#include <cstddef>
#include <vector>

namespace korra {

class SmoothCurve;

/// A part of a curve that has every derivative: a line, an arc, or what lies between two breaks of
/// another curve.
struct CurvePart {
    const KdGeCurve3d* curve = nullptr; ///< that the parameters belong to
    std::size_t piece = 0;              ///< which of several curves it is
    const KdGeLinearEnt3d* line = nullptr;
    const KdGeCircArc3d* arc = nullptr;
    const SmoothCurve* smooth = nullptr;
    double from = 0.0; ///< infinite where a line has no end, like `to`
    double to = 0.0;
    KdGeExtents3d box; ///< around the part or a little more; empty for a line without an end

    KdGePoint3d point(double param) const { return curve->evalPoint(param); }

    KdGeVector3d tangent(double param) const { return curve->firstDerivative(param); }

    KdGeVector3d secondDerivative(double param) const;

    /// No point between two parameters, for an arc at most half a turn apart, is farther from their
    /// chord.
    double sagOf(double low, double high) const;

    double nearestParam(const KdGePoint3d& point) const;

    bool isOn(const KdGePoint3d& point, const KdGeTol& tol) const
    {
        return this->point(nearestParam(point)).distanceTo(point) <= tol.equalPoint();
    }

    /// The parameters of the ends that there are.
    std::vector<double> ends() const;
};

/// Appends the parts of a curve that is no composite, in its order.
/// @param piece  what number the parts are given
void appendParts(const KdGeCurve3d& curve, std::size_t piece, std::vector<CurvePart>& parts);

} // namespace korra
