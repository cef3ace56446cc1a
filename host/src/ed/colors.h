#pragma once

#include "kd/resbuf.h"

#include <optional>

namespace korra::ed {

/// Asks for a colour on the command line until the answer is one.
/// @param current  the index that Enter takes
/// @return the index, 0 to 256; nullopt when it is cancelled
std::optional<int> askColor(int current);

/// The list-processing function "korra_colordlg".
/// @param arguments  RTSHORT the index to begin with
/// @param result  one RTSHORT; untouched when it is cancelled
/// @return RTNORM; RTERROR for other arguments
int invokeColorDialog(const resbuf* arguments, resbuf** result);

} // namespace korra::ed
