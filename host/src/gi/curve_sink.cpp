#include "gi/curve_sink.h"

#include "ge/curve_image.h"

namespace korra {

void CurveSink::segment(const KdGePoint3d& start, const KdGePoint3d& end)
{
    curve(KdGeLineSeg3d(start, end));
}

void CurveSink::curve(const KdGeCurve3d& curve)
{
    if (const auto* const composite = dynamic_cast<const KdGeCompositeCurve3d*>(&curve)) {
        for (int i = 0; i < composite->numPieces(); ++i)
            this->curve(composite->piece(i));
        return;
    }
    if (auto image = imageOf(curve, transform()))
        curves_.push_back(std::move(image));
}

void CurveSink::point(const KdGePoint3d& point)
{
    segment(point, point);
}

void CurveSink::text(const TextRun& run)
{
    const auto corners = run.corners();
    for (std::size_t i = 0; i < corners.size(); ++i)
        segment(corners[i], corners[(i + 1) % corners.size()]);
}

} // namespace korra
