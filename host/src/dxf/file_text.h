#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace korra {

/// Gives up to `size` further bytes of a file; fewer than asked for, none at the end.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

/// All that a file gives.
/// @param size  what is expected; 0 when nobody knows
/// @throw DrawingError where a file of unknown size does not end; what `read` throws
std::string wholeText(const ReadBytes& read, std::size_t size);

} // namespace korra
