#pragma once

#include "kd/ge/curve3d.h"

/// A circular arc or a full circle; the parameter is the angle.
///
/// Angles are radians, counter-clockwise about the normal from the reference vector. The arc runs
/// from its start angle up to its end angle, so a clockwise arc has the opposite normal. Points are
/// reckoned from the start point, not from the centre: a flat arc of huge radius stays exact.
class KdGeCircArc3d : public KdGeCurve3d {
public:
    /// The unit circle of the world xy plane.
    KdGeCircArc3d();

    /// A full circle; its reference vector follows the arbitrary-axis rule.
    KdGeCircArc3d(const KdGePoint3d& center, const KdGeVector3d& normal, double radius);

    /// An arc; equal angles, or a full turn between them, give a full circle.
    /// @param normal, refVec  of any length, at right angles
    /// @param endAngle        raised or lowered by full turns until it follows the start angle
    KdGeCircArc3d(const KdGePoint3d& center, const KdGeVector3d& normal, const KdGeVector3d& refVec,
                  double radius, double startAngle, double endAngle);

    /// The arc of a polyline segment; its start angle is 0.
    /// @param start, end  apart from each other
    /// @param bulge       tangent of a quarter of the swept angle, positive counter-clockwise about
    ///                    the normal; not 0
    static KdGeCircArc3d fromBulge(const KdGePoint3d& start, const KdGePoint3d& end, double bulge,
                                   const KdGeVector3d& normal = KdGeVector3d::kZAxis);

    const KdGePoint3d& center() const { return center_; }

    double radius() const { return radius_; }

    const KdGeVector3d& normal() const { return normal_; }

    KdGeVector3d refVec() const;

    double startAng() const { return startAngle_; }

    double endAng() const { return startAngle_ + sweep_; }

    /// The angle from start to end, above 0 and at most a full turn.
    double sweep() const { return sweep_; }

    bool isFullCircle() const;

    std::unique_ptr<KdGeCurve3d> clone() const override;

    double startParam() const override { return startAngle_; }

    double endParam() const override { return endAng(); }

    KdGePoint3d evalPoint(double angle) const override;
    KdGeVector3d firstDerivative(double angle) const override;
    using KdGeCurve3d::length;
    double length(double fromAngle, double toAngle,
                  double tol = KdGeContext::gTol.equalPoint()) const override;

    /// The datum itself where the radius is 0.
    double paramAtLength(double datumAngle, double length, bool forward = true,
                         double tol = KdGeContext::gTol.equalPoint()) const override;

    /// Some angle of the arc for a point to which all of it is equally near.
    double nearestParam(const KdGePoint3d& point) const override;

    /// Keeps the angles; a mirroring turns the normal over.
    bool transformBy(const KdGeMatrix3d& matrix) override;

    /// Turns the normal over; the start angle becomes minus the end angle.
    void reverse() override;
    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

protected:
    void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                     std::vector<KdGePoint3d>& vertices) const override;

private:
    KdGePoint3d center_;
    KdGePoint3d start_;
    KdGeVector3d normal_ = KdGeVector3d::kZAxis;
    KdGeVector3d radial_ = KdGeVector3d::kXAxis;  ///< unit, from the centre to the start
    KdGeVector3d tangent_ = KdGeVector3d::kYAxis; ///< unit, the direction of travel at the start
    double radius_ = 1.0;
    double startAngle_ = 0.0;
    double sweep_ = 0.0;
};
