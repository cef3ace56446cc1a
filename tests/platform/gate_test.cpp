#include "platform/gate.h"
#include "platform/input.h"
#include "platform/tally.h"
#include "platform/window.h"
#include "support/modules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace platform;
using ::testing::Contains;
using ::testing::Not;

TEST(Gate, FailsTheChosenCallOnce)
{
    failCall(2, Fault::status);
    EXPECT_FALSE(gate("first"));
    note("cannot fail");
    EXPECT_FALSE(faultDelivered());
    EXPECT_TRUE(gate("second"));
    EXPECT_TRUE(faultDelivered());
    EXPECT_FALSE(gate("third"));
    EXPECT_EQ(callsCounted(), 3u);
    releaseCalls();
    EXPECT_FALSE(gate("fourth"));
    EXPECT_EQ(callsCounted(), 3u);
}

TEST(Gate, ThrowsOnlyWhereTheOperationCan)
{
    failCall(1, Fault::thrown);
    EXPECT_TRUE(gate("returns"));
    failCall(1, Fault::thrown);
    EXPECT_THROW(throwingGate("throws"), OrderedException);
    failCall(1, Fault::status);
    EXPECT_TRUE(throwingGate("returns"));
    releaseCalls();
}

TEST(Gate, TraceKeepsCallsWithTheirArguments)
{
    const auto calls = tests::tracedCalls([this] {
        gate("get", L"CMDECHO\n", 1.5, -2, static_cast<const void*>(nullptr));
        note("set", "narrow", static_cast<const wchar_t*>(nullptr), std::wstring(L"线"), this);
    });
    note("after");
    EXPECT_THAT(calls, ::testing::ElementsAre(R"(get("CMDECHO\n", 1.5, -2, null))",
                                              R"(set("narrow", null, "线", object))"));
    EXPECT_TRUE((startTrace(), stopTrace()).empty());
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
    EXPECT_THAT(leftovers(), Contains("1 test entry"));
    EXPECT_THAT(leftovers(), Contains("1 test lock"));
    locks.remove();
    entries.reset();
    EXPECT_THAT(leftovers(), Not(Contains(::testing::HasSubstr("test"))));
}

TEST(Input, KeysAndButtonsAreHeldUntilReleased)
{
    holdKey(VK_CONTROL, true);
    EXPECT_LT(GetKeyState(VK_CONTROL), 0);
    EXPECT_LT(GetAsyncKeyState(VK_CONTROL), 0);
    EXPECT_EQ(GetAsyncKeyState(VK_LBUTTON), 0);
    EXPECT_EQ(GetAsyncKeyState(-1) | GetAsyncKeyState(256), 0);
    releaseKeys();
    EXPECT_EQ(GetKeyState(VK_CONTROL), 0);

    EXPECT_TRUE(GetSystemMetrics(SM_MOUSEPRESENT));
    EXPECT_FALSE(GetSystemMetrics(SM_SWAPBUTTON));
    setButtonsSwapped(true);
    setMousePresent(false);
    EXPECT_FALSE(GetSystemMetrics(SM_MOUSEPRESENT));
    EXPECT_TRUE(GetSystemMetrics(SM_SWAPBUTTON));
    setButtonsSwapped(false);
    setMousePresent(true);
}

TEST(Windows, AMessageReachesItsWindow)
{
    struct Sink final : HWND__ {
        LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override
        {
            return static_cast<LRESULT>(message + wParam) + lParam;
        }
    };

    Sink window;
    EXPECT_EQ(SendMessageW(&window, 1, 20, 300), 321);
    EXPECT_EQ(SendMessageW(nullptr, 1, 20, 300), 0);
    failCall(1, Fault::status);
    EXPECT_EQ(SendMessageW(&window, 1, 20, 300), 0);
    releaseCalls();
}

TEST(Files, AttributesTellFoldersFromFiles)
{
    const auto folder = std::filesystem::temp_directory_path();
    EXPECT_EQ(GetFileAttributesW(folder.wstring().c_str()), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(GetFileAttributesW(L"/proc/self/exe"), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(GetFileAttributesW(L"/nowhere/at all"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesW(nullptr), INVALID_FILE_ATTRIBUTES);
}

} // namespace
