#pragma once

#include "gi/draw_sink.h"

#include <memory>

namespace korra {

/// Collects what is drawn as curves: a line of text as the box around it, a point as a segment
/// without length, a composite as its pieces.
class CurveSink : public DrawSink {
public:
    using Curves = std::vector<std::unique_ptr<KdGeCurve3d>>;

    CurveSink() : DrawSink({.looks = false, .order = true, .hidden = false}) {}

    const Curves& curves() const { return curves_; }

    void segment(const KdGePoint3d& start, const KdGePoint3d& end) override;
    void curve(const KdGeCurve3d& curve) override;
    void point(const KdGePoint3d& point) override;
    void text(const TextRun& run) override;

private:
    Curves curves_;
};

} // namespace korra
