#pragma once

#include "gi/fonts.h"
#include "kd/db/ids.h"

namespace korra {

/// The font of a text style, opened once and kept.
///
/// A style names an installed family, or else a font file (looked up among the installed fonts by
/// its base name, then as a family); shape fonts and what is not installed are shown in the host's
/// substitute, a sans-serif.
/// @param style  null or no text style: the substitute
const Font& fontOfStyle(KdDbObjectId style);

} // namespace korra
