#include "ed/system_variables.h"

#include "ed/editor.h"
#include "ed/number_text.h"
#include "ed/views.h"
#include "kd/ed.h"
#include "objects/contents.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "rx/result_buffer.h"

#include <cmath>

namespace korra::ed {
namespace {

using Home = SystemVariable::Home;

std::string headerName(const SystemVariable& variable, const KdDbDatabase& database)
{
    const bool ofSheet = variable.home == Home::space && isSheetCurrent(database);
    return (ofSheet ? "$P" : "$") + platform::toUtf8(variable.name);
}

VariableValue readHeader(const DrawingHeader& header, const std::string& name,
                         const VariableValue& byDefault)
{
    if (const auto* number = std::get_if<short>(&byDefault))
        return static_cast<short>(header.integer(name, *number));
    if (const auto* real = std::get_if<double>(&byDefault))
        return header.real(name, *real);
    if (const auto* point = std::get_if<KdGePoint3d>(&byDefault))
        return header.point(name, *point);
    return header.text(name, std::get<std::wstring>(byDefault));
}

void writeHeader(DrawingHeader& header, const std::string& name, int code,
                 const VariableValue& value)
{
    if (const auto* number = std::get_if<short>(&value))
        header.setInteger(name, *number, code);
    else if (const auto* real = std::get_if<double>(&value))
        header.setReal(name, *real, code);
    else if (const auto* point = std::get_if<KdGePoint3d>(&value))
        header.setPoint(name, *point);
    else
        header.setText(name, std::get<std::wstring>(value), code);
}

bool isFinite(const KdGePoint3d& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

bool accepts(const SystemVariable& variable, const VariableValue& value)
{
    if (const auto* number = std::get_if<short>(&value))
        return *number >= variable.minimum && *number <= variable.maximum;
    if (const auto* real = std::get_if<double>(&value))
        return *real >= variable.minimum && *real <= variable.maximum;
    const auto* const point = std::get_if<KdGePoint3d>(&value);
    return !point || isFinite(*point);
}

VariableValue readHost(const SystemVariable& variable)
{
    const auto& kept = editor().variables;
    const auto found = kept.find(variable.name);
    return found == kept.end() ? variable.byDefault : found->second;
}

} // namespace

const SystemVariable* findVariable(std::wstring_view name)
{
    for (const SystemVariable& variable : systemVariables())
        if (platform::compareNoCase(variable.name, name) == 0)
            return &variable;
    return nullptr;
}

std::optional<VariableValue> readVariable(const SystemVariable& variable)
{
    if (variable.home == Home::host)
        return readHost(variable);
    const KdDbDatabase* const database = currentDatabase();
    if (!database)
        return std::nullopt;
    if (variable.home == Home::computed)
        return variable.read(*database);
    return readHeader(database->contents().header, headerName(variable, *database),
                      variable.byDefault);
}

bool writeVariable(const SystemVariable& variable, const VariableValue& value)
{
    if (value.index() != variable.byDefault.index() || !accepts(variable, value))
        return false;
    if (variable.home == Home::host) {
        editor().variables[variable.name] = value;
        return true;
    }
    KdDbDatabase* const database = currentDatabase();
    if (!database)
        return false;
    if (variable.home == Home::computed)
        return variable.write && variable.write(*database, value);
    writeHeader(database->contents().header, headerName(variable, *database), variable.code, value);
    return true;
}

std::optional<VariableValue> variableValueOf(const SystemVariable& variable, std::wstring_view text)
{
    if (variable.type == RTSTR)
        return std::wstring(text);
    if (variable.type == RTPOINT || variable.type == RT3DPOINT)
        return readPoint(text);
    const std::optional<double> number = readReal(text);
    if (!number || variable.type == RTREAL)
        return number;
    const bool whole =
        std::abs(*number) <= 32768.0 && *number == std::trunc(*number) && *number <= 32767.0;
    return whole ? std::optional<VariableValue>(static_cast<short>(*number)) : std::nullopt;
}

bool setVariable(std::wstring_view name, std::wstring_view text)
{
    const SystemVariable* const variable = findVariable(name);
    const auto value = variable ? variableValueOf(*variable, text) : std::nullopt;
    return value && writeVariable(*variable, *value);
}

std::wstring textOf(const VariableValue& value)
{
    if (const auto* number = std::get_if<short>(&value))
        return std::to_wstring(*number);
    if (const auto* real = std::get_if<double>(&value))
        return numberText(*real);
    if (const auto* point = std::get_if<KdGePoint3d>(&value))
        return numberText(point->x) + L',' + numberText(point->y) + L',' + numberText(point->z);
    return std::get<std::wstring>(value);
}

namespace {

/// The value that a result buffer holds, when it is of the variable's type.
std::optional<VariableValue> valueIn(const resbuf& buffer, const SystemVariable& variable)
{
    if (buffer.restype != variable.type)
        return std::nullopt;
    switch (buffer.restype) {
    case RTSHORT:
        return buffer.resval.rint;
    case RTREAL:
        return buffer.resval.rreal;
    case RTSTR:
        return buffer.resval.rstring ? std::optional<VariableValue>(buffer.resval.rstring)
                                     : std::nullopt;
    default: {
        const double* const point = buffer.resval.rpoint;
        return KdGePoint3d(point[0], point[1], variable.type == RTPOINT ? 0.0 : point[2]);
    }
    }
}

void fill(resbuf& buffer, short type, const VariableValue& value)
{
    buffer.restype = type;
    if (const auto* number = std::get_if<short>(&value)) {
        buffer.resval.rint = *number;
    } else if (const auto* real = std::get_if<double>(&value)) {
        buffer.resval.rreal = *real;
    } else if (const auto* point = std::get_if<KdGePoint3d>(&value)) {
        for (unsigned int axis = 0; axis < 3; ++axis)
            buffer.resval.rpoint[axis] = (*point)[axis];
    } else {
        buffer.resval.rstring = newHostString(std::get<std::wstring>(value));
    }
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedGetVar(const wchar_t* name, resbuf* result)
{
    if (platform::gate("kdedGetVar", name) || !name || !result || !runningEditor())
        return RTERROR;
    const SystemVariable* const variable = findVariable(name);
    const std::optional<VariableValue> value = variable ? readVariable(*variable) : std::nullopt;
    if (!value)
        return RTERROR;
    result->rbnext = nullptr;
    fill(*result, variable->type, *value);
    return RTNORM;
}

int kdedSetVar(const wchar_t* name, const resbuf* value)
{
    if (platform::gate("kdedSetVar", name) || !name || !value || !runningEditor())
        return RTERROR;
    const SystemVariable* const variable = findVariable(name);
    const std::optional<VariableValue> given = variable ? valueIn(*value, *variable) : std::nullopt;
    return given && writeVariable(*variable, *given) ? RTNORM : RTERROR;
}
