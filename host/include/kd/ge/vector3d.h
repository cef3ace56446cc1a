#pragma once

#include "kd/ge/tol.h"

#include <cmath>

class KdGeMatrix3d;
class KdGePlane;

/// A direction with a length in space.
class KdGeVector3d {
public:
    constexpr KdGeVector3d() = default;

    constexpr KdGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const KdGeVector3d kIdentity; ///< the zero vector
    static const KdGeVector3d kXAxis;
    static const KdGeVector3d kYAxis;
    static const KdGeVector3d kZAxis;

    constexpr KdGeVector3d operator+(const KdGeVector3d& v) const
    {
        return {x + v.x, y + v.y, z + v.z};
    }

    constexpr KdGeVector3d operator-(const KdGeVector3d& v) const
    {
        return {x - v.x, y - v.y, z - v.z};
    }

    constexpr KdGeVector3d operator-() const { return {-x, -y, -z}; }

    constexpr KdGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }

    constexpr KdGeVector3d operator/(double s) const { return {x / s, y / s, z / s}; }

    constexpr KdGeVector3d& operator+=(const KdGeVector3d& v) { return *this = *this + v; }

    constexpr KdGeVector3d& operator-=(const KdGeVector3d& v) { return *this = *this - v; }

    constexpr KdGeVector3d& operator*=(double s) { return *this = *this * s; }

    constexpr KdGeVector3d& operator/=(double s) { return *this = *this / s; }

    /// Exact equality; `isEqualTo` compares under a tolerance.
    constexpr bool operator==(const KdGeVector3d&) const = default;

    /// Coordinate 0, 1 or 2.
    constexpr double operator[](unsigned int axis) const
    {
        return axis == 0 ? x : axis == 1 ? y : z;
    }

    constexpr double& operator[](unsigned int axis) { return axis == 0 ? x : axis == 1 ? y : z; }

    constexpr KdGeVector3d& set(double xx, double yy, double zz)
    {
        return *this = KdGeVector3d(xx, yy, zz);
    }

    constexpr KdGeVector3d& negate() { return *this = -*this; }

    constexpr double dotProduct(const KdGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }

    /// This × v.
    constexpr KdGeVector3d crossProduct(const KdGeVector3d& v) const
    {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }

    constexpr double lengthSqrd() const { return dotProduct(*this); }

    double length() const { return std::sqrt(lengthSqrd()); }

    /// True for a vector not longer than the vector tolerance.
    bool isZeroLength(const KdGeTol& tol = KdGeContext::gTol) const
    {
        return length() <= tol.equalVector();
    }

    /// Makes the length 1; a vector of zero length under the tolerance stays as it is.
    KdGeVector3d& normalize(const KdGeTol& tol = KdGeContext::gTol)
    {
        return isZeroLength(tol) ? *this : *this /= length();
    }

    /// The vector `normalize` would leave.
    KdGeVector3d normal(const KdGeTol& tol = KdGeContext::gTol) const
    {
        return KdGeVector3d(*this).normalize(tol);
    }

    bool isEqualTo(const KdGeVector3d& v, const KdGeTol& tol = KdGeContext::gTol) const
    {
        return (*this - v).length() <= tol.equalVector();
    }

    /// True for directions that are equal or opposite; false where either is of zero length.
    bool isParallelTo(const KdGeVector3d& v, const KdGeTol& tol = KdGeContext::gTol) const;

    /// The angle between two directions, radians in [0, π]; 0 where either is the zero vector.
    double angleTo(const KdGeVector3d& v) const;

    /// The angle to a direction, counter-clockwise seen against `reference`, radians in [0, 2π).
    double angleTo(const KdGeVector3d& v, const KdGeVector3d& reference) const;

    /// The angle of this vector's projection from the plane's own x axis, radians in [0, 2π),
    /// counter-clockwise about the plane's normal; 0 for a vector along the normal.
    double angleOnPlane(const KdGePlane& plane) const;

    /// A unit vector at a right angle: the x axis of the arbitrary-axis rule for this direction.
    /// @return the zero vector for the zero vector
    KdGeVector3d perpVector() const;

    /// Replaces the vector by its image under the linear part of a matrix.
    KdGeVector3d& transformBy(const KdGeMatrix3d& matrix);

    /// Turns the vector about an axis; a zero axis turns nothing.
    /// @param angle  radians, counter-clockwise seen against the axis
    KdGeVector3d& rotateBy(double angle, const KdGeVector3d& axis);

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline constexpr KdGeVector3d KdGeVector3d::kIdentity(0.0, 0.0, 0.0);
inline constexpr KdGeVector3d KdGeVector3d::kXAxis(1.0, 0.0, 0.0);
inline constexpr KdGeVector3d KdGeVector3d::kYAxis(0.0, 1.0, 0.0);
inline constexpr KdGeVector3d KdGeVector3d::kZAxis(0.0, 0.0, 1.0);

constexpr KdGeVector3d operator*(double s, const KdGeVector3d& v)
{
    return v * s;
}
