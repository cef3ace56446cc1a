#pragma once

#include "kd/db/color.h"
#include "kd/db/ids.h"
#include "kd/ge.h"

#include <array>
#include <string>
#include <vector>

/// The drawing interface: what entities draw themselves into. It knows geometry and ids, and
/// nothing of what a drawing is made of; the drawing tells it all that a device has to know.
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

/// How graphics look: what an entity says of itself, by layer and by block resolved.
struct Traits {
    KdDbObjectId layer; ///< inside a block, of entities on layer "0", that of the reference
    KdCmColor color;
    KdDbObjectId linetype;
    KdDb::LineWeight lineWeight = KdDb::kLnWtByLwDefault;
    bool filled = false; ///< the inside of what is drawn is filled, not its outline alone
};

/// What a block is drawn as.
enum class BlockRole {
    reference, ///< an insertion, whose contents are entities of their own
    dimension  ///< the graphics of a dimension, which nobody takes for anything but the dimension
};

/// What an object of its own is to the entity that draws it.
enum class PartRole { vertex, attribute };

/// What a device has to be given.
struct DrawNeeds {
    bool looks = true;   ///< every trait; else the layers alone
    bool order = true;   ///< what is drawn last lies on top; else anything may come first
    bool hidden = false; ///< also what layers hide, and what entities themselves do
};

/// A device: a picture, a pick box, extents, a recording.
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

    const DrawNeeds& needs() const { return needs_; }

    /// False where nothing in a box matters to the device, so that it need not be drawn.
    /// @param box  in the coordinates of the current entity
    virtual bool wants(const KdGeExtents3d& box)
    {
        static_cast<void>(box);
        return true;
    }

    /// What follows, up to the end of the entity, belongs to an entity of a drawing. Entities nest
    /// where an entity shows a block.
    virtual void beginEntity(KdDbObjectId entity, const Traits& traits)
    {
        static_cast<void>(entity);
        static_cast<void>(traits);
    }

    virtual void endEntity() {}

    /// What follows belongs to this graphics marker of the entity (1, 2, …).
    virtual void marker(std::int64_t marker) { static_cast<void>(marker); }

    /// What follows was drawn by a part of the entity that is an object of its own.
    virtual void beginPart(KdDbObjectId part, PartRole role)
    {
        static_cast<void>(part);
        static_cast<void>(role);
    }

    virtual void endPart() {}

    /// Begins the contents of a block that an entity shows.
    /// @param transform  from the block's coordinates to those the owner draws in
    /// @param owner  the entity, @param surroundings  how it looks: what "by block" means inside
    void beginBlock(KdDbObjectId owner, BlockRole role, const KdGeMatrix3d& transform,
                    const Traits& surroundings);
    void endBlock();

    /// How many blocks are begun and not ended.
    std::size_t depth() const { return surroundings_.size(); }

    /// How the entity looks that shows the current block; null outside every block.
    const Traits* surroundings() const
    {
        return surroundings_.empty() ? nullptr : &surroundings_.back();
    }

    /// From the coordinates of the current entity to those of the sink.
    const KdGeMatrix3d& transform() const { return transforms_.back(); }

protected:
    explicit DrawSink(const DrawNeeds& needs = {}) : transforms_{KdGeMatrix3d()}, needs_(needs) {}

    /// Called before the transform of a block that begins is taken in, and after it is taken back.
    virtual void blockBegins(KdDbObjectId owner, BlockRole role)
    {
        static_cast<void>(owner);
        static_cast<void>(role);
    }

    virtual void blockEnded() {}

    /// Called whenever transform() has changed.
    virtual void transformChanged() {}

    std::vector<KdGeMatrix3d> transforms_;

private:
    std::vector<Traits> surroundings_;
    DrawNeeds needs_;
};

} // namespace korra
