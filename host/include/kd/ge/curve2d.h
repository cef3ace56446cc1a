#pragma once

#include "kd/array.h"
#include "kd/ge/point2d.h"
#include "kd/own/own.h"

/// A curve in a plane: a point for every parameter of an interval.
class KdGeCurve2d {
public:
    virtual ~KdGeCurve2d() = default;

    /// Points from the start to the end of the curve, both included, at equal steps of the
    /// parameter.
    /// @param count   at least 2; below that there are none
    /// @param points  cleared first
    void getSamplePoints(int count, KdArray<KdGePoint2d>& points) const;

protected:
    KdGeCurve2d() = default;
    KdGeCurve2d(const KdGeCurve2d&) = default;
    KdGeCurve2d& operator=(const KdGeCurve2d&) = default;

    KORRA_OWN()
    /// @param part  of the interval, 0 at the start and 1 at the end
    virtual KdGePoint2d pointAt(double part) const = 0;
};
