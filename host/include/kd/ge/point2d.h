#pragma once

#include "kd/ge/tol.h"

#include <cmath>

/// A direction with a length in a plane.
class KdGeVector2d {
public:
    constexpr KdGeVector2d() = default;

    constexpr KdGeVector2d(double xx, double yy) : x(xx), y(yy) {}

    static const KdGeVector2d kIdentity;
    static const KdGeVector2d kXAxis;
    static const KdGeVector2d kYAxis;

    constexpr KdGeVector2d operator+(const KdGeVector2d& v) const { return {x + v.x, y + v.y}; }

    constexpr KdGeVector2d operator-(const KdGeVector2d& v) const { return {x - v.x, y - v.y}; }

    constexpr KdGeVector2d operator-() const { return {-x, -y}; }

    constexpr KdGeVector2d operator*(double factor) const { return {x * factor, y * factor}; }

    constexpr KdGeVector2d operator/(double divisor) const { return {x / divisor, y / divisor}; }

    constexpr bool operator==(const KdGeVector2d&) const = default;

    double length() const { return std::hypot(x, y); }

    constexpr double dotProduct(const KdGeVector2d& v) const { return x * v.x + y * v.y; }

    /// This vector a quarter turn further, counter-clockwise.
    constexpr KdGeVector2d perpVector() const { return {-y, x}; }

    bool isZeroLength(const KdGeTol& tol = KdGeContext::gTol) const
    {
        return length() <= tol.equalVector();
    }

    /// The angle from the x axis, radians in [0, 2π).
    double angle() const;

    double x = 0.0;
    double y = 0.0;
};

inline constexpr KdGeVector2d KdGeVector2d::kIdentity(0.0, 0.0);
inline constexpr KdGeVector2d KdGeVector2d::kXAxis(1.0, 0.0);
inline constexpr KdGeVector2d KdGeVector2d::kYAxis(0.0, 1.0);

constexpr KdGeVector2d operator*(double factor, const KdGeVector2d& v)
{
    return v * factor;
}

/// A point of a plane.
class KdGePoint2d {
public:
    constexpr KdGePoint2d() = default;

    constexpr KdGePoint2d(double xx, double yy) : x(xx), y(yy) {}

    static const KdGePoint2d kOrigin;

    constexpr KdGePoint2d operator+(const KdGeVector2d& v) const { return {x + v.x, y + v.y}; }

    constexpr KdGePoint2d operator-(const KdGeVector2d& v) const { return {x - v.x, y - v.y}; }

    constexpr KdGeVector2d operator-(const KdGePoint2d& p) const { return {x - p.x, y - p.y}; }

    constexpr bool operator==(const KdGePoint2d&) const = default;

    /// The vector from the origin to the point.
    constexpr KdGeVector2d asVector() const { return {x, y}; }

    double distanceTo(const KdGePoint2d& p) const { return (*this - p).length(); }

    bool isEqualTo(const KdGePoint2d& p, const KdGeTol& tol = KdGeContext::gTol) const
    {
        return distanceTo(p) <= tol.equalPoint();
    }

    double x = 0.0;
    double y = 0.0;
};

inline constexpr KdGePoint2d KdGePoint2d::kOrigin(0.0, 0.0);
