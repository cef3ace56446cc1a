#pragma once

#include "gi/draw_sink.h"

namespace korra {

/// Collects the exact box of what is drawn.
class ExtentsSink : public DrawSink {
public:
    /// @param frame  from the coordinates that are drawn in to those of the box
    explicit ExtentsSink(const KdGeMatrix3d& frame = KdGeMatrix3d::kIdentity);

    /// False for a box that lies inside what was drawn already.
    bool wants(const KdGeExtents3d& box) override;

    /// Empty while nothing was drawn.
    const KdGeExtents3d& extents() const { return extents_; }

    void segment(const KdGePoint3d& start, const KdGePoint3d& end) override;
    void curve(const KdGeCurve3d& curve) override;
    void point(const KdGePoint3d& point) override;
    void text(const TextRun& run) override;

protected:
    explicit ExtentsSink(const DrawNeeds& needs) : DrawSink(needs) {}

    KdGeExtents3d extents_;
};

} // namespace korra
