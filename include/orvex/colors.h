#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Colours in their three forms: the host's index (0 by block, 1 to 255 palette, 256 by layer), the
/// host's colour object, and red, green and blue packed into one number, red in bits 0 to 7, green
/// in bits 8 to 15, blue in bits 16 to 23.
namespace Orvex {

/// The colour object of an index, of which the low 16 bits count.
ORVEX_API KdCmColor GetAcCmColorFormColorIndex(int colorIndex);

/// The index that the host holds nearest to a packed colour; bits 24 to 31 do not count.
ORVEX_API int GetColorIndexFromRGB(const unsigned long& rgb);

/// The packed colour of an index.
/// @return 1; 0, `rgb` untouched, for an index outside 0 to 256
ORVEX_API int GetRgbValue(unsigned long& rgb, int colorIndex);

/// The packed background colour of the current view: that of the sheet when a layout is current and
/// none of its viewports is entered, else that of model space.
/// @param db  must not be null
ORVEX_API unsigned long GetCurrentBkColor(KdDbDatabase* db);

/// Lets the user choose a colour index in the host's colour dialog.
/// @param colorIndex  shown as chosen at first
/// @param result  untouched unless one was chosen
/// @return 1; 0 for an index above 256, without a dialog, and when none was chosen
ORVEX_API int InvokeColorDlg(unsigned short colorIndex, int& result);

} // namespace Orvex
