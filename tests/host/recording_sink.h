#pragma once

#include "blocks/draw_block.h"
#include "objects/object_access.h"

#include <memory>
#include <vector>

namespace tests {

/// Keeps what is drawn, in the coordinates of the sink.
class RecordingSink final : public korra::DrawSink {
public:
    RecordingSink() : DrawSink(korra::Looks::shown) {}

    struct Segment {
        KdGePoint3d start;
        KdGePoint3d end;
    };

    void segment(const KdGePoint3d& start, const KdGePoint3d& end) override
    {
        segments.push_back({transform() * start, transform() * end});
    }

    void curve(const KdGeCurve3d& curve) override
    {
        curves.push_back(curve.clone());
        curves.back()->transformBy(transform());
    }

    void point(const KdGePoint3d&) override {}

    void text(const korra::TextRun& run) override
    {
        texts.push_back(run);
        texts.back().frame = transform() * run.frame;
    }

    std::vector<Segment> segments;
    std::vector<std::unique_ptr<KdGeCurve3d>> curves;
    std::vector<korra::TextRun> texts;
};

/// What an entity draws.
inline RecordingSink drawn(const KdDbEntity& entity)
{
    RecordingSink sink;
    korra::ObjectAccess::draw(entity, sink);
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
