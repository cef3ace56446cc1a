#include "platform/faults.h"
#include "platform/gate.h"
#include "platform/tally.h"
#include "support/modules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>

/// Allocates from a destructor, as a saver does that puts its value back. Visible by name.
struct LateWork {
    ~LateWork();
};

LateWork::~LateWork()
{
    std::make_unique<int>();
}

namespace {

using namespace platform;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

/// An operation that returns a number, and the call of another inside.
int ask(const char* name)
{
    return gate(name).guard(-1, [] { return gate("inner").guard(-2, [] { return 1; }); });
}

std::vector<int> askThrice()
{
    return {ask("first"), ask("second"), ask("third")};
}

TEST(Gate, FailsTheChosenCallOnceOrFromThereOn)
{
    failCall(2, Fault::status);
    EXPECT_THAT(askThrice(), ElementsAre(1, -1, 1)) << "what an operation calls does not count";
    EXPECT_EQ(callsCounted(), 3u);

    failCall(2, Fault::status, FaultMode::onward);
    EXPECT_EQ(gate("cannot fail").always([] { return 5; }), 5);
    EXPECT_THAT(askThrice(), ElementsAre(1, -1, -1));
    EXPECT_EQ(toText(faultHit().value()), "second() = -1") << "the first of them";

    releaseCalls();
    EXPECT_EQ(ask("fourth"), 1);
    EXPECT_EQ(callsCounted(), 3u);
    countCalls();
    EXPECT_FALSE(faultDelivered());
    releaseCalls();
}

TEST(Gate, WhatGivesBackDoesSoAlsoWhenItFails)
{
    bool given = false;
    failCall(1, Fault::status);
    EXPECT_EQ(gate("close", 7).afterwards(20, [&] { return given = true, 0; }), 20);
    EXPECT_TRUE(given);
    EXPECT_EQ(toText(faultHit().value()), "close(7) = 20");
    releaseCalls();
}

TEST(Gate, ThrowsOnlyWhereTheOperationCan)
{
    const auto load = [] { return throwingGate("load").guard(false, [] { return true; }); };
    failCall(1, Fault::thrown);
    EXPECT_EQ(ask("returns"), -1);
    failCall(1, Fault::thrown);
    EXPECT_THROW(load(), OrderedException);
    EXPECT_EQ(toText(faultHit().value()), "load() = exception");
    failCall(1, Fault::status);
    EXPECT_FALSE(load());
    releaseCalls();
}

TEST(Gate, TraceKeepsCallsWithTheirArgumentsAndResults)
{
    const auto calls = tests::tracedCalls([this] {
        gate("get", L"CMDECHO\n", 1.5, -2, static_cast<const void*>(nullptr)).always([] {});
        gate("set", "narrow", std::wstring(L"线"), this).always([] { return L"text"; });
        EXPECT_ANY_THROW(gate("throw").always([] { throw std::bad_alloc(); }));
        note("told", gate("make").guard(nullptr, [this] { return this; }));
    });
    EXPECT_THAT(calls, ElementsAre(R"(get("CMDECHO\n", 1.5, -2, null))",
                                   R"(set("narrow", "线", object) = "text")", "throw() = exception",
                                   "make() = object", "told(object)"));
}

/// Allocates for real: a pair of new and delete the compiler may leave out.
bool allocate()
{
    void* const memory = ::operator new(sizeof(int));
    ::operator delete(memory);
    return memory != nullptr;
}

TEST(AllocationFaults, FailTheChosenOneOfTheModuleOrOfWhatItCalls)
{
    failAllocation(2);
    EXPECT_TRUE(allocate());
    EXPECT_THROW(allocate(), std::bad_alloc);
    EXPECT_TRUE(allocate());
    EXPECT_EQ(toText(faultHit().value()), "()") << "in no operation";

    failAllocation(2, FaultMode::onward);
    EXPECT_THROW(gate("read", 5).guard(false, [&] { return allocate() && allocate(); }),
                 std::bad_alloc);
    EXPECT_EQ(gate("make").guard(nullptr, [] { return ::operator new(sizeof(int)); }), nullptr);
    EXPECT_EQ(::operator new(sizeof(int), std::nothrow), nullptr);
    EXPECT_EQ(toText(faultHit().value()), "read(5)");
    releaseCalls();
    EXPECT_TRUE(allocate());
}

TEST(AllocationFaults, SpareTheHostAndWhateverIsGivenBack)
{
    failAllocation(1, FaultMode::onward);
    EXPECT_TRUE(gate("close").afterwards(false, allocate));
    for (const Party party : {Party::host, Party::loader}) {
        const TurnOf other(party);
        EXPECT_TRUE(gate("get").guard(false, allocate));
    }
    LateWork();
    EXPECT_FALSE(faultDelivered());
    EXPECT_THROW(allocate(), std::bad_alloc);
    releaseCalls();
}

TEST(Tallies, LeftoversAreTheOnesThatAreNotBack)
{
    static Tally locks("test lock");
    static Tally entries("test entry");
    locks.add();
    entries.add();
    {
        const Tallied counted(entries);
        const Tallied copy(counted);
        EXPECT_THAT(leftovers(), Contains("3 test entries"));
    }
    EXPECT_THAT(leftovers(), AllOf(Contains("1 test entry"), Contains("1 test lock")));
    locks.remove();
    entries.reset();
    EXPECT_THAT(leftovers(), Not(Contains(::testing::HasSubstr("test"))));
}

} // namespace
