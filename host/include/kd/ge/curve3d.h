#pragma once

#include "kd/ge/extents3d.h"
#include "kd/ge/matrix3d.h"

#include <memory>
#include <vector>

/// Root of the geometry that has a place in space.
class KdGeEntity3d {
public:
    virtual ~KdGeEntity3d() = default;

protected:
    KdGeEntity3d() = default;
    KdGeEntity3d(const KdGeEntity3d&) = default;
    KdGeEntity3d& operator=(const KdGeEntity3d&) = default;
};

/// A curve: a point for every parameter of an interval, in drawing units.
///
/// Parameters outside the interval are allowed; the curve, or its first or last piece, goes on
/// naturally there.
class KdGeCurve3d : public KdGeEntity3d {
public:
    virtual std::unique_ptr<KdGeCurve3d> clone() const = 0;

    /// The ends of the interval; infinite where a line has no end.
    virtual double startParam() const = 0;
    virtual double endParam() const = 0;

    /// True where the interval has both ends.
    bool isBounded() const;

    virtual KdGePoint3d evalPoint(double param) const = 0;

    /// The change of the point per unit of parameter.
    virtual KdGeVector3d firstDerivative(double param) const = 0;

    /// The arc length between two parameters, never negative.
    /// @param tol  largest error where the length has no closed form; lines and arcs are exact
    virtual double length(double fromParam, double toParam,
                          double tol = KdGeContext::gTol.equalPoint()) const = 0;

    /// The parameter at an arc length from a parameter.
    /// @param length   not negative
    /// @param forward  whether the parameter grows from the datum on
    virtual double paramAtLength(double datumParam, double length, bool forward = true,
                                 double tol = KdGeContext::gTol.equalPoint()) const = 0;

    /// The parameter, within the interval, of the point of the curve nearest to a point.
    virtual double nearestParam(const KdGePoint3d& point) const = 0;

    /// Transforms the curve.
    /// @return false, the curve unchanged, where the image is no curve of the same kind: an arc
    ///         that becomes an ellipse, or a perspective
    virtual bool transformBy(const KdGeMatrix3d& matrix) = 0;

    /// Turns the curve round: the same points from end to start.
    virtual void reverse() = 0;

    /// The exact box of the curve's image under a matrix without perspective.
    /// @return empty for a line without an end
    virtual KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const = 0;

    KdGeExtents3d extents() const { return extentsUnder(KdGeMatrix3d::kIdentity); }

    /// Points of the curve; NaN where a line has no end.
    KdGePoint3d startPoint() const { return evalPoint(startParam()); }

    KdGePoint3d endPoint() const { return evalPoint(endParam()); }

    /// @return false, the point untouched, where a line has no such end
    bool hasStartPoint(KdGePoint3d& point) const;
    bool hasEndPoint(KdGePoint3d& point) const;

    /// True where the curve ends at its start.
    bool isClosed(const KdGeTol& tol = KdGeContext::gTol) const;

    /// The length of the whole curve; infinite for a line without an end.
    double length() const { return length(startParam(), endParam()); }

    /// The parameter of a point on the curve, or of the nearest point for a point beside it.
    ///
    /// The start of a closed curve has the start's parameter, never the end's.
    double paramOf(const KdGePoint3d& point, const KdGeTol& tol = KdGeContext::gTol) const;

    KdGePoint3d closestPointTo(const KdGePoint3d& point) const
    {
        return evalPoint(nearestParam(point));
    }

    double distanceTo(const KdGePoint3d& point) const
    {
        return closestPointTo(point).distanceTo(point);
    }

    bool isOn(const KdGePoint3d& point, const KdGeTol& tol = KdGeContext::gTol) const
    {
        return distanceTo(point) <= tol.equalPoint();
    }

    /// Appends the vertices of a chain of chords that follows the curve's image under a matrix,
    /// from start to end.
    ///
    /// A straight piece gives one chord, an arc at most 32,768 a turn, however small the tolerance.
    /// Under a perspective the tolerance is a guide. A line without an end appends nothing.
    /// @param tolerance  largest distance between chain and image, in units of the image
    void flatten(const KdGeMatrix3d& matrix, double tolerance,
                 std::vector<KdGePoint3d>& vertices) const;

protected:
    friend class KdGeCompositeCurve3d;

    /// `flatten` of a bounded curve without its start point.
    virtual void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                             std::vector<KdGePoint3d>& vertices) const = 0;
};
