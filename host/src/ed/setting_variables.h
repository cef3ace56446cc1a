#pragma once

#include "ed/system_variable.h"

#include <vector>

namespace korra::ed {

/// The variables that are settings of the host or of the drawing, as they are; current layer,
/// styles and linetype by their names.
std::vector<SystemVariable> settingVariables();

} // namespace korra::ed
