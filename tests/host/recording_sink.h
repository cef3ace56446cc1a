#pragma once

#include "blocks/draw_block.h"
#include "objects/object_access.h"

#include <memory>
#include <vector>

namespace tests {

/// Keeps what is drawn and how it looks, in the coordinates of the sink.
class RecordingSink : public korra::DrawSink {
public:
    struct Segment {
        KdGePoint3d start;
        KdGePoint3d end;
        korra::Traits traits;
    };

    struct Text : korra::TextRun {
        korra::Traits traits;
    };

    void beginEntity(KdDbObjectId entity, const korra::Traits& traits) override
    {
        entities.push_back(entity);
        traits_.push_back(traits);
    }

    void endEntity() override { traits_.pop_back(); }

    void segment(const KdGePoint3d& start, const KdGePoint3d& end) override
    {
        segments.push_back({transform() * start, transform() * end, traits_.back()});
    }

    void curve(const KdGeCurve3d& curve) override
    {
        curves.push_back(curve.clone());
        curves.back()->transformBy(transform());
    }

    void point(const KdGePoint3d&) override {}

    void text(const korra::TextRun& run) override
    {
        texts.push_back({run, traits_.back()});
        texts.back().frame = transform() * run.frame;
    }

    std::vector<KdDbObjectId> entities; ///< in the order of their drawing
    std::vector<Segment> segments;
    std::vector<std::unique_ptr<KdGeCurve3d>> curves;
    std::vector<Text> texts;

private:
    std::vector<korra::Traits> traits_ =
        std::vector<korra::Traits>(1); ///< of the entities that are being drawn
};

/// What an entity draws.
inline RecordingSink drawn(const KdDbEntity& entity)
{
    RecordingSink sink;
    entity.draw(sink);
    return sink;
}

/// What a block or a space shows.
inline RecordingSink drawnBlock(KdDbObjectId block)
{
    RecordingSink sink;
    korra::drawBlockContents(block, sink);
    return sink;
}

} // namespace tests
