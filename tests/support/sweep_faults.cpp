#include "support/sweep_faults.h"

#include "support/host_test.h"

#include <algorithm>
#include <new>

namespace tests::detail {

namespace {

using platform::failCall;
using platform::Fault;
using platform::FaultMode;

/// An even choice of so many allocations keeps a sweep short.
constexpr std::size_t kMostAllocations = 60;

/// What is made to fail, and how often it comes up.
struct Source {
    const char* how;
    std::size_t count;
    void (*order)(std::size_t ordinal, FaultMode mode);
};

void start(const Swept& swept)
{
    startFreshHost();
    swept.prepare();
}

std::vector<Source> countSources(const Swept& swept)
{
    start(swept);
    platform::countCalls();
    swept.scenario();
    platform::releaseCalls();
    EXPECT_THAT(korra::audit(), ::testing::IsEmpty()) << "with nothing failing";
    const auto fail = [](auto ordinal, auto mode) { failCall(ordinal, Fault::status, mode); };
    const auto raise = [](auto ordinal, auto mode) { failCall(ordinal, Fault::thrown, mode); };
    const bool anyThrows = platform::throwingCallsCounted() > 0;
    return {{"failing", platform::callsCounted(), fail},
            {"throwing", anyThrows ? platform::callsCounted() : 0, raise},
            {"without memory", platform::allocationsCounted(), platform::failAllocation}};
}

void runFaulty(const Swept& swept, const Source& source, std::size_t ordinal, FaultMode mode)
{
    start(swept);
    source.order(ordinal, mode);
    try {
        swept.scenario();
    } catch (const platform::OrderedException&) {
    } catch (const std::bad_alloc&) {
    }
    platform::releaseCalls();
    const auto hit = platform::faultHit();
    const std::string trace = "number " + std::to_string(ordinal) + ' ' + source.how +
                              (mode == FaultMode::once ? " once" : " and all behind") + ", in " +
                              (hit ? toText(*hit) : "nothing");
    SCOPED_TRACE(trace);
    swept.check();
    EXPECT_THAT(korra::audit(), ::testing::IsEmpty());
}

} // namespace

void sweep(const Swept& swept)
{
    const std::vector<Source> sources = countSources(swept);
    ASSERT_GT(sources[0].count, 0u) << "the scenario passes no fallible host operation";
    for (const Source& source : sources) {
        const std::size_t step =
            source.order == platform::failAllocation ? 1 + source.count / kMostAllocations : 1;
        for (const FaultMode mode : {FaultMode::once, FaultMode::onward}) {
            if (mode == FaultMode::onward && swept.faults == Faults::single)
                continue;
            for (std::size_t ordinal = 1; ordinal <= source.count; ordinal += step)
                runFaulty(swept, source, ordinal, mode);
        }
    }
}

} // namespace tests::detail
