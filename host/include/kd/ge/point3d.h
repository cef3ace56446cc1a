#pragma once

#include "kd/ge/vector3d.h"

/// A point of space.
class KdGePoint3d {
public:
    constexpr KdGePoint3d() = default;

    constexpr KdGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const KdGePoint3d kOrigin;

    constexpr KdGePoint3d operator+(const KdGeVector3d& v) const
    {
        return {x + v.x, y + v.y, z + v.z};
    }

    constexpr KdGePoint3d operator-(const KdGeVector3d& v) const
    {
        return {x - v.x, y - v.y, z - v.z};
    }

    constexpr KdGeVector3d operator-(const KdGePoint3d& p) const
    {
        return {x - p.x, y - p.y, z - p.z};
    }

    constexpr KdGePoint3d operator*(double s) const { return {x * s, y * s, z * s}; }

    constexpr KdGePoint3d operator/(double s) const { return {x / s, y / s, z / s}; }

    constexpr KdGePoint3d& operator+=(const KdGeVector3d& v) { return *this = *this + v; }

    constexpr KdGePoint3d& operator-=(const KdGeVector3d& v) { return *this = *this - v; }

    /// Exact equality; `isEqualTo` compares under a tolerance.
    constexpr bool operator==(const KdGePoint3d&) const = default;

    /// Coordinate 0, 1 or 2.
    constexpr double operator[](unsigned int axis) const
    {
        return axis == 0 ? x : axis == 1 ? y : z;
    }

    constexpr double& operator[](unsigned int axis) { return axis == 0 ? x : axis == 1 ? y : z; }

    constexpr KdGePoint3d& set(double xx, double yy, double zz)
    {
        return *this = KdGePoint3d(xx, yy, zz);
    }

    /// The vector from the origin to the point.
    constexpr KdGeVector3d asVector() const { return {x, y, z}; }

    double distanceTo(const KdGePoint3d& p) const { return (*this - p).length(); }

    bool isEqualTo(const KdGePoint3d& p, const KdGeTol& tol = KdGeContext::gTol) const
    {
        return distanceTo(p) <= tol.equalPoint();
    }

    /// Replaces the point by its image under a matrix, divided by the fourth coordinate where that
    /// is neither 0 nor 1.
    KdGePoint3d& transformBy(const KdGeMatrix3d& matrix);

    /// Turns the point about the axis through a point; a zero axis turns nothing.
    /// @param angle  radians, counter-clockwise seen against the axis
    KdGePoint3d& rotateBy(double angle, const KdGeVector3d& axis,
                          const KdGePoint3d& about = kOrigin);

    /// Moves the point to `factor` times its distance from a point.
    constexpr KdGePoint3d& scaleBy(double factor, const KdGePoint3d& about = kOrigin)
    {
        return *this = about + (*this - about) * factor;
    }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline constexpr KdGePoint3d KdGePoint3d::kOrigin(0.0, 0.0, 0.0);
