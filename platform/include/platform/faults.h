#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// The control side of the gate: what programs and tests order, and what they are told.
///
/// There are two sources of faults: the operations that a module calls, and the memory allocations
/// made while it runs, its own and those of the operations that it called. Neither counts what the
/// host does for itself. One fault is ordered at a time. Allocations count only in a program that
/// links `orvex_allocation_faults`; no allocation fails where something is given back or destroyed,
/// nor while a module is brought into memory or out of it.
namespace platform {

/// What an exception that was ordered looks like to its catcher.
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

/// How many calls or allocations fail.
enum class FaultMode {
    once,  ///< the chosen one
    onward ///< the chosen one and all behind it
};

/// One call as the trace keeps it: `kdedGetVar("CMDECHO") = 5100`.
struct TracedCall {
    std::string operation;
    std::string arguments; ///< comma-separated, texts quoted
    std::string result;    ///< empty where there is none, "exception" where one left the operation
};

/// The call as it is printed: a result stands behind " = ".
std::string toText(const TracedCall& call);

/// Starts counting fallible calls and allocations from zero; none is made to fail.
void countCalls();

/// Makes the `ordinal`-th fallible call from now on fail; the first call is 1.
void failCall(std::size_t ordinal, Fault fault, FaultMode mode = FaultMode::once);

/// Makes the `ordinal`-th allocation from now on throw std::bad_alloc; the first is 1. In a
/// destructor the next one outside takes its place.
void failAllocation(std::size_t ordinal, FaultMode mode = FaultMode::once);

/// Fallible calls since countCalls() or failCall().
std::size_t callsCounted();

/// Of these the calls of operations that can throw.
std::size_t throwingCallsCounted();

/// Allocations since countCalls() or failAllocation().
std::size_t allocationsCounted();

/// The call that the ordered fault has hit, the first where they are several; for an allocation the
/// operation that it was made in, or no operation when it was made by the module itself.
/// None as long as the fault has not come up.
const std::optional<TracedCall>& faultHit();

/// True when the ordered fault has come up.
bool faultDelivered();

/// Ends counting and failing.
void releaseCalls();

/// Keeps every call from now on, until stopTrace(), in the order in which they begin. The kept
/// calls are emptied first.
void startTrace();

/// Ends the trace and hands over what it kept.
std::vector<TracedCall> stopTrace();

/// Writes every call to standard error when it ends.
void echoTrace(bool on);

} // namespace platform
