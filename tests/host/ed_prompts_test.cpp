#include "ed/input_stream.h"
#include "ed/script_lines.h"

#include "platform/input.h"
#include "support/room_test.h"

#include <windows.h>

#include <utility>

namespace {

/// Status and value of a prompt for a number; 99 where it gave none.
using Answer = std::pair<int, double>;

class PromptsTest : public HostTest {
protected:
    static Answer askReal()
    {
        double value = 99;
        const int status = kdedGetReal(L"\nHow much: ", &value);
        return {status, value};
    }
};

TEST_F(PromptsTest, WhatIsWrongIsAskedForAgainAndAFailureTakesNoInput)
{
    give({"abc", "\\miss 1,2", "-1", "0", "4", "-1", "5"});
    kdedInitGet(2 | 4, nullptr);
    EXPECT_EQ(askReal(), Answer(RTNORM, 4));
    EXPECT_EQ(askReal(), Answer(RTNORM, -1)) << "the rules hold for one prompt";
    platform::failCall(1, platform::Fault::status);
    EXPECT_EQ(askReal(), Answer(RTERROR, 99)) << "takes no input";
    EXPECT_EQ(askReal(), Answer(RTNORM, 5));
}

TEST_F(PromptsTest, EachAnswerHasItsStatus)
{
    // The lines; what kdedInitGet() is told; the status and what kdedGetInput() gives.
    const std::tuple<std::vector<std::string>, int, const wchar_t*, int, std::wstring> cases[] = {
        {{""}, 0, L"", RTNONE, L""},
        {{"\\right"}, 0, L"", RTNONE, L""},
        {{"", "\\right", "3"}, 1, L"", RTNORM, L""},
        {{"\\esc"}, 1, L"", RTCAN, L""},
        {{}, 1, L"", RTCAN, L""},
        {{"\\move 1,1", "3"}, 0, L"", RTNORM, L""},
        {{"r"}, 0, L"Copy Reference", RTKWORD, L"Reference"},
        {{"REFER"}, 0, L"Copy Reference", RTKWORD, L"Reference"},
        {{"_reference"}, 0, L"Copy Reference", RTKWORD, L"Reference"},
        {{"referx", "c"}, 0, L"Copy Reference", RTKWORD, L"Copy"},
        {{"l", "lt"}, 0, L"LType", RTKWORD, L"LType"},
        {{"e", "x"}, 0, L"eXit", RTKWORD, L"eXit"},
        {{"any text"}, 128, L"Copy", RTSTR, L"any text"},
        {{"\\\\esc"}, 128, L"", RTSTR, L"\\esc"},
        {{"\\ctrl"}, 128, L"", RTSTR, L"\\ctrl"}, // without its point
    };

    for (const auto& [lines, flags, keywords, status, told] : cases) {
        SCOPED_TRACE(PrintToString(lines));
        startFreshHost();
        give(lines);
        kdedInitGet(flags, keywords);
        EXPECT_EQ(askReal().first, status);
        wchar_t input[40] = L"";
        if (!told.empty()) {
            EXPECT_EQ(kdedGetInput(input, 40), RTNORM);
        }
        EXPECT_EQ(input, told);
    }
}

TEST_F(PromptsTest, PointsComeFromTextsAndClicks)
{
    const std::pair<const char*, KdGePoint3d> cases[] = {
        {"1,2", {1, 2, 0}},        {"-1.5, 2e1 ,.5", {-1.5, 20, 0.5}}, {"+3,4", {3, 4, 0}},
        {"\\ctrl 5,6", {5, 6, 0}}, {"\\miss 7,8,9", {7, 8, 9}},
    };
    for (const auto& [line, expected] : cases) {
        give({"1;2", "1,", "1,2,3,4", "inf,1", line});
        double point[3];
        EXPECT_EQ(kdedGetPoint(nullptr, L"\nPoint: ", point), RTNORM);
        EXPECT_EQ(KdGePoint3d(point[0], point[1], point[2]), expected) << line;
    }
}

TEST_F(PromptsTest, ATextEndsAtABlankUnlessBlanksAreAllowed)
{
    wchar_t text[8] = L"unset";
    const auto ask = [&](int blanks) {
        EXPECT_EQ(kdedGetString(blanks, L"", text, 8), RTNORM);
        return std::wstring(text);
    };
    give({"two words", "two words", "\xE7\xBA\xBF", ""});
    EXPECT_EQ(ask(0), L"two");
    EXPECT_EQ(ask(1), L"two wor") << "cut to the buffer";
    EXPECT_EQ(ask(1), L"\x7EBF");
    EXPECT_EQ(ask(1), L"");
    EXPECT_EQ(kdedGetString(1, L"", text, 8), RTCAN);
}

TEST_F(PromptsTest, KeysAreHeldUntilTheNextInputIsTaken)
{
    // The line, the key, and whether the buttons are swapped.
    const std::tuple<const char*, int, bool> cases[] = {
        {"", VK_RETURN, false},         {"\\space", VK_SPACE, false},
        {"\\right", VK_RBUTTON, false}, {"\\right", VK_LBUTTON, true},
        {"\\miss", VK_LBUTTON, false},  {"\\miss", VK_RBUTTON, true},
        {"1,2", VK_LBUTTON, false},     {"\\ctrl 1,2", VK_CONTROL, false},
    };
    const auto isHeld = [](int key) { return GetAsyncKeyState(key) < 0; };
    korra::ed::InputStream stream;
    for (const auto& [line, key, swapped] : cases) {
        platform::setButtonsSwapped(swapped);
        stream.queue().add(korra::ed::readInputLine(line));
        stream.take();
        EXPECT_TRUE(isHeld(key)) << line;
        EXPECT_FALSE(isHeld(VK_LBUTTON) && isHeld(VK_RBUTTON)) << line;
        stream.take();
        EXPECT_FALSE(isHeld(key)) << "after " << line;
    }
    platform::setButtonsSwapped(false);
}

/// Kind of an event that tracking reports, and where.
using Tracked = std::pair<int, double>;

void takePoint()
{
    double point[3];
    ASSERT_EQ(kdedGetPoint(nullptr, L"", point), RTNORM);
}

Tracked trackOnce()
{
    int type = 0;
    resbuf result{};
    if (kdedGrRead(9, &type, &result) != RTNORM)
        return {0, 0};
    return {type, result.restype == RT3DPOINT ? result.resval.rpoint[0] : result.resval.rint};
}

TEST_F(PromptsTest, TrackingTellsTheCursorThenWhatFollowsButTakesNoCommand)
{
    give({"1,1", "\\move 2,2", "\\move 3,3", "4,4", "ab", "\\right"});
    takePoint();
    std::vector<Tracked> told;
    for (int i = 0; i < 9; ++i)
        told.push_back(trackOnce());
    EXPECT_THAT(told, ElementsAre(Tracked{5, 2}, Tracked{5, 3}, Tracked{3, 4}, Tracked{2, L'a'},
                                  Tracked{2, L'b'}, Tracked{2, 13}, Tracked{25, 4}, Tracked{5, 4},
                                  Tracked{5, 4}));

    give({"1,1", "REGEN"});
    takePoint();
    EXPECT_EQ(trackOnce(), (Tracked{5, 1}));
    EXPECT_TRUE(korra::runCommands());
    EXPECT_THAT(printed(), HasSubstr("Command: REGEN"));
}

TEST_F(PromptsTest, ATerminalIsAskedByPromptsAloneAndShowsItsLinesItself)
{
    std::vector<std::string> lines = {"5"};
    const auto read = [&]() -> std::optional<std::string> {
        return lines.empty() ? std::nullopt : std::optional(std::exchange(lines, {}).front());
    };
    korra::setInputSource(read, korra::InputEcho::byUser);
    EXPECT_EQ(trackOnce().first, 5);
    EXPECT_EQ(lines.size(), 1u) << "where the cursor is needs nobody";

    EXPECT_EQ(askReal(), Answer(RTNORM, 5));
    EXPECT_EQ(printed(), "\nHow much: ");
    lines = {"6"};
    EXPECT_EQ(askReal(), Answer(RTNORM, 6));
    EXPECT_EQ(askReal().first, RTCAN);
    lines = {"7"};
    EXPECT_EQ(askReal().first, RTCAN) << "the end is for good";
}

} // namespace
