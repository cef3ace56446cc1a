#pragma once

#include "kd/ge/circ_arc3d.h"
#include "kd/ge/curve2d.h"

/// A circular arc in a plane; angles are radians, counter-clockwise from the x axis.
class KdGeCircArc2d : public KdGeCurve2d {
public:
    /// The unit circle.
    KdGeCircArc2d() = default;

    /// The arc of a polyline segment.
    /// @param start, end  apart from each other
    /// @param bulge  tangent of a quarter of the swept angle, positive counter-clockwise; not 0
    static KdGeCircArc2d fromBulge(const KdGePoint2d& start, const KdGePoint2d& end, double bulge);

    KdGePoint2d center() const { return {arc_.center().x, arc_.center().y}; }

    double radius() const { return arc_.radius(); }

    bool isClockWise() const { return arc_.normal().z < 0.0; }

    /// In [0, 2π).
    double startAng() const { return startAngle_; }

    /// Above the start angle, below it for a clockwise arc.
    double endAng() const { return startAngle_ + (isClockWise() ? -arc_.sweep() : arc_.sweep()); }

    KORRA_OWN()
    KdGePoint2d pointAt(double part) const override;

private:
    KdGeCircArc3d arc_; ///< in the xy plane
    double startAngle_ = 0.0;
};
