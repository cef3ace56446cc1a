#pragma once

#include "kd/db/tables.h"
#include "tables/settings.h"

#include <string_view>
#include <variant>
#include <vector>

class KdDbDimension;

namespace korra {

enum class DimensionKind { integer, flag, real, text, reference };

/// One dimension variable: its name, its group code in a style, its kind and its default.
struct DimensionVariable {
    const wchar_t* name; ///< capitals: L"DIMGAP"
    int code;
    DimensionKind kind;
    double byDefault; ///< the number; 0 for texts and references
    SettingRange range;
};

/// Every dimension variable that the host knows, in the order in which records hold the values.
const std::vector<DimensionVariable>& dimensionVariables();

/// Index of a variable by name (without regard to case) or by group code; -1 when unknown.
int dimensionVariableIndex(std::wstring_view name);
int dimensionVariableIndex(int code);

/// The code that a value of this kind has in extended data: 1070, 1040, 1000 or 1005.
short overrideValueCode(DimensionKind kind);

/// The setting of a drawing that is a variable's current value: numbers as they are, and what a
/// style refers to by its name.
using DimensionSetting =
    std::variant<Setting<int>, Setting<double>, Setting<std::wstring>, RecordSetting>;

DimensionSetting settingOf(const DimensionVariable& variable);

/// The default of a variable as a value of its kind.
KdDbDimensionValue defaultValue(const DimensionVariable& variable);

/// True for a number that the variable can have.
bool accepts(const DimensionVariable& variable, double value);

/// The number of an integer, flag or real; 0 for a text or reference.
double numberOf(const KdDbDimensionValue& value);

/// A number as the value of a variable of a numeric kind.
KdDbDimensionValue valueOf(const DimensionVariable& variable, double number);

/// The value in force for what is drawn in a style: its override, else the style's, else the
/// default. @param style  null: the drawing's current one
KdDbDimensionValue dimensionValue(const KdDbObject& drawn, KdDbObjectId style, int index);

/// The value in force for a dimension: its override, else its style's, else the default.
KdDbDimensionValue dimensionValue(const KdDbDimension& dimension, int index);

/// The values in force of all variables, in the order of dimensionVariables().
std::vector<KdDbDimensionValue> dimensionValues(const KdDbDimension& dimension);

} // namespace korra
