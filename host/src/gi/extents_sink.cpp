#include "gi/extents_sink.h"

#include "ge/box_image.h"

namespace korra {

ExtentsSink::ExtentsSink(const KdGeMatrix3d& frame)
    : DrawSink({.looks = false, .order = false, .hidden = false})
{
    transforms_.back() = frame;
}

bool ExtentsSink::wants(const KdGeExtents3d& box)
{
    return !extents_.contains(imageOf(box, transform()));
}

void ExtentsSink::segment(const KdGePoint3d& start, const KdGePoint3d& end)
{
    extents_.addPoint(transform() * start);
    extents_.addPoint(transform() * end);
}

void ExtentsSink::curve(const KdGeCurve3d& curve)
{
    extents_.addExt(curve.extentsUnder(transform()));
}

void ExtentsSink::point(const KdGePoint3d& point)
{
    extents_.addPoint(transform() * point);
}

void ExtentsSink::text(const TextRun& run)
{
    for (const KdGePoint3d& corner : run.corners())
        extents_.addPoint(transform() * corner);
}

} // namespace korra
