#pragma once

#include "kd/ge/tol.h"

#include <cmath>

/// Scale factors along the three axes.
class KdGeScale3d {
public:
    constexpr KdGeScale3d() = default;

    constexpr explicit KdGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}

    constexpr KdGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}

    static const KdGeScale3d kIdentity;

    constexpr bool operator==(const KdGeScale3d&) const = default;

    bool isEqualTo(const KdGeScale3d& other, const KdGeTol& tol = KdGeContext::gTol) const
    {
        return std::hypot(sx - other.sx, sy - other.sy, sz - other.sz) <= tol.equalVector();
    }

    double sx = 1.0;
    double sy = 1.0;
    double sz = 1.0;
};

inline constexpr KdGeScale3d KdGeScale3d::kIdentity(1.0, 1.0, 1.0);
