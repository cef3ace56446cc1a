#pragma once

#include "kd/ge/linear3d.h"

/// An unbounded plane with axes of its own.
class KdGePlane : public KdGeEntity3d {
public:
    /// The world xy plane.
    KdGePlane() = default;

    /// The plane through a point; its x and y axes follow the arbitrary-axis rule.
    /// @param normal  of any length; a plane of the zero normal meets nothing
    KdGePlane(const KdGePoint3d& origin, const KdGeVector3d& normal);

    /// The plane through a point that two directions span, the first its x axis.
    KdGePlane(const KdGePoint3d& origin, const KdGeVector3d& uAxis, const KdGeVector3d& vAxis);

    const KdGePoint3d& pointOnPlane() const { return origin_; }

    /// Unit vectors at right angles.
    const KdGeVector3d& normal() const { return normal_; }

    const KdGeVector3d& xAxis() const { return xAxis_; }

    const KdGeVector3d& yAxis() const { return yAxis_; }

    void getCoordSystem(KdGePoint3d& origin, KdGeVector3d& xAxis, KdGeVector3d& yAxis) const;

    /// The distance to a point, positive on the side to which the normal points.
    double signedDistanceTo(const KdGePoint3d& point) const
    {
        return (point - origin_).dotProduct(normal_);
    }

    double distanceTo(const KdGePoint3d& point) const { return std::abs(signedDistanceTo(point)); }

    KdGePoint3d closestPointTo(const KdGePoint3d& point) const;

    /// Finds the one point where a linear entity meets the plane.
    /// @param point  written on success only
    /// @return false for a linear entity of zero length or parallel to the plane, also within it,
    ///         for a segment that ends before the plane, and where a coordinate is not finite
    bool intersectWith(const KdGeLinearEnt3d& linear, KdGePoint3d& point,
                       const KdGeTol& tol = KdGeContext::gTol) const;

private:
    KdGePoint3d origin_;
    KdGeVector3d normal_ = KdGeVector3d::kZAxis;
    KdGeVector3d xAxis_ = KdGeVector3d::kXAxis;
    KdGeVector3d yAxis_ = KdGeVector3d::kYAxis;
};
