#pragma once

#include <string>
#include <vector>

namespace korra::rx {

/// What kdrx_abort() does: record the text and return, or end the program with status 1.
void recordFatalStops(bool on);

/// The recorded texts, in order.
const std::vector<std::wstring>& recordedFatalStops();

/// Empties the record.
void forgetFatalStops();

} // namespace korra::rx
