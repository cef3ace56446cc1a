#pragma once

#include "ed/system_variable.h"

#include <vector>

namespace korra::ed {

/// The variables that are found out: view, tab, viewport, user coordinate system, extents and file
/// of the current document; the current colour as a text.
std::vector<SystemVariable> computedVariables();

} // namespace korra::ed
