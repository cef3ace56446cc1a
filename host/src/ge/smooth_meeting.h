#pragma once

#include "ge/curve_part.h"

namespace korra {

/// A point where two parts come together.
struct SmoothContact {
    double param = 0.0; ///< of the first part
    double reach = 0.0; ///< what lies so near is the same point
};

/// The points where parts of any kind come together within a distance; neither part is without an
/// end. Where they run along each other, of that length only some points.
std::vector<SmoothContact> smoothContacts(const CurvePart& first, const CurvePart& second,
                                          double tolerance);

} // namespace korra
