#pragma once

#include "objects/contents.h"

namespace korra {

/// Makes what every drawing has and this one lacks: tables, model space, a sheet, layer "0", the
/// standard styles, linetypes and application name, the layout dictionary. Reading ends with it
/// too, so that every database is whole.
void completeDrawing(DatabaseContents& contents);

} // namespace korra
