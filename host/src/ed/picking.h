#pragma once

#include "sinks/pick_sink.h"

/// What lies under the pick box.
namespace korra::ed {

/// Pieces of graphics under the pick box, in one block.
struct PickedPieces {
    std::vector<PickHit> hits;
    KdDbObjectId viewport;     ///< the floating viewport that they were seen through; else null
    KdGeMatrix3d spaceFromHit; ///< from the world of the block to that of the current space

    bool isEmpty() const { return hits.empty(); }
};

/// Where a pick may look.
enum class PickDepth {
    currentSpace,    ///< in the current space alone
    throughViewports ///< from a sheet also through the viewport under the point
};

/// PICKBOX: how far the pick box reaches each way, pixels.
double pickReach();

/// What lies PICKBOX pixels each way about a point in user coordinates. On a sheet its own entities
/// come first; with none of them there, what the last viewport under the point shows.
PickedPieces piecesAt(const KdDbDatabase& database, const KdGePoint3d& userPoint,
                      PickSink::Keep keep, PickDepth depth);

/// The entity of the block itself that a piece belongs to: the outermost reference, the polyline of
/// a vertex, else the entity.
KdDbObjectId topLevelEntity(const PickHit& hit);

} // namespace korra::ed
