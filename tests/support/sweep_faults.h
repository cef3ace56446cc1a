#pragma once

#include <functional>
#include <optional>

namespace tests {

/// Which faults a scenario is to withstand.
enum class Faults {
    all,
    single ///< each once: what waits for an answer waits for ever when none comes any more
};

namespace detail {
struct Swept {
    std::function<void()> prepare;
    std::function<void()> scenario;
    std::function<void()> check;
    Faults faults;
};

void sweep(const Swept& swept);
} // namespace detail

/// Runs a scenario with everything failing that can: each fallible host call with its status, each
/// that can throw with an exception, and memory allocations, every time once and from there on.
///
/// Each run has a fresh host; `prepare` runs unharmed, `scenario` is swept, `check` asserts the
/// promise that holds whatever failed. After each run the audit must be clean; what the scenario
/// returns is not asked. Ordered exceptions that leave the scenario are taken as they come. Of many
/// allocations an even choice fails, none in a program that does not link the faults of
/// allocations.
template <class Prepared>
void sweepFaults(const std::function<Prepared()>& prepare,
                 const std::function<void(Prepared&)>& scenario,
                 const std::function<void(Prepared&)>& check = nullptr, Faults faults = Faults::all)
{
    std::optional<Prepared> prepared;
    detail::sweep({[&] { prepared.emplace(prepare()); }, [&] { scenario(*prepared); },
                   [&] {
                       if (check)
                           check(*prepared);
                   },
                   faults});
}

} // namespace tests
