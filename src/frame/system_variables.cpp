#include "orvex/system_variables.h"

#include "kd/ed.h"

namespace {

/// A variable as the host gives it; a text in it is given back at the end.
class Variable {
public:
    /// @param name  null reads nothing
    explicit Variable(const wchar_t* name) : name_(name)
    {
        if (!name || kdedGetVar(name, &buffer_) != RTNORM)
            buffer_.restype = RTNONE;
    }

    ~Variable() { setText(nullptr); }

    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    /// RTNONE when it could not be read.
    short type() const { return buffer_.restype; }

    bool is(short type) const { return buffer_.restype == type; }

    bool isPoint() const { return is(RT3DPOINT) || is(RTPOINT); }

    auto& value() { return buffer_.resval; }

    /// Replaces the text of a text variable, which the host has allocated.
    void setText(wchar_t* text)
    {
        if (!is(RTSTR))
            return;
        kdapi_free(buffer_.resval.rstring);
        buffer_.resval.rstring = text;
    }

    bool write() const { return kdedSetVar(name_, &buffer_) == RTNORM; }

private:
    const wchar_t* name_;
    resbuf buffer_{};
};

bool readInteger(const wchar_t* name, int& value)
{
    Variable variable(name);
    if (!variable.is(RTSHORT))
        return false;
    value = variable.value().rint;
    return true;
}

bool readReal(const wchar_t* name, double& value)
{
    Variable variable(name);
    if (!variable.is(RTREAL))
        return false;
    value = variable.value().rreal;
    return true;
}

bool readText(const wchar_t* name, CString& value)
{
    Variable variable(name);
    if (!variable.is(RTSTR))
        return false;
    value = variable.value().rstring;
    return true;
}

bool readPoint(const wchar_t* name, KdGePoint3d& value)
{
    Variable variable(name);
    if (!variable.isPoint())
        return false;
    const kds_real* const point = variable.value().rpoint;
    value.set(point[0], point[1], point[2]);
    return true;
}

bool writeInteger(const wchar_t* name, int value)
{
    Variable variable(name);
    if (!variable.is(RTSHORT))
        return false;
    variable.value().rint = static_cast<short>(value);
    return variable.write();
}

bool writeReal(const wchar_t* name, double value)
{
    Variable variable(name);
    if (!variable.is(RTREAL))
        return false;
    variable.value().rreal = value;
    return variable.write();
}

bool writeText(const wchar_t* name, const CString& value)
{
    Variable variable(name);
    if (!variable.is(RTSTR))
        return false;
    variable.setText(kdapi_copyString(value));
    return variable.write();
}

/// Writes a point to a variable that was found to be one.
bool writePoint(Variable& variable, const KdGePoint3d& value)
{
    kds_real* const point = variable.value().rpoint;
    point[0] = value.x;
    point[1] = value.y;
    point[2] = value.z;
    return variable.write();
}

int typeOf(const wchar_t* name)
{
    return Variable(name && *name ? name : nullptr).type();
}

} // namespace

bool CSysVar::GetVar(const CString& name, int& value)
{
    return !name.IsEmpty() && readInteger(name, value);
}

bool CSysVar::GetVar(const CString& name, double& value)
{
    return !name.IsEmpty() && readReal(name, value);
}

bool CSysVar::GetVar(const CString& name, CString& value)
{
    return !name.IsEmpty() && readText(name, value);
}

bool CSysVar::GetVar(const CString& name, KdGePoint3d& value)
{
    return !name.IsEmpty() && readPoint(name, value);
}

bool CSysVar::SetVar(const CString& name, const CString& value)
{
    return writeText(name, value);
}

bool CSysVar::SetVar(const CString& name, const KdGePoint3d& value)
{
    Variable variable(name);
    return variable.isPoint() && writePoint(variable, value);
}

bool CSysVar::SetVar(const CString& name, int value)
{
    return writeInteger(name, value);
}

bool CSysVar::SetVar(const CString& name, double value)
{
    return writeReal(name, value);
}

int CSysVar::VarType(const CString& name)
{
    return typeOf(name);
}

int QmSysVarMgr::GetSysIntValue(int& value, const wchar_t* name)
{
    value = 0;
    return readInteger(name, value);
}

int QmSysVarMgr::GetSysDoubleValue(double& value, const wchar_t* name)
{
    value = 0.0;
    return readReal(name, value);
}

int QmSysVarMgr::GetSysPointValue(KdGePoint3d& value, const wchar_t* name)
{
    return readPoint(name, value);
}

int QmSysVarMgr::GetSysStringValue(CString& value, const wchar_t* name)
{
    return readText(name, value);
}

int QmSysVarMgr::GetSysVarType(const wchar_t* name)
{
    return typeOf(name);
}

int QmSysVarMgr::SetSysIntValue(int value, const wchar_t* name)
{
    return writeInteger(name, value);
}

int QmSysVarMgr::SetSysDoubleValue(double value, const wchar_t* name)
{
    return writeReal(name, value);
}

int QmSysVarMgr::SetSysPointValue(KdGePoint3d value, const wchar_t* name)
{
    Variable variable(name);
    return variable.is(RT3DPOINT) && writePoint(variable, value);
}

int QmSysVarMgr::SetSysStringValue(CString value, const wchar_t* name)
{
    return writeText(name, value);
}
