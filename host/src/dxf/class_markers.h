#pragma once

#include "objects/contents.h"

#include <optional>
#include <string>

namespace korra {

/// What the class markers of a drawing begin with, as the first known ones in its file tell;
/// nullopt where the file has none.
std::optional<std::string> markerPrefix(const DatabaseContents& contents);

} // namespace korra
