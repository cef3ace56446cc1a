#include "ed/system_variables.h"

#include "ed/computed_variables.h"
#include "ed/editor.h"
#include "ed/number_text.h"
#include "ed/setting_variables.h"
#include "ed/typed_values.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "rx/result_buffer.h"

#include <cmath>

namespace korra::ed {
const std::vector<SystemVariable>& systemVariables()
{
    static const std::vector<SystemVariable> all = [] {
        std::vector<SystemVariable> variables = settingVariables();
        for (SystemVariable& variable : computedVariables())
            variables.push_back(std::move(variable));
        return variables;
    }();
    return all;
}

const SystemVariable* findVariable(std::wstring_view name)
{
    for (const SystemVariable& variable : systemVariables()) {
        if (platform::compareNoCase(variable.name, name) == 0)
            return &variable;
    }
    return nullptr;
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

bool setVariable(const SystemVariable& variable, std::wstring_view text)
{
    const std::optional<VariableValue> value = variableValueOf(variable, text);
    return value && variable.write && variable.write(*value);
}

std::wstring textOf(const VariableValue& value)
{
    if (const auto* const number = std::get_if<short>(&value))
        return std::to_wstring(*number);
    if (const auto* const real = std::get_if<double>(&value))
        return numberText(*real);
    if (const auto* const point = std::get_if<KdGePoint3d>(&value))
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
    if (const auto* const number = std::get_if<short>(&value)) {
        buffer.resval.rint = *number;
    } else if (const auto* const real = std::get_if<double>(&value)) {
        buffer.resval.rreal = *real;
    } else if (const auto* const point = std::get_if<KdGePoint3d>(&value)) {
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
    return platform::gate("kdedGetVar", name).guard(RTERROR, [&]() -> int {
        if (!name || !result || !runningEditor())
            return RTERROR;
        const SystemVariable* const variable = findVariable(name);
        const std::optional<VariableValue> value = variable ? variable->read() : std::nullopt;
        if (!value)
            return RTERROR;
        result->rbnext = nullptr;
        fill(*result, variable->type, *value);
        return RTNORM;
    });
}

int kdedSetVar(const wchar_t* name, const resbuf* value)
{
    return platform::gate("kdedSetVar", name).guard(RTERROR, [&]() -> int {
        if (!name || !value || !runningEditor())
            return RTERROR;
        const SystemVariable* const variable = findVariable(name);
        const std::optional<VariableValue> given =
            variable ? valueIn(*value, *variable) : std::nullopt;
        return given && variable->write && variable->write(*given) ? RTNORM : RTERROR;
    });
}
