#pragma once

#include <string>
#include <string_view>

namespace korra {

/// Replaces a file, or makes it: the contents are written to a new file beside it, to the disk, and
/// that is renamed over it.
/// @return empty when done; else what went wrong, the old file then untouched and the new one gone
std::string replaceFile(const std::string& path, std::string_view contents);

} // namespace korra
