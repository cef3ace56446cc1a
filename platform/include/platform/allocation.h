#pragma once

/// What the replacement of operator new asks, in programs that link `orvex_allocation_faults`.
namespace platform::detail {

extern bool
    allocationsCount; ///< allocations are ordered or counted, and it is the turn of one that counts

/// Counts an allocation. @return true when it is one that is to fail
bool allocationFails();

} // namespace platform::detail
