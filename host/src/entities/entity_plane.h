#pragma once

#include "kd/ge.h"

namespace korra {

/// True where a matrix scales every direction alike; it may mirror.
bool isSimilarity(const KdGeMatrix3d& matrix);

/// What a similarity makes of the entity coordinate system of a normal.
struct PlaneImage {
    PlaneImage(const KdGeVector3d& normal, const KdGeMatrix3d& matrix);

    /// The new angle of a direction in the plane.
    double angle(double radians) const;

    /// Unit; what turned counter-clockwise about the old normal does so about this one.
    KdGeVector3d newNormal;

    /// From the old entity coordinates to the new ones.
    KdGeMatrix3d map;

    double scale;
};

} // namespace korra
