#pragma once

#include "platform/trace_text.h"

#include <new>
#include <tuple>
#include <utility>

/// The one place that every operation of the host and of the platform passes.
///
/// An operation is written as its name, its arguments, the result of its failing, and its body:
///
/// ```
/// Kdapi::ErrorStatus KdDbObject::upgradeOpen()
/// {
///     return platform::gate("KdDbObject::upgradeOpen", objectId())
///         .guard(Kdapi::eWasOpenForRead, [&] { … });
/// }
/// ```
///
/// Members are named `Class::operation` by the class that declares them, functions by their name.
/// Usually the gate is idle and costs one test of one flag. Told to (platform/faults.h), it traces
/// and counts the calls, or makes one fail; nothing else knows that it was made to. Only calls from
/// outside the host count: for the length of the body the host runs, and what it calls itself is
/// neither traced nor counted. Where the host lets a module run again it says so with TurnOf.
namespace platform {

/// Whose code runs, and so what counts of it.
enum class Party {
    module,    ///< a module: its calls and its allocations
    loader,    ///< a module's code on its way into memory or out of it: its calls
    operation, ///< a host operation that a module called: its allocations
    host       ///< the host for itself, or giving something back: nothing
};

/// Gives the turn to a party for the length of a scope.
///
/// The host's own entries (a command loop, opening a document) take it for Party::host, and
/// wherever they or an operation call back into a module they give it to Party::module.
class TurnOf {
public:
    explicit TurnOf(Party party);
    ~TurnOf();
    TurnOf(const TurnOf&) = delete;
    TurnOf& operator=(const TurnOf&) = delete;

    /// Passes the turn on within the scope.
    void give(Party party);

    /// Who had the turn before this scope.
    Party before() const { return before_; }

private:
    Party before_;
};

namespace detail {
extern bool gateBusy; ///< something is ordered or traced

/// How an operation can fail.
enum class Fallibility { none, status, thrown };

/// What an operation does: giving something back it does also when it fails.
enum class Work { doing, giving };

/// One call that passes the busy gate. While its body does not run, it is the host's turn.
class WatchedCall {
public:
    /// @param arguments  gives the text of the arguments; asked only where the call counts
    /// @throw OrderedException when this call was chosen to throw
    template <class Arguments>
    WatchedCall(const char* operation, Fallibility fallibility, Arguments arguments)
    {
        if (counts())
            announce(operation, arguments(), fallibility);
    }

    ~WatchedCall();
    WatchedCall(const WatchedCall&) = delete;
    WatchedCall& operator=(const WatchedCall&) = delete;

    bool fails() const { return fails_; }

    /// Runs the operation's body. No memory for what comes out as a pointer is a null for the
    /// module that asked.
    template <class Body>
    std::invoke_result_t<Body&> run(Work work, Body& body)
    {
        using Result = std::invoke_result_t<Body&>;
        const TurnOf turn(turnFor(work));
        if constexpr (std::is_pointer_v<Result>) {
            try {
                return body();
            } catch (const std::bad_alloc&) {
                if (!counts())
                    throw;
                return nullptr;
            }
        } else {
            return body();
        }
    }

    template <class Result>
    Result finish(Result result)
    {
        if (counts())
            finishAs(traceValue(result));
        return result;
    }

    void finish() { finishAs({}); }

private:
    bool counts() const
    {
        return turn_.before() == Party::module || turn_.before() == Party::loader;
    }

    Party turnFor(Work work) const;
    void announce(const char* operation, std::string arguments, Fallibility fallibility);
    void finishAs(std::string result);

    TurnOf turn_{Party::host};
    bool fails_ = false;
    bool running_ = false; ///< announced and not finished
};
} // namespace detail

/// One call of an operation, on its way through the gate.
template <class... Arguments>
class Gate {
public:
    Gate(const char* operation, detail::Fallibility fallibility, const Arguments&... arguments)
        : operation_(operation), fallibility_(fallibility), arguments_(arguments...)
    {
    }

    /// What changes or looks: made to fail, the body does not run and `failure` is the result.
    template <class Failure, class Body>
    std::invoke_result_t<Body&> guard(const Failure& failure, Body body) const
    {
        if (!detail::gateBusy)
            return body();
        detail::WatchedCall call(operation_, fallibility_, [this] { return text(); });
        if (call.fails())
            return call.finish(std::invoke_result_t<Body&>(failure));
        return call.finish(call.run(detail::Work::doing, body));
    }

    /// What gives something back (closes, unlocks, frees): also made to fail, the body runs first.
    template <class Failure, class Body>
    std::invoke_result_t<Body&> afterwards(const Failure& failure, Body body) const
    {
        if (!detail::gateBusy)
            return body();
        detail::WatchedCall call(operation_, fallibility_, [this] { return text(); });
        auto result = call.run(detail::Work::giving, body);
        if (call.fails())
            result = failure;
        return call.finish(std::move(result));
    }

    /// What cannot fail: only traced.
    template <class Body>
    std::invoke_result_t<Body&> always(Body body) const
    {
        if (!detail::gateBusy)
            return body();
        detail::WatchedCall call(operation_, detail::Fallibility::none, [this] { return text(); });
        if constexpr (std::is_void_v<std::invoke_result_t<Body&>>) {
            call.run(detail::Work::doing, body);
            call.finish();
        } else {
            return call.finish(call.run(detail::Work::doing, body));
        }
    }

private:
    std::string text() const
    {
        return std::apply([](const auto&... each) { return traceList(each...); }, arguments_);
    }

    const char* operation_;
    detail::Fallibility fallibility_;
    std::tuple<const Arguments&...> arguments_;
};

/// A call of an operation: use it at once, in the same expression.
template <class... Arguments>
Gate<Arguments...> gate(const char* operation, const Arguments&... arguments)
{
    return {operation, detail::Fallibility::status, arguments...};
}

/// A call of an operation that in the real host can also throw.
template <class... Arguments>
Gate<Arguments...> throwingGate(const char* operation, const Arguments&... arguments)
{
    return {operation, detail::Fallibility::thrown, arguments...};
}

namespace detail {
void keepNote(const char* event, std::string arguments);
} // namespace detail

/// Tells the trace of something that is no call: a message that the host sends.
template <class... Arguments>
void note(const char* event, const Arguments&... arguments)
{
    if (!detail::gateBusy)
        return;
    const TurnOf turn(Party::host);
    detail::keepNote(event, traceList(arguments...));
}

} // namespace platform
