#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// The one place that every fallible operation of the host and of the platform passes.
///
/// An operation announces itself with gate(...) before it does anything. Usually the gate is idle
/// and costs one test. Told to, it records the calls (the trace), counts them, or makes one call
/// fail: the operation then takes the failure path that the real one has, and nothing else knows
/// that it was made to.
namespace platform {

/// What an exception that was ordered through the gate looks like to its catcher.
class OrderedException {
public:
    explicit OrderedException(std::string operation) : operation_(std::move(operation)) {}

    const std::string& operation() const { return operation_; }

private:
    std::string operation_;
};

/// How the chosen call fails.
enum class Fault {
    status, ///< it returns the failure that the operation has
    thrown  ///< it throws OrderedException, where the real operation can throw; else as status
};

/// One call as the trace keeps it: `kdedGetVar("CMDECHO")`.
struct TracedCall {
    std::string operation;
    std::string arguments; ///< comma-separated, texts quoted
};

/// Starts counting fallible calls from zero; none is made to fail.
void countCalls();

/// Makes the `ordinal`-th fallible call from now on fail, once; the first call is 1.
void failCall(std::size_t ordinal, Fault fault);

/// Fallible calls since countCalls() or failCall().
std::size_t callsCounted();

/// True when the call ordered by failCall() has come and was made to fail.
bool faultDelivered();

/// Ends counting and failing.
void releaseCalls();

/// Keeps every call from now on, until stopTrace(). The kept calls are emptied first.
void startTrace();

/// Ends the trace and hands over what it kept, in order.
std::vector<TracedCall> stopTrace();

/// Writes every call to standard error as it happens.
void echoTrace(bool on);

namespace detail {
extern bool gateBusy; ///< counting, failing or tracing is on

/// How an operation can fail.
enum class Fallibility { none, status, thrown };

bool passGate(const char* operation, Fallibility fallibility, std::string arguments);

std::string traceText(std::wstring_view text);
std::string traceText(std::string_view text);
std::string traceText(double value);
std::string traceText(long long value);
std::string traceText(const void* pointer);

template <class T>
std::string traceArgument(const T& value)
{
    if constexpr (std::is_same_v<T, wchar_t*> || std::is_same_v<T, const wchar_t*>) {
        return value ? traceText(std::wstring_view(value)) : "null";
    } else if constexpr (std::is_convertible_v<const T&, std::wstring_view>) {
        return traceText(std::wstring_view(value));
    } else if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        return traceText(std::string_view(value));
    } else if constexpr (std::is_floating_point_v<T>) {
        return traceText(static_cast<double>(value));
    } else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) {
        return traceText(static_cast<long long>(value));
    } else if constexpr (std::is_pointer_v<T>) {
        return traceText(static_cast<const void*>(value));
    } else {
        return traceForm(value); // found by the argument's own namespace
    }
}

template <class... Arguments>
bool announce(const char* operation, Fallibility fallibility, const Arguments&... arguments)
{
    std::string list;
    ((list += (list.empty() ? "" : ", ") + traceArgument<std::decay_t<const Arguments>>(arguments)),
     ...);
    return passGate(operation, fallibility, std::move(list));
}
} // namespace detail

/// Announces a fallible operation.
/// @return true when this call was chosen to fail: take the operation's failure path
template <class... Arguments>
bool gate(const char* operation, const Arguments&... arguments)
{
    return detail::gateBusy &&
           detail::announce(operation, detail::Fallibility::status, arguments...);
}

/// Announces a fallible operation that in the real host can also throw.
/// @throw OrderedException when this call was chosen to throw
template <class... Arguments>
bool throwingGate(const char* operation, const Arguments&... arguments)
{
    return detail::gateBusy &&
           detail::announce(operation, detail::Fallibility::thrown, arguments...);
}

/// Announces an operation that cannot fail, so that the trace shows it in its place.
template <class... Arguments>
void note(const char* operation, const Arguments&... arguments)
{
    if (detail::gateBusy)
        detail::announce(operation, detail::Fallibility::none, arguments...);
}

} // namespace platform
