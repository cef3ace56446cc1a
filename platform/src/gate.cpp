#include "platform/gate.h"

#include "platform/allocation.h"
#include "platform/faults.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <array>
#include <cstdio>
#include <string_view>

namespace {
using platform::Fault;
using platform::FaultMode;
using platform::Party;
using platform::TracedCall;

/// One of the two things that are counted and made to fail.
struct Source {
    std::size_t counted = 0;
    std::size_t failing = 0; ///< the first that is to fail; 0 for none
    FaultMode mode = FaultMode::once;

    /// Counts one more. @return true when it is chosen
    bool count()
    {
        ++counted;
        return failing != 0 && (mode == FaultMode::once ? counted == failing : counted >= failing);
    }
};

struct RunningCall {
    TracedCall call;
    bool isHit = false;           ///< the first that the order came to
    std::size_t place = kNowhere; ///< in the trace

    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);
};

struct State {
    Party turn = Party::module;

    bool counting = false;
    Source calls;
    std::size_t throwingCalls = 0;
    Source allocations;
    Fault fault = Fault::status;
    std::optional<TracedCall> hit;

    bool tracing = false;
    bool echoing = false;
    std::vector<TracedCall> trace;
    std::vector<RunningCall> running; ///< calls of modules, outermost first
};

State state;

void update()
{
    platform::detail::gateBusy = state.counting || state.tracing || state.echoing;
    platform::detail::allocationsCount =
        state.counting && (state.turn == Party::module || state.turn == Party::operation);
}

/// Keeps a call of which only the result is not known yet.
std::size_t keep(const TracedCall& call)
{
    if (!state.tracing)
        return RunningCall::kNowhere;
    state.trace.push_back(call);
    return state.trace.size() - 1;
}

void echo(const TracedCall& call)
{
    if (state.echoing)
        std::fprintf(stderr, "%s\n", platform::toText(call).c_str());
}

/// Ends the innermost running call.
void end(std::string result)
{
    RunningCall ended = std::move(state.running.back());
    state.running.pop_back();
    ended.call.result = std::move(result);
    if (ended.isHit && state.hit)
        state.hit = ended.call;
    if (ended.place < state.trace.size())
        state.trace[ended.place] = ended.call;
    echo(ended.call);
}

/// The names of destructors end so, as the compiler writes them.
bool namesDestructor(std::string_view symbol)
{
    return symbol.starts_with("_Z") &&
           (symbol.ends_with("D0Ev") || symbol.ends_with("D1Ev") || symbol.ends_with("D2Ev"));
}

/// An exception must not leave a destructor: looks for one among the functions that are running.
bool isInsideDestructor()
{
    std::array<void*, 256> frames;
    const int depth = backtrace(frames.data(), static_cast<int>(frames.size()));
    for (std::size_t i = 0; i < static_cast<std::size_t>(depth); ++i) {
        Dl_info info;
        const char* const call = static_cast<const char*>(frames[i]) - 1; // it returns behind
        if (dladdr(call, &info) && info.dli_sname && namesDestructor(info.dli_sname))
            return true;
    }
    return false;
}

void startCounting(Source calls, Source allocations, Fault fault)
{
    state.counting = true;
    state.calls = calls;
    state.throwingCalls = 0;
    state.allocations = allocations;
    state.fault = fault;
    state.hit.reset();
    update();
}

} // namespace

bool platform::detail::gateBusy = false;
bool platform::detail::allocationsCount = false;

platform::TurnOf::TurnOf(Party party) : before_(state.turn)
{
    give(party);
}

platform::TurnOf::~TurnOf()
{
    give(before_);
}

void platform::TurnOf::give(Party party)
{
    state.turn = party;
    update();
}

void platform::detail::WatchedCall::announce(const char* operation, std::string arguments,
                                             Fallibility fallibility)
{
    RunningCall call{{operation, std::move(arguments), {}}};
    fails_ = fallibility != Fallibility::none && state.counting && state.calls.count();
    state.throwingCalls += fallibility == Fallibility::thrown ? 1 : 0;
    call.isHit = fails_ && !state.hit;
    if (call.isHit)
        state.hit = call.call;
    call.place = keep(call.call);
    state.running.push_back(std::move(call));
    if (fails_ && fallibility == Fallibility::thrown && state.fault == Fault::thrown) {
        end("exception");
        throw OrderedException(operation);
    }
    running_ = true;
}

platform::detail::WatchedCall::~WatchedCall()
{
    if (running_)
        end("exception");
}

platform::Party platform::detail::WatchedCall::turnFor(Work work) const
{
    const bool allocationsCounted =
        turn_.before() == Party::module || turn_.before() == Party::operation;
    return work == Work::doing && allocationsCounted ? Party::operation : Party::host;
}

void platform::detail::WatchedCall::finishAs(std::string result)
{
    if (std::exchange(running_, false))
        end(std::move(result));
}

void platform::detail::keepNote(const char* event, std::string arguments)
{
    const TracedCall call{event, std::move(arguments), {}};
    keep(call);
    echo(call);
}

bool platform::detail::allocationFails()
{
    const bool isOperation = state.turn == Party::operation;
    const TurnOf turn(Party::host);
    Source& allocations = state.allocations;
    if (!allocations.count())
        return false;
    if (isInsideDestructor()) {
        allocations.failing += allocations.mode == FaultMode::once ? 1 : 0;
        return false;
    }
    if (!state.hit)
        state.hit =
            isOperation && !state.running.empty() ? state.running.back().call : TracedCall{};
    return true;
}

std::string platform::toText(const TracedCall& call)
{
    const std::string result = call.result.empty() ? "" : " = " + call.result;
    return call.operation + '(' + call.arguments + ')' + result;
}

void platform::countCalls()
{
    startCounting({}, {}, Fault::status);
}

void platform::failCall(std::size_t ordinal, Fault fault, FaultMode mode)
{
    startCounting({.failing = ordinal, .mode = mode}, {}, fault);
}

void platform::failAllocation(std::size_t ordinal, FaultMode mode)
{
    startCounting({}, {.failing = ordinal, .mode = mode}, Fault::status);
}

std::size_t platform::callsCounted()
{
    return state.calls.counted;
}

std::size_t platform::throwingCallsCounted()
{
    return state.throwingCalls;
}

std::size_t platform::allocationsCounted()
{
    return state.allocations.counted;
}

const std::optional<platform::TracedCall>& platform::faultHit()
{
    return state.hit;
}

bool platform::faultDelivered()
{
    return state.hit.has_value();
}

void platform::releaseCalls()
{
    state.counting = false;
    update();
}

void platform::startTrace()
{
    state.trace.clear();
    for (RunningCall& call : state.running)
        call.place = RunningCall::kNowhere;
    state.tracing = true;
    update();
}

std::vector<platform::TracedCall> platform::stopTrace()
{
    state.tracing = false;
    update();
    return std::exchange(state.trace, {});
}

void platform::echoTrace(bool on)
{
    state.echoing = on;
    update();
}
