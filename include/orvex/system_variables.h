#pragma once

/// Typed access to the host's system variables.
///
/// A variable is never converted: a caller that asks for another type than the variable has is
/// refused. Integers have 16 bits in the host: they are read with their sign, and written by their
/// low 16 bits. Points are read and written as three doubles; a point in a plane ignores the third.

#include "orvex/api.h"

#include "kd/ge.h"

#include <afxwin.h>

/// System variables by name, for callers that want yes or no.
class ORVEX_API CSysVar {
public:
    /// Reads a variable of the value's type; a point may be one in a plane or in space.
    /// @return false, the value untouched, for an empty or unknown name or a variable of another
    ///         type
    static bool GetVar(const CString& name, int& value);
    static bool GetVar(const CString& name, double& value);
    static bool GetVar(const CString& name, CString& value);
    static bool GetVar(const CString& name, KdGePoint3d& value);

    /// Writes a variable of the value's type; a point may be one in a plane or in space.
    /// @return true when the host accepted the value; false for an unknown name, a variable of
    ///         another type and a refused value
    static bool SetVar(const CString& name, const CString& value);
    static bool SetVar(const CString& name, const KdGePoint3d& value);
    static bool SetVar(const CString& name, int value);
    static bool SetVar(const CString& name, double value);

    /// The type code of a variable; RTNONE for an empty or unknown name.
    static int VarType(const CString& name);
};

/// System variables, value first, for callers that count in 1 and 0.
///
/// A null name fails everywhere.
namespace QmSysVarMgr {

/// @return 1 and the value; 0, the value then 0, for an unknown name or another type
ORVEX_API int GetSysIntValue(int& value, const wchar_t* name);
ORVEX_API int GetSysDoubleValue(double& value, const wchar_t* name);

/// Reads a point in a plane or in space. @return 1; 0, the value untouched
ORVEX_API int GetSysPointValue(KdGePoint3d& value, const wchar_t* name);

/// @return 1; 0, the value untouched
ORVEX_API int GetSysStringValue(CString& value, const wchar_t* name);

/// The type code of a variable; RTNONE for a null, empty or unknown name.
ORVEX_API int GetSysVarType(const wchar_t* name);

/// @return 1 when the host accepted the value; 0 for an unknown name, another type, a refusal
ORVEX_API int SetSysIntValue(int value, const wchar_t* name);
ORVEX_API int SetSysDoubleValue(double value, const wchar_t* name);
ORVEX_API int SetSysStringValue(CString value, const wchar_t* name);

/// Writes a point in space; unlike CSysVar::SetVar() it refuses a point in a plane.
ORVEX_API int SetSysPointValue(KdGePoint3d value, const wchar_t* name);

} // namespace QmSysVarMgr
