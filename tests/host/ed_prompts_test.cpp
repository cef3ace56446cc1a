#include "ed/input_stream.h"
#include "ed/number_text.h"
#include "ed/script_lines.h"

#include "platform/input.h"
#include "support/host_test.h"

#include <windows.h>

#include <utility>

using namespace tests;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

bool isHeld(int key)
{
    return GetAsyncKeyState(key) < 0;
}

class PromptsTest : public HostTest {
protected:
    static void give(const std::vector<std::string>& lines)
    {
        for (const std::string& line : lines)
            korra::queueInput(line);
    }

    static int askReal(double& value) { return kdedGetReal(L"\nHow much: ", &value); }
};

TEST_F(PromptsTest, AnInputIsEchoedBehindItsPromptAndEndsTheLine)
{
    give({"2.5", "line one"});
    double number = 0.0;
    wchar_t text[80];
    EXPECT_EQ(kdedGetReal(L"\nFactor: ", &number), RTNORM);
    EXPECT_EQ(kdedGetString(1, L"\nText: ", text, 80), RTNORM);
    kdutPrintf(L"\nresult %s", L"\x7EBF");
    kdutPrintf(L"\nnext\n");
    EXPECT_EQ(printed(), "\nFactor: 2.5\nText: line one\nresult \xE7\xBA\xBF\nnext\n");
    EXPECT_EQ(number, 2.5);
    EXPECT_STREQ(text, L"line one");
}

TEST_F(PromptsTest, WhatIsWrongIsAskedForAgainAndAFailureTakesNoInput)
{
    give({"abc", "\\miss 1,2", "-1", "0", "4"});
    kdedInitGet(2 | 4, nullptr);
    double number = 0.0;
    EXPECT_EQ(askReal(number), RTNORM);
    EXPECT_EQ(number, 4.0);

    give({"-1"});
    EXPECT_EQ(askReal(number), RTNORM) << "the rules hold for one prompt";
    EXPECT_EQ(number, -1.0);

    give({"5"});
    platform::failCall(1, platform::Fault::status);
    EXPECT_EQ(askReal(number), RTERROR) << "takes no input";
    EXPECT_EQ(number, -1.0);
    EXPECT_EQ(askReal(number), RTNORM);
    EXPECT_EQ(number, 5.0);
}

TEST_F(PromptsTest, EachAnswerHasItsStatus)
{
    const struct {
        std::vector<std::string> lines;
        int flags;
        const wchar_t* keywords;
        int status;
        const wchar_t* input; ///< what kdedGetInput() tells; null: not asked
    } cases[] = {
        {{""}, 0, L"", RTNONE, nullptr},
        {{"\\space"}, 0, L"", RTNONE, nullptr},
        {{"\\right"}, 0, L"", RTNONE, nullptr},
        {{"", "\\right", "3"}, 1, L"", RTNORM, nullptr},
        {{"\\esc"}, 1, L"", RTCAN, nullptr},
        {{}, 1, L"", RTCAN, nullptr},
        {{"\\move 1,1", "3"}, 0, L"", RTNORM, nullptr},
        {{"r"}, 0, L"Copy Reference", RTKWORD, L"Reference"},
        {{"REFER"}, 0, L"Copy Reference", RTKWORD, L"Reference"},
        {{"_reference"}, 0, L"Copy Reference", RTKWORD, L"Reference"},
        {{"referx", "c"}, 0, L"Copy Reference", RTKWORD, L"Copy"},
        {{"l", "lt"}, 0, L"LType", RTKWORD, L"LType"},
        {{"e", "x"}, 0, L"eXit", RTKWORD, L"eXit"},
        {{"any text"}, 128, L"Copy", RTSTR, L"any text"},
        {{"\\\\esc"}, 128, L"", RTSTR, L"\\esc"},
        {{"\\unknown"}, 128, L"", RTSTR, L"\\unknown"},
        {{"\\escape"}, 128, L"", RTSTR, L"\\escape"},
        {{"\\esc now"}, 128, L"", RTSTR, L"\\esc now"},
        {{"\\ctrl"}, 128, L"", RTSTR, L"\\ctrl"}, // without its point
    };

    for (const auto& each : cases) {
        const std::string name = ::testing::PrintToString(each.lines);
        startFreshHost();
        give(each.lines);
        kdedInitGet(each.flags, each.keywords);
        double number = 0.0;
        EXPECT_EQ(askReal(number), each.status) << name;
        if (each.input) {
            wchar_t input[40];
            EXPECT_EQ(kdedGetInput(input, 40), RTNORM);
            EXPECT_STREQ(input, each.input) << name;
        }
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
    const struct {
        const char* line;
        int key;
        bool swapped;
    } cases[] = {
        {"", VK_RETURN, false},
        {"\\space", VK_SPACE, false},
        {"\\right", VK_RBUTTON, false},
        {"\\right", VK_LBUTTON, true},
        {"\\miss", VK_LBUTTON, false},
        {"\\miss", VK_RBUTTON, true},
        {"1,2", VK_LBUTTON, false},
        {"\\ctrl 1,2", VK_CONTROL, false},
        {"\\ctrl 1,2", VK_LBUTTON, false},
    };

    korra::ed::InputStream stream;
    for (const auto& each : cases) {
        platform::setButtonsSwapped(each.swapped);
        stream.queue().add(korra::ed::readInputLine(each.line));
        stream.take();
        EXPECT_TRUE(isHeld(each.key)) << each.line;
        EXPECT_FALSE(isHeld(VK_LBUTTON) && isHeld(VK_RBUTTON)) << each.line;
        stream.take();
        EXPECT_FALSE(isHeld(each.key)) << "after " << each.line;
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

TEST_F(PromptsTest, TrackingTellsTheCursorThenWhatFollows)
{
    give({"1,1", "\\move 2,2", "\\move 3,3", "4,4", "ab", "\\right"});
    takePoint();
    std::vector<Tracked> told;
    for (int i = 0; i < 9; ++i)
        told.push_back(trackOnce());
    EXPECT_THAT(told, ElementsAre(Tracked{5, 2}, Tracked{5, 3}, Tracked{3, 4}, Tracked{2, L'a'},
                                  Tracked{2, L'b'}, Tracked{2, 13}, Tracked{25, 4}, Tracked{5, 4},
                                  Tracked{5, 4}));
}

TEST_F(PromptsTest, TrackingTakesNoCommandInsteadOfTheCursor)
{
    give({"1,1", "REGEN"});
    takePoint();
    EXPECT_EQ(trackOnce(), (Tracked{5, 1}));
    EXPECT_TRUE(korra::runCommands());
    EXPECT_THAT(printed(), HasSubstr("Command: REGEN"));
}

TEST_F(PromptsTest, ATerminalIsAskedByPromptsAloneAndShowsItsLinesItself)
{
    std::vector<std::string> lines = {"5"};
    int asked = 0;
    const auto read = [&]() -> std::optional<std::string> {
        ++asked;
        return lines.empty() ? std::nullopt : std::optional(std::exchange(lines, {}).front());
    };
    korra::setInputSource(read, korra::InputEcho::byUser);
    EXPECT_EQ(trackOnce().first, 5);
    EXPECT_EQ(asked, 0) << "where the cursor is needs nobody";

    double number = 0.0;
    EXPECT_EQ(askReal(number), RTNORM);
    EXPECT_EQ(number, 5.0);
    EXPECT_EQ(printed(), "\nHow much: ");
    lines = {"6"};
    EXPECT_EQ(askReal(number), RTNORM);
    EXPECT_EQ(askReal(number), RTCAN);
    lines = {"7"};
    EXPECT_EQ(askReal(number), RTCAN) << "the end is for good";
}

TEST(TypedCharactersTest, WhatNoEnterHasEndedBeginsTheNextLine)
{
    korra::ed::EventQueue queue;
    korra::ed::TypedCharacters typed(queue);
    const auto read = [] { return std::optional<std::string>("3"); };
    korra::ed::LineSource lines(read, korra::InputEcho::byHost, typed);
    typed.type(L"1 2");
    EXPECT_EQ(*korra::ed::typedText(queue.next().value()), L"1");
    EXPECT_FALSE(queue.next());
    EXPECT_EQ(lines.next()->echo, "23");
    EXPECT_EQ(lines.next()->echo, "3");
}

TEST_F(PromptsTest, TrackedPointsFollowTheUserSystem)
{
    ASSERT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::translation({10, 0, 0})), Kdapi::eOk);
    give({"1,1"});
    takePoint();
    ASSERT_EQ(kdedSetCurrentUCS(KdGeMatrix3d::kIdentity), Kdapi::eOk);
    EXPECT_EQ(trackOnce(), (Tracked{5, 11}));
}

TEST(NumberText, HasUpToSixDecimals)
{
    using korra::ed::numberText;
    EXPECT_EQ(numberText(2.5), L"2.5");
    EXPECT_EQ(numberText(100), L"100");
    EXPECT_EQ(numberText(-1e-9), L"0");
    EXPECT_EQ(numberText(1.0 / 3), L"0.333333");
    EXPECT_EQ(numberText(1e20), L"100000000000000000000");
}

} // namespace
