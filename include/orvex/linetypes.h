#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>

/// The linetypes of a drawing, and loading more of them from the host's two definition files,
/// "korra.lin" and "korraiso.lin", which are looked for on the host's search path.
///
/// A database must not be null where nothing else is said.
namespace QmLTypeMgr {

/// @param name  taken as it is, blanks included; case does not count
/// @return 1 when the drawing has the linetype, else 0
ORVEX_API int IsLTypeExist(CString name, KdDbDatabase* db);

/// @param id  of the linetype; written only when the result is eOk
/// @return eOk; eNullObjectId (16) when the linetype table cannot be opened; else the host's status
///         of the look-up or of opening the linetype
ORVEX_API Kdapi::ErrorStatus GetLTypeId(KdDbObjectId& id, CString name, KdDbDatabase* db);

/// Appends the names of all linetypes in table order, those that every drawing has included.
/// @param db  may be null
/// @return 1; 0, nothing appended, for a null database or a table that cannot be opened
ORVEX_API int GetLTypeFromDrawing(CStringArray& names, KdDbDatabase* db);

/// Loads a linetype from the definition file for the drawing's units, or from the other one when
/// the first is missing or does not define it.
///
/// A file that is missing, and a linetype that neither file defines, are told on the command line;
/// any other failure ends the loading without a word. "FILEDIA" is 0 meanwhile and has its value
/// again afterwards, also after an exception.
/// @param name  white space at both ends is ignored
/// @param measurement  kMetric tries "korraiso.lin" first, any other value "korra.lin"
/// @param reload  0: a linetype that the drawing has is not loaded again
/// @return 1 when the drawing has the linetype now, else 0; 0 for an empty name
ORVEX_API int LoadLType(CString name, KdDb::MeasurementValue measurement, KdDbDatabase* db,
                        int reload);

} // namespace QmLTypeMgr

namespace QmLineWeight {

/// Whether a line weight is one of the host's: -3 default, -2 by block, -1 by layer, or one of 24
/// widths from 0 to 211 hundredths of a millimetre.
/// @return 1 or 0
ORVEX_API int IsExistSysLWeight(int lineWeight);

} // namespace QmLineWeight
