#pragma once

#include "dxf/file_text.h"

namespace korra {

/// Gives a drawing's file in its ASCII form: one of the binary form is turned into it tag by tag,
/// any other passes as it is, and so does what stands behind the end of the drawing.
///
/// Reading throws DrawingError where binary data is cut off or no tag.
ReadBytes inAsciiForm(ReadBytes read);

} // namespace korra
