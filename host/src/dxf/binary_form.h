#pragma once

#include <string>

namespace korra {

/// A drawing's file in its ASCII form: one of the binary form is turned into it tag by tag, any
/// other is given back as it is, and so is what stands behind the end of the drawing.
/// @throw DrawingError where binary data is cut off or no tag
std::string inAsciiForm(std::string file);

} // namespace korra
