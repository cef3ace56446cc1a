#pragma once

#include "kd/ge.h"
#include "kd/own/planar_place.h"

#include <array>
#include <cstddef>

class KdDbEntity;

namespace korra {

class DrawSink;
class ObjectVisitor;

/// The corners of an entity with straight sides; of a triangle the last two are one.
class Corners {
public:
    using Points = std::array<KdGePoint3d, 4>;

    /// The places of the corners in the order in which the sides go round.
    using Order = std::array<std::size_t, 4>;

    Corners() = default;

    explicit Corners(const Points& points) : points_(points) {}

    const Points& points() const { return points_; }

    void transformBy(const KdGeMatrix3d& matrix);
    void describe(ObjectVisitor& visitor);

private:
    Points points_;
};

/// Draws the sides between corners, markers from 1 on. @param hidden  a bit for each side
void drawSides(const Corners::Points& corners, const Corners::Order& order, int hidden,
               DrawSink& sink);

/// A line that shows the side of a marker.
KdDbEntity* newSide(const Corners::Points& corners, const Corners::Order& order, int marker);

/// A filled area with four corners in a plane, as solids and traces have it: the sides go from the
/// first corner over the second and the fourth to the third.
class FlatArea {
public:
    static constexpr Corners::Order kOrder = {0, 1, 3, 2};

    FlatArea() = default;

    explicit FlatArea(const Corners::Points& points) : corners_(points) {}

    const PlanarPlace& place() const { return place_; }

    /// The corners in the coordinates of the owning block.
    Corners::Points points() const;

    void transformBy(const KdGeMatrix3d& matrix);
    void describe(ObjectVisitor& visitor);

private:
    Corners corners_; ///< in the coordinates of the plane
    PlanarPlace place_;
};

} // namespace korra
