#include "platform/gate.h"

#include "platform/text.h"

#include <charconv>
#include <cstdio>

namespace {
using platform::Fault;

struct Gate {
    bool counting = false;
    std::size_t counted = 0;
    std::size_t failing = 0; ///< ordinal of the call that is to fail; 0 for none
    Fault fault = Fault::status;
    bool delivered = false;

    bool tracing = false;
    bool echoing = false;
    std::vector<platform::TracedCall> trace;
};

Gate gateState;

void updateBusy()
{
    platform::detail::gateBusy = gateState.counting || gateState.tracing || gateState.echoing;
}

void record(const char* operation, std::string arguments)
{
    if (gateState.echoing)
        std::fprintf(stderr, "%s(%s)\n", operation, arguments.c_str());
    if (gateState.tracing)
        gateState.trace.push_back({operation, std::move(arguments)});
}

/// Counts a fallible call. @return true when it is the one that was chosen
bool countCall()
{
    if (!gateState.counting || ++gateState.counted != gateState.failing)
        return false;
    gateState.delivered = true;
    return true;
}

void startCounting(std::size_t failing, Fault fault)
{
    gateState.counting = true;
    gateState.counted = 0;
    gateState.failing = failing;
    gateState.fault = fault;
    gateState.delivered = false;
    updateBusy();
}
} // namespace

bool platform::detail::gateBusy = false;

bool platform::detail::passGate(const char* operation, Fallibility fallibility,
                                std::string arguments)
{
    record(operation, std::move(arguments));
    if (fallibility == Fallibility::none || !countCall())
        return false;
    if (fallibility == Fallibility::thrown && gateState.fault == Fault::thrown)
        throw OrderedException(operation);
    return true;
}

void platform::countCalls()
{
    startCounting(0, Fault::status);
}

void platform::failCall(std::size_t ordinal, Fault fault)
{
    startCounting(ordinal, fault);
}

std::size_t platform::callsCounted()
{
    return gateState.counted;
}

bool platform::faultDelivered()
{
    return gateState.delivered;
}

void platform::releaseCalls()
{
    gateState.counting = false;
    updateBusy();
}

void platform::startTrace()
{
    gateState.trace.clear();
    gateState.tracing = true;
    updateBusy();
}

std::vector<platform::TracedCall> platform::stopTrace()
{
    gateState.tracing = false;
    updateBusy();
    return std::move(gateState.trace);
}

void platform::echoTrace(bool on)
{
    gateState.echoing = on;
    updateBusy();
}

std::string platform::detail::traceText(std::wstring_view text)
{
    return traceText(std::string_view(toUtf8(text)));
}

std::string platform::detail::traceText(std::string_view text)
{
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '\n')
            quoted += "\\n";
        else
            quoted += character;
    }
    return quoted + '"';
}

std::string platform::detail::traceText(double value)
{
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return {digits, end};
}

std::string platform::detail::traceText(long long value)
{
    return std::to_string(value);
}

std::string platform::detail::traceText(const void* pointer)
{
    // An address differs from run to run, and a trace is compared.
    return pointer ? "object" : "null";
}
