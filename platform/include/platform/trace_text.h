#pragma once

#include <string>
#include <string_view>
#include <type_traits>

/// How the trace writes values: texts quoted, numbers and enumerators as numbers, pointers as
/// "object" or "null". Types of their own form have a function `traceForm(value)` beside them.
namespace platform {

std::string traceText(std::wstring_view text);
std::string traceText(std::string_view text);
std::string traceText(double value);
std::string traceText(long long value);

/// An address differs from run to run, and a trace is compared: it only tells whether there is one.
std::string traceTextOfPointer(bool there);

template <class T>
std::string traceValue(const T& value)
{
    using Value = std::decay_t<const T>;
    if constexpr (std::is_same_v<T, wchar_t*> || std::is_same_v<T, const wchar_t*>) {
        return value ? traceText(std::wstring_view(value)) : traceTextOfPointer(false);
    } else if constexpr (std::is_convertible_v<const T&, std::wstring_view>) {
        return traceText(std::wstring_view(value));
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        return traceText(std::string_view(value));
    } else if constexpr (std::is_floating_point_v<Value>) {
        return traceText(static_cast<double>(value));
    } else if constexpr (std::is_integral_v<Value> || std::is_enum_v<Value>) {
        return traceText(static_cast<long long>(value));
    } else if constexpr (std::is_pointer_v<Value> || std::is_null_pointer_v<Value>) {
        return traceTextOfPointer(value != nullptr);
    } else {
        return traceForm(value); // found by the value's own namespace
    }
}

/// The values one behind the other, separated by commas.
template <class... Values>
std::string traceList(const Values&... values)
{
    std::string list;
    ((list += (list.empty() ? "" : ", ") + traceValue(values)), ...);
    return list;
}

} // namespace platform
