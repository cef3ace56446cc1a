#pragma once

#include "ge/smooth_curve.h"

namespace korra {

/// An arc of an ellipse or a full one: center + u cos t + v sin t, with u and v conjugate half
/// diameters, so that every affine image of one is another with the same parameters.
class EllipticArc final : public SmoothCurve {
public:
    /// @param endParam  above `startParam` by a full turn at most
    EllipticArc(const KdGePoint3d& center, const KdGeVector3d& u, const KdGeVector3d& v,
                double startParam, double endParam)
        : center_(center), u_(u), v_(v), start_(startParam), end_(endParam)
    {
    }

    std::unique_ptr<KdGeCurve3d> clone() const override;

    double startParam() const override { return start_; }

    double endParam() const override { return end_; }

    KdGePoint3d evalPoint(double param) const override;
    KdGeVector3d firstDerivative(double param) const override;
    KdGeVector3d secondDerivative(double param) const override;

    /// The ends, and between them where the curve meets its axes: an ellipse that is seen edge-on
    /// turns back there.
    std::vector<double> breaks() const override;
    KdGeExtents3d boundOf(double from, double to) const override;
    double sagOf(double from, double to) const override;
    bool transformBy(const KdGeMatrix3d& matrix) override;

    /// The start parameter becomes minus the end parameter.
    void reverse() override;
    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

private:
    KdGePoint3d center_;
    KdGeVector3d u_;
    KdGeVector3d v_;
    double start_;
    double end_;
};

} // namespace korra
