#pragma once

#include "orvex/api.h"

#include "kd/db.h"
#include "kd/gi.h"

#include <afxwin.h>

/// The text styles of a drawing.
///
/// A database must not be null where nothing else is said. Names are compared without regard to
/// case; erased styles do not count.
namespace TxtStyleMgr {

/// Makes a text style. What cannot be done is told on the command line.
/// @param widthFactor  width of the characters over their usual width
/// @param obliqueAngle  degrees from upright, to the right
/// @param useWindowsFont  0: the style has a shape font, `windowsFont` is ignored; else it has an
///                        installed font, and both files are ignored
/// @param fontFile  must be on the host's search path; kept as it is given
/// @param bigFontFile  may be empty; one that is not on the search path is left out
/// @param windowsFont  a face name of up to 31 characters; one that is not installed is kept all
///                     the same, as an upright face. A name that ends in "shx", in any case, is
///                     taken as a shape font
/// @return 1; 0, nothing made, when there is a style of that name, a font is missing or refused, a
///         face name is empty or too long, or the table cannot be written
ORVEX_API int CreateTextStyle(CString styleName, double widthFactor, double obliqueAngle,
                              int useWindowsFont, CString fontFile, CString bigFontFile,
                              CString windowsFont, KdDbDatabase* db);

/// Changes a text style. Unlike CreateTextStyle() it changes nothing when the big font is missing,
/// takes every `windowsFont` as a face name, and goes on when the host refuses a font.
/// @return 1; 0, nothing changed, when there is no such style, a font file is missing, a face name
///         is empty or too long, or the style cannot be written
ORVEX_API int ModifyTextStyle(CString styleName, double widthFactor, double obliqueAngle,
                              int useWindowsFont, CString fontFile, CString bigFontFile,
                              CString windowsFont, KdDbDatabase* db);

/// @return 1 when there is a style of that name; 0 also when the table cannot be opened
ORVEX_API int FindTextStyle(const wchar_t* styleName, KdDbDatabase* db);

/// As FindTextStyle().
ORVEX_API int TextStyleISExist(const wchar_t* styleName, KdDbDatabase* db);

/// The id of a style; null for a null name, an unknown one, and what cannot be opened.
ORVEX_API KdDbObjectId GetTxtStyleId(const wchar_t* styleName, KdDbDatabase* db);

/// @param id  null when there is no such style; untouched for a null name
/// @return 1 when there is one; else 0
ORVEX_API int GetTxtStyleId(KdDbObjectId& id, const wchar_t* styleName, KdDbDatabase* db);

/// Appends the names of all styles in table order.
/// @param db  may be null
/// @return 1; 0, nothing appended, for a null database or a table that cannot be opened
ORVEX_API int GetTxtStyleNameFromDrawing(CStringArray& names, KdDbDatabase* db);

/// The name of the current style; empty when it cannot be read, and for null.
ORVEX_API CString GetCurrentTextStyle(KdDbDatabase* db);

/// Makes a style current.
/// @return 1, whatever the host says to it; 0 when there is no such style or the table cannot be
///         opened
ORVEX_API int SetCurrentTextStyle(CString styleName, KdDbDatabase* db);

} // namespace TxtStyleMgr

/// Reads a text style of a drawing into the form in which the host measures and draws text.
///
/// The result is never underlined, also when the style could not be read: underlining belongs to
/// single texts.
/// @return the host's status
ORVEX_API Kdapi::ErrorStatus rx_getTextStyle(KdGiTextStyle& style, KdDbObjectId styleId);

/// Looks a text style up.
/// @param styleId  as the host's look-up leaves it
/// @return eOk; the host's status of opening the table or of the look-up
ORVEX_API Kdapi::ErrorStatus rx_getTextStyleId(const wchar_t* name, KdDbDatabase* db,
                                               KdDbObjectId& styleId);
