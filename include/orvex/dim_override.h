#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>

/// Dimension variables of single dimensions.
///
/// A dimension shows the values of its style unless it carries an override, a pair of group code
/// and value in a "DSTYLE" section of its "ACAD" extended data. Known by name, in any case, are:
///   whole numbers  dimdec dimadec dimtdec dimatfit dimtad dimjust
///   flags          dimtix dimtoh dimtih dimtofl dimse1 dimse2 dimsd1 dimsd2
///   reals          dimgap dimtvp dimlfac dimscale
namespace DimStyleMgr {

/// Gives one dimension a value of its own for one variable, and keeps the drawing clean: a value
/// that the style has as well is not stored, and an override of the variable is taken away.
///
/// Value and style are compared as numbers, a flag as 0 or 1, before anything is converted; there
/// is no tolerance. Only a value that differs is converted: to a whole number toward zero, to a
/// flag by being other than 0. So 2.7 against a style's 2 stores 2, and 2 against a set flag stores
/// the flag.
/// @tparam Value  short, int, double or bool
/// @param dimension  open for writing; stays open
/// @param name  of the variable
/// @return eOk, also for a name that is not known, nothing changed then; eNotThatKindOfClass (20)
///         for a null dimension; the status of opening the style, nothing changed; else the status
///         of the dimension's own setter
template <class Value>
ORVEX_API Kdapi::ErrorStatus OverrideDimVariable(KdDbDimension* dimension, CString name,
                                                 Value value);

extern template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<short>(KdDbDimension*, CString,
                                                                        short);
extern template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<int>(KdDbDimension*, CString, int);
extern template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<double>(KdDbDimension*, CString,
                                                                         double);
extern template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<bool>(KdDbDimension*, CString,
                                                                       bool);

/// Takes every override of one variable away from a dimension.
///
/// Each "DSTYLE" section is searched, whoever wrote it; every other pair and all else in the "ACAD"
/// data stay, a section that becomes empty too. The data are written back also when nothing was
/// removed; a dimension without "ACAD" data is not written to.
/// @param dimension  open; when it is open for reading it is upgraded meanwhile. Must not be null
/// @param code  group code of the variable in a dimension style
ORVEX_API void DeleteDimVarsOverride(KdDbDimension* dimension, short code);

} // namespace DimStyleMgr
