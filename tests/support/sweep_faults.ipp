#pragma once

namespace tests {

namespace detail {
/// Runs `scenario` with the fault ordered. @return true when the call to fail came up
bool runFaulty(const FaultyRun& run, const std::function<void()>& scenario);
void expectCleanAudit(const FaultyRun& run);
std::size_t countFallibleCalls(const std::function<void()>& scenario);
} // namespace detail

template <class Prepared>
void sweepFaults(const std::function<Prepared()>& prepare,
                 const std::function<void(Prepared&)>& scenario,
                 const std::function<void(Prepared&)>& check)
{
    startFreshHost();
    Prepared unharmed = prepare();
    const std::size_t calls = detail::countFallibleCalls([&] { scenario(unharmed); });
    ASSERT_GT(calls, 0u) << "the scenario passes no fallible host operation";

    for (const platform::Fault fault : {platform::Fault::status, platform::Fault::thrown}) {
        for (std::size_t ordinal = 1; ordinal <= calls; ++ordinal) {
            const FaultyRun run{ordinal, fault};
            startFreshHost();
            Prepared prepared = prepare();
            const bool delivered = detail::runFaulty(run, [&] { scenario(prepared); });
            EXPECT_TRUE(delivered) << "call " << ordinal << " of " << calls << " did not come up";
            if (check)
                check(prepared);
            detail::expectCleanAudit(run);
        }
    }
}

} // namespace tests
