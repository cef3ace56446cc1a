#pragma once

#include "gi/draw_sink.h"

namespace korra {

/// Collects the exact box of what is drawn.
class ExtentsSink final : public DrawSink {
public:
    /// @param frame  from the coordinates that are drawn in to those of the box
    explicit ExtentsSink(const KdGeMatrix3d& frame = KdGeMatrix3d::kIdentity);

    /// Empty while nothing was drawn.
    const KdGeExtents3d& extents() const { return extents_; }

    void segment(const KdGePoint3d& start, const KdGePoint3d& end) override;
    void curve(const KdGeCurve3d& curve) override;
    void point(const KdGePoint3d& point) override;
    void text(const TextRun& run) override;

private:
    KdGeExtents3d extents_;
};

} // namespace korra
