#pragma once

#include "ed/system_variables.h"

/// The parts that the table of system variables is put together from.
namespace korra::ed {

/// What the host keeps for itself.
std::vector<SystemVariable> hostVariables();

/// What the drawing's header keeps.
std::vector<SystemVariable> drawingVariables();

/// Current layer, styles, linetype and colour.
std::vector<SystemVariable> currentRecordVariables();

/// View, tab, viewport, user coordinate system, extents and file of the current document.
std::vector<SystemVariable> viewVariables();

/// The current values of the dimension variables that are numbers.
std::vector<SystemVariable> numericDimensionVariables();

} // namespace korra::ed
