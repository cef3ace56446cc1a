#pragma once

#include "kd/ge.h"

namespace korra {

class ObjectVisitor;

/// What a matrix makes of what is given in the coordinates of an entity's plane.
struct PlaneImage {
    /// The new angle of a direction in the plane, radians from its x axis.
    double angle(double radians) const;

    /// From the old plane's coordinates to those of the new one, its own height in them.
    KdGeMatrix3d map;

    /// Of lengths in the plane, above 0; the mean one, true for areas, where it scales unevenly.
    double scale = 1.0;
};

/// Where an entity lies that is drawn in one plane: the plane's normal, its elevation above the
/// origin of the block along the normal, and how thick the entity is, also along the normal.
///
/// The plane's coordinates have the normal as z axis and an x axis that follows from it
/// (`KdGeMatrix3d::planeToWorld`); the elevation is the z of what has no z of its own.
class PlanarPlace {
public:
    PlanarPlace() = default;

    /// @param normal  of any length above 0
    explicit PlanarPlace(const KdGeVector3d& normal) : normal_(normal.normal()) {}

    /// Unit, except where a file gave another length.
    const KdGeVector3d& normal() const { return normal_; }

    double elevation() const { return elevation_; }

    /// Below 0: against the normal. Drawing units.
    double thickness() const { return thickness_; }

    /// Turns the plane about the origin; elevation and thickness stay.
    void setNormal(const KdGeVector3d& normal) { normal_ = normal.normal(); }

    /// From the plane's coordinates to those of the owning block, and back.
    KdGeMatrix3d toBlock() const { return KdGeMatrix3d::planeToWorld(normal_); }

    KdGeMatrix3d toPlane() const { return KdGeMatrix3d::worldToPlane(normal_); }

    /// A point of the plane at its elevation, in the coordinates of the owning block.
    KdGePoint3d pointAt(const KdGePoint2d& point) const;

    /// The point of the plane at or below a point of the owning block.
    KdGePoint2d below(const KdGePoint3d& point) const;

    /// The direction at an angle from the plane's x axis, and back; radians.
    KdGeVector3d direction(double radians) const;
    double angleOf(const KdGeVector3d& direction) const;

    /// Moves the place by a matrix without perspective that can be inverted; it may mirror: what
    /// turned counter-clockwise about the old normal does so about the new one. Of a thickness that
    /// comes to lean only the part along the new normal is left.
    /// @return for what else is given in the plane's coordinates
    PlaneImage transformBy(const KdGeMatrix3d& matrix);

    /// Moves normal and thickness of an entity that stands in space: by any matrix, the thickness
    /// along the image of the normal.
    void sweepBy(const KdGeMatrix3d& matrix);

    /// The stored fields apart, for each kind of entity has them in an order of its own.
    void describeElevation(ObjectVisitor& visitor);
    void describeThickness(ObjectVisitor& visitor);
    void describeNormal(ObjectVisitor& visitor);

    /// The elevation as some files have it: z of a point whose x and y say nothing.
    void describeElevationPoint(ObjectVisitor& visitor);

private:
    KdGeVector3d normal_ = KdGeVector3d::kZAxis;
    double elevation_ = 0.0;
    double thickness_ = 0.0;
};

} // namespace korra
