#pragma once

#include "gi/draw_sink.h"

#include <optional>
#include <vector>

namespace korra {

/// A piece of graphics under a pick box.
struct PickHit {
    /// The innermost entity: of an old-style polyline the vertex that begins the segment, of a
    /// dimension the dimension itself, of a text of a block reference's own its attribute.
    KdDbObjectId entity;

    /// The part of the entity that was hit, counted from 1.
    std::int64_t marker = 1;

    /// The block references around the entity, innermost first; empty at the top level. An
    /// attribute is contained in its reference, a vertex in nothing but what contains its polyline.
    std::vector<KdDbObjectId> containers;

    /// From the coordinates that the entity is stored in to those of the block that was drawn; an
    /// attribute is stored in the coordinates of the block around its reference.
    KdGeMatrix3d transform;

    /// Pixels from the pick point to the nearest point of the image; 0 inside the box of a text.
    double distance = 0.0;
};

/// Finds what lies under a pick box: draw a block (drawBlockContents) into it, then ask.
///
/// A piece counts when its image meets the closed square of `reach` pixels each way about the pick
/// point: a curve by its true image, a text by its box, a point by itself. Nothing is opened, and
/// entities far from the box cost next to nothing.
class PickSink : public DrawSink {
public:
    enum class Keep {
        nearest, ///< only the nearest piece; of equally near ones the one drawn last
        all      ///< every piece, in drawing order (object snap)
    };

    /// @param toPixels  from the coordinates of the drawn block to pixels in x and y; through a
    ///                  perspective only what lies before the eye is found
    /// @param pick  pixels
    /// @param reach  pixels, not negative
    PickSink(const KdGeMatrix3d& toPixels, const KdGePoint2d& pick, double reach,
             Keep keep = Keep::nearest);

    /// What was hit: with Keep::nearest at most one.
    const std::vector<PickHit>& hits() const { return hits_; }

    /// False for a box whose image is nowhere near the pick box.
    bool wants(const KdGeExtents3d& box) override;

    void segment(const KdGePoint3d& start, const KdGePoint3d& end) override;
    void curve(const KdGeCurve3d& curve) override;
    void point(const KdGePoint3d& point) override;
    void text(const TextRun& run) override;

    void beginEntity(KdDbObjectId entity, const Traits& traits) override;
    void endEntity() override;

    void marker(std::int64_t marker) override { marker_ = marker; }

    void beginPart(KdDbObjectId part, PartRole role) override;
    void endPart() override;

private:
    /// A point relative to the pick point, in pixels.
    struct Pixel {
        double x = 0.0;
        double y = 0.0;
    };

    void blockBegins(KdDbObjectId owner, BlockRole role) override;
    void blockEnded() override;
    void transformChanged() override;

    /// How far before the eye a point is, in focal lengths; 1 everywhere without perspective.
    double depth(const KdGePoint3d& point) const;
    bool isSeen(const KdGePoint3d& point) const;
    Pixel project(const KdGePoint3d& point) const;

    /// The distance of a segment that meets the box of `reach`; none for one that does not.
    static std::optional<double> distanceUnderBox(const Pixel& a, const Pixel& b, double reach);

    /// The distance of what is seen of a segment of the current entity; none where the box meets
    /// none of it.
    std::optional<double> segmentDistance(KdGePoint3d start, KdGePoint3d end, double reach) const;

    /// The distance of a curve, its image replaced by chords; none where the box meets none of
    /// them.
    std::optional<double> lineDistance(const KdGeLinearEnt3d& line) const;
    std::optional<double> chainDistance(const KdGeCurve3d& curve, double tolerance, double reach);

    /// How many pixels a unit along the curve can show as, near the pick box; for a perspective.
    double magnification(const KdGeCurve3d& curve) const;

    /// The image of a box through a perspective; empty behind the eye, none where only a part
    /// lies behind it.
    std::optional<KdGeExtents3d> imageInPerspective(const KdGeExtents3d& box) const;

    /// True for an image that is nowhere near the pick box.
    static bool isBeside(const KdGeExtents3d& image, double reach);

    void addHit(double distance);
    PickHit hitHere(double distance) const;
    static bool isSamePiece(const PickHit& left, const PickHit& right);

    KdGeMatrix3d toPixels_; ///< the pick point is the origin
    KdGeMatrix3d image_;    ///< from the current entity's coordinates
    bool perspective_ = false;
    double reach_;
    Keep keep_;

    /// A block that is being drawn.
    struct Shown {
        KdDbObjectId owner;
        BlockRole role;
        KdGeMatrix3d transform; ///< of the owner
    };

    std::vector<KdDbObjectId> entities_; ///< that are being drawn, outermost first
    KdDbObjectId part_;
    PartRole partRole_ = PartRole::vertex;
    std::int64_t marker_ = 1;
    std::vector<Shown> shown_; ///< outermost first
    std::vector<PickHit> hits_;
    std::vector<KdGePoint3d> chain_; ///< kept between curves: no allocation for each
};

} // namespace korra
