#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace korra {

/// Gives up to `size` further bytes of a file; fewer than asked for, none at the end.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

/// All that a file gives. Of one whose size nobody knows and that has no line ends, as it could go
/// on for ever, only so much as a reader needs to refuse it.
/// @param size  what is expected; 0 when nobody knows
/// @throw DrawingError where such a file does not end; what `read` throws
std::string wholeText(const ReadBytes& read, std::size_t size);

} // namespace korra
