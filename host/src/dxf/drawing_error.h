#pragma once

#include <cstddef>
#include <string>

namespace korra {

/// What keeps a file from being a whole drawing; the reader's parts throw it, its entry catches it.
struct DrawingError {
    std::size_t line; ///< counted from 1; 0 where no line is to blame
    std::string what;
};

} // namespace korra
