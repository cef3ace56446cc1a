#include "gi/draw_sink.h"

namespace korra {

std::array<KdGePoint3d, 4> TextRun::corners() const
{
    return {frame * KdGePoint3d(0.0, 0.0, 0.0), frame * KdGePoint3d(width, 0.0, 0.0),
            frame * KdGePoint3d(width, height, 0.0), frame * KdGePoint3d(0.0, height, 0.0)};
}

void DrawSink::beginBlock(KdDbObjectId owner, BlockRole role, const KdGeMatrix3d& transform,
                          const Traits& surroundings)
{
    blockBegins(owner, role);
    surroundings_.push_back(surroundings);
    transforms_.push_back(transforms_.back() * transform);
    transformChanged();
}

void DrawSink::endBlock()
{
    transforms_.pop_back();
    surroundings_.pop_back();
    transformChanged();
    blockEnded();
}

} // namespace korra
