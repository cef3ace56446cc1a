#pragma once

#include "orvex/orvex.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// The value of a dimension variable as a person types it.
using DimensionValue = std::variant<int, double, bool>;

/// Reads a value: a whole number, a number with a point or an exponent, or "on" or "off".
/// @return nullopt for any other text and for a number out of range
std::optional<DimensionValue> readDimensionValue(const std::wstring& text);

/// The value in force of a dimension variable, override or style, in the same form.
/// @param name  of one of the variables that can be overridden, in any case
/// @return "none" for any other name
std::wstring dimensionValueText(const KdDbDimension& dimension, const CString& name);
