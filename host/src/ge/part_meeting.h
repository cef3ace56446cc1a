#pragma once

#include "ge/curve_part.h"

#include <compare>

namespace korra {

/// Where a point lies along a curve.
struct CurvePlace {
    std::size_t piece = 0;
    double param = 0.0; ///< of the piece

    auto operator<=>(const CurvePlace&) const = default;
};

/// A common point of two curves.
struct Contact {
    CurvePlace place; ///< on the first curve
    KdGePoint3d point;
    double reach = 0.0; ///< another point within it is the same, where it is no better known
};

/// What of the first curve the second runs along.
struct CommonRun {
    CurvePlace from;
    CurvePlace to;
};

struct Meetings {
    std::vector<Contact> contacts;
    std::vector<CommonRun> runs; ///< within one part each; their ends are contacts
};

/// Finds what two parts have in common.
void meet(const CurvePart& first, const CurvePart& second, const KdGeTol& tol, Meetings& found);

} // namespace korra
