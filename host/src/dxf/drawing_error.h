#pragma once

#include <cstddef>
#include <string>

namespace korra {

/// What keeps a file from being a whole drawing, or a drawing from being a file that can be read
/// again; the parts of reader and writer throw it, their entries catch it.
struct DrawingError {
    std::size_t line; ///< counted from 1; 0 where no line is to blame
    std::string what;
};

/// Writes a part of a drawing; an error of that then begins with the part's name.
template <class Name, class Write>
auto writtenAs(Name name, Write write)
{
    try {
        return write();
    } catch (const DrawingError& error) {
        throw DrawingError{error.line, name() + ": " + error.what};
    }
}

} // namespace korra
