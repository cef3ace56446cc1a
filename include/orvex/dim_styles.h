#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>

/// The dimension styles of a drawing, by the rules of the house. What single dimensions change
/// about their style is in dim_override.h.
///
/// A database must not be null where nothing else is said. Names are compared without regard to
/// case; erased styles do not count. Sizes are in drawing units before DIMSCALE.
namespace DimStyleMgr {

/// Makes a dimension style.
///
/// Besides the parameters it always gets: colours by layer (DIMCLRD, DIMCLRE, DIMCLRT 256),
/// DIMDLI 8, DIMEXO 0, DIMJUST 0, DIMTAD 3, DIMTDEC 3, DIMAUNIT 1, DIMTOFL on, DIMTOLJ 0, DIMFIT 2.
/// A name that is taken is told on the command line.
/// @param textStyle  DIMTXSTY; the current text style for an empty or unknown name and for a style
///                   of shapes
/// @param textHeight  DIMTXT; 5 for 0
/// @param arrowSize  DIMASZ; 2.5 for 0
/// @param decimals  DIMDEC
/// @param toleranceFactor  DIMTFAC; 0.707 for everything below 0.0001
/// @param extensionBeyond  DIMEXE
/// @param textGap  DIMGAP
/// @param textInsideHorizontal  DIMTIH, on when not 0
/// @param textOutsideHorizontal  DIMTOH, on when not 0
/// @param db  null: the working database
/// @return 1; 0, nothing made, for an empty or taken name, and when the table cannot be written
ORVEX_API int CreateDimStyle(CString styleName, CString textStyle, double textHeight,
                             double arrowSize, unsigned int decimals, double toleranceFactor,
                             double extensionBeyond, double textGap, int textInsideHorizontal,
                             int textOutsideHorizontal, KdDbDatabase* db);

/// Changes a dimension style like CreateDimStyle(), but a size or factor of 0 leaves the style's
/// own, any other one is taken as it is, and DIMTDEC becomes 4.
/// @return 1; 0, nothing changed, for an empty name, an unknown one, which is told on the command
///         line, and when the style cannot be written
ORVEX_API int ModifyDimStyle(CString styleName, CString textStyle, double textHeight,
                             double arrowSize, unsigned int decimals, double toleranceFactor,
                             double extensionBeyond, double textGap, int textInsideHorizontal,
                             int textOutsideHorizontal, KdDbDatabase* db);

/// Makes a style current.
/// @param copyVariables  not 0: the current dimension variables take the style's values too
/// @param db  null: the working database
/// @return 1, whatever the host says to it; 0 for an empty or unknown name and a table that cannot
///         be opened; also 0, the style current all the same, when its values cannot be read
ORVEX_API int SetCurrentDimStyle(CString styleName, int copyVariables, KdDbDatabase* db);

/// The name of the current style; empty when it cannot be read, and for null.
ORVEX_API CString GetCurrentDimStyle(KdDbDatabase* db);

/// @return 1 when there is a style of that name; 0 also when the table cannot be opened
ORVEX_API int FindDimStyle(const wchar_t* styleName, KdDbDatabase* db);

/// As FindDimStyle().
ORVEX_API int DimISExist(const wchar_t* styleName, KdDbDatabase* db);

/// The id of a style; null for a null name, an unknown one, and what cannot be opened.
ORVEX_API KdDbObjectId GetDimStyleId(const wchar_t* styleName, KdDbDatabase* db);

/// @param id  null when there is no such style; untouched for a null name
/// @return 1 when there is one; else 0
ORVEX_API int GetDimStyleId(KdDbObjectId& id, const wchar_t* styleName, KdDbDatabase* db);

/// Appends the names of all styles in table order.
/// @param db  may be null
/// @return 1; 0, nothing appended, for a null database or a table that cannot be opened
ORVEX_API int GetDimStyleNameFromDrawing(CStringArray& names, KdDbDatabase* db);

/// The colour index of a style's text, DIMCLRT.
/// @param color  7 on failure
/// @return 1; 0 for an empty or unknown name and what cannot be opened
ORVEX_API int GetDimStyleTextColor(CString styleName, unsigned short& color, KdDbDatabase* db);

/// The height of a style's text, DIMTXT.
/// @param height  3.5 on failure
/// @return 1; 0 for an empty or unknown name and what cannot be opened
ORVEX_API int GetDimStyleTextHeight(CString styleName, double& height, KdDbDatabase* db);

/// The overall scale of a style, DIMSCALE, read in a transaction of the current document, which
/// must exist.
///
/// What cannot be opened stops the host.
/// @return 1 when there is no style of that name
ORVEX_API double GetDimStyleDimScale(const wchar_t* styleName, KdDbDatabase* db);

/// Sets the overall scale of a style, DIMSCALE, as GetDimStyleDimScale() reads it.
/// @return 1; 0 when there is no style of that name
ORVEX_API int SetDimScale(const wchar_t* styleName, double scale, KdDbDatabase* db);

/// The name of a style's text style, DIMTXSTY.
/// @param textStyle  untouched on failure
/// @return 1; 0 for a null or unknown name and what cannot be opened
ORVEX_API int GetTextStyleFromDim(CString& textStyle, const wchar_t* styleName, KdDbDatabase* db);

/// The colour index of a style's dimension lines (DIMCLRD) or extension lines (DIMCLRE).
/// @param color  untouched when there is no style of that name
/// @param styleName  empty: the current style
/// @return 1, also when there is no style of that name; 0, `color` untouched, when it cannot be
///         opened
ORVEX_API int GetCurrentDimclrd(unsigned short& color, CString styleName, KdDbDatabase* db);
ORVEX_API int GetCurrentDimclre(unsigned short& color, CString styleName, KdDbDatabase* db);

/// Tells nothing: the name is left as it is. @return 1
ORVEX_API int GetCurrentDimTextstyleFontName(CString& fontName, CString styleName,
                                             KdDbDatabase* db);

} // namespace DimStyleMgr
