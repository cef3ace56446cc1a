#pragma once

#include "kd/ge/point3d.h"

#include <algorithm>
#include <limits>

/// An axis-parallel box; empty until a point is added.
class KdGeExtents3d {
public:
    KdGeExtents3d() = default;

    bool isEmpty() const { return minimum_.x > maximum_.x; }

    /// The corners; beyond every point, the minimum above the maximum, while empty.
    const KdGePoint3d& minPoint() const { return minimum_; }

    const KdGePoint3d& maxPoint() const { return maximum_; }

    void addPoint(const KdGePoint3d& p)
    {
        minimum_.set(std::min(minimum_.x, p.x), std::min(minimum_.y, p.y),
                     std::min(minimum_.z, p.z));
        maximum_.set(std::max(maximum_.x, p.x), std::max(maximum_.y, p.y),
                     std::max(maximum_.z, p.z));
    }

    /// Grows the box by another; an empty one adds nothing.
    void addExt(const KdGeExtents3d& other)
    {
        if (!other.isEmpty()) {
            addPoint(other.minimum_);
            addPoint(other.maximum_);
        }
    }

    /// True where the boxes, each border included, come within a distance along every axis.
    bool meets(const KdGeExtents3d& other, double margin = 0.0) const
    {
        return minimum_.x - margin <= other.maximum_.x && other.minimum_.x - margin <= maximum_.x &&
               minimum_.y - margin <= other.maximum_.y && other.minimum_.y - margin <= maximum_.y &&
               minimum_.z - margin <= other.maximum_.z && other.minimum_.z - margin <= maximum_.z;
    }

    /// True for a box that would not grow this one; an empty one grows nothing.
    bool contains(const KdGeExtents3d& other) const
    {
        return minimum_.x <= other.minimum_.x && other.maximum_.x <= maximum_.x &&
               minimum_.y <= other.minimum_.y && other.maximum_.y <= maximum_.y &&
               minimum_.z <= other.minimum_.z && other.maximum_.z <= maximum_.z;
    }

    friend bool operator==(const KdGeExtents3d&, const KdGeExtents3d&) = default;

private:
    static constexpr double kBeyond = std::numeric_limits<double>::infinity();

    KdGePoint3d minimum_{kBeyond, kBeyond, kBeyond};
    KdGePoint3d maximum_{-kBeyond, -kBeyond, -kBeyond};
};
