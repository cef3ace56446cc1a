#pragma once

#include "kd/ge.h"

#include <vector>

namespace korra {

/// Curves, none of them a composite, that need not be joined; null is not among them.
using CurveSet = std::vector<const KdGeCurve3d*>;

/// The pieces of a composite; any other curve alone.
CurveSet piecesOf(const KdGeCurve3d& curve);

/// The points that curves have in common with others, each once, in the order of the first ones.
/// @param reported  curves with the parameters of the first ones, whose points are given in their
///                  place: `first` itself, or what a projection made it from
std::vector<KdGePoint3d> commonPoints(const CurveSet& first, const CurveSet& second,
                                      const CurveSet& reported,
                                      const KdGeTol& tol = KdGeContext::gTol);

} // namespace korra
