#pragma once

#include "ge/arc_length.h"
#include "kd/ge/curve3d.h"

namespace korra {

/// A curve whose lengths, nearest points and boxes have no closed form: a kind of it tells points
/// and derivatives, and what piece of space a part of it stays in; the rest is worked out here.
class SmoothCurve : public KdGeCurve3d {
public:
    virtual KdGeVector3d secondDerivative(double param) const = 0;

    /// Rising parameters from start to end between which the curve has every derivative.
    virtual std::vector<double> breaks() const = 0;

    /// A box around the part between two parameters that no break separates; a part half as long
    /// gives one that is nearer to the part by a factor of four.
    virtual KdGeExtents3d boundOf(double from, double to) const = 0;

    /// No point of the part between two parameters that no break separates is farther from the
    /// part's chord; for a part half as long it is less by a factor of four.
    virtual double sagOf(double from, double to) const = 0;

    using KdGeCurve3d::length;
    double length(double fromParam, double toParam,
                  double tol = KdGeContext::gTol.equalPoint()) const override;
    double paramAtLength(double datumParam, double length, bool forward = true,
                         double tol = KdGeContext::gTol.equalPoint()) const override;
    double nearestParam(const KdGePoint3d& point) const override;

    /// The same between two parameters that no break separates.
    double nearestParam(const KdGePoint3d& point, double from, double to) const;

protected:
    SmoothCurve() = default;

    /// What was worked out is not copied with a curve.
    SmoothCurve(const SmoothCurve& other) : KdGeCurve3d(other) {}

    SmoothCurve& operator=(const SmoothCurve& other);

    /// To be called by whatever changes the curve.
    void forgetLength() { lengthFromStart_.reset(); }

    void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                     std::vector<KdGePoint3d>& vertices) const override;

private:
    const ArcLength& lengthFromStart() const;
    ArcLength lengthOver(const std::vector<double>& breaks) const;

    /// From the start, below 0 before it.
    double distanceAt(double param) const;

    mutable std::unique_ptr<const ArcLength>
        lengthFromStart_; ///< of the interval, once it is asked for
};

} // namespace korra
