#pragma once

#include "kd/db.h"

#include <afxwin.h>

namespace tables {

/// Loads a linetype from the host's definition file for a measurement system, or from the other one
/// when the first is missing or does not define it.
///
/// Both files are looked for before anything is loaded. Prints a line for every file that is
/// missing, and one when the linetype was found in neither.
/// @return eOk; eUndefinedLineType (162) when neither file defines it; else what loading came to
Kdapi::ErrorStatus loadFromLinetypeFiles(const CString& name, KdDb::MeasurementValue measurement,
                                         KdDbDatabase& database);

} // namespace tables
