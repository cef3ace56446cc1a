#pragma once

#include "kd/db.h"

#include <array>
#include <string>
#include <vector>

namespace korra {

/// A line of text ready to be shown: set in a style, measured, placed.
struct TextRun {
    std::wstring text;
    KdDbObjectId style;
    double height = 0.0; ///< of capitals, drawing units
    double width = 0.0;  ///< advance of the whole line, drawing units

    /// Text coordinates (x along the base line from the left end, y up, drawing units) to the
    /// coordinates of the entity's block; slanting and width factor are in it.
    KdGeMatrix3d frame;

    /// Corners of the box from the base line to the height: bottom left, bottom right, top right,
    /// top left, in the coordinates of the entity's block.
    std::array<KdGePoint3d, 4> corners() const;
};

/// What an entity draws itself into: a picture, a pick box, extents, a recording.
///
/// A composed transform maps the coordinates that the current entity draws in to those that the
/// sink was set up for: outermost block transform first.
class DrawSink {
public:
    virtual ~DrawSink() = default;

    virtual void segment(const KdGePoint3d& start, const KdGePoint3d& end) = 0;
    virtual void curve(const KdGeCurve3d& curve) = 0;
    virtual void point(const KdGePoint3d& point) = 0;
    virtual void text(const TextRun& run) = 0;

    /// What follows belongs to this graphics marker of the entity (1, 2, …).
    virtual void marker(std::int64_t marker) { static_cast<void>(marker); }

    /// What follows was drawn by a part of the entity that is an object of its own (a vertex, an
    /// attribute); null ends it.
    virtual void part(const KdDbEntity* part) { static_cast<void>(part); }

    /// Draws one entity of a block, unless its layer or itself hides it.
    virtual void entity(const KdDbEntity& entity);

    /// Draws the entities of a block, in drawing order, as part of `owner`; nothing below a hundred
    /// nested blocks.
    /// @param transform  from the block's coordinates to those `owner` draws in
    virtual void block(const KdDbEntity& owner, KdDbObjectId block, const KdGeMatrix3d& transform);

    /// From the coordinates of the current entity to those of the sink.
    const KdGeMatrix3d& transform() const { return transforms_.back(); }

    /// True when its layer or the entity itself keeps it from being seen where it would be drawn
    /// now.
    ///
    /// A frozen layer hides everything on it, a layer that is off the entities on it but not what a
    /// block reference on it shows from other layers. Layer "0" inside a block is the layer of the
    /// reference. A template of an attribute is seen only outside references, unless constant.
    bool isHidden(const KdDbEntity& entity) const;

protected:
    DrawSink() : transforms_{KdGeMatrix3d()} {}

    /// Called whenever transform() has changed.
    virtual void transformChanged() {}

    std::vector<KdGeMatrix3d> transforms_;

private:
    KdDbObjectId effectiveLayer(const KdDbEntity& entity) const;

    std::vector<KdDbObjectId> inheritedLayers_; ///< of the references around the current entity
};

/// Draws the entities of a block (model space, a sheet) in drawing order into a sink; nothing for
/// an id that is no block.
void drawBlockContents(KdDbObjectId block, DrawSink& sink);

} // namespace korra
