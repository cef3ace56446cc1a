#include "ed/prompts.h"

#include "ed/editor.h"
#include "ed/typed_values.h"
#include "ed/user_system.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <utility>

namespace korra::ed {
namespace {

void moveCursor(const KdGePoint3d& userPoint)
{
    const KdDbDatabase* const database = currentDatabase();
    editor().cursor = database ? userToWorld(*database) * userPoint : userPoint;
    editor().cursorReported = false;
}

void show(const InputEvent& event)
{
    CommandLine& line = editor().commandLine;
    if (event.is<EndEvent>())
        line.freshLine();
    else if (event.echo)
        line.echo(*event.echo);
    else
        line.lineEndedByUser();
}

void sayInvalid(const wchar_t* what)
{
    printLine(std::wstring(L"Not ") + what + L'.');
}

/// What every prompt takes before what it asks for; nullopt: none of that.
std::optional<int> commonAnswer(const InputEvent& event, const PromptRules& rules)
{
    if (isCancel(event))
        return RTCAN;
    if (isEnter(event) && !rules.has(PromptRules::kNoEnter))
        return RTNONE;
    if (isKeyword(event, rules))
        return RTKWORD;
    return std::nullopt;
}

bool isTaken(double number, const PromptRules& rules)
{
    return !(rules.has(PromptRules::kNoZero) && number == 0.0) &&
           !(rules.has(PromptRules::kNoNegative) && number < 0.0);
}

} // namespace

InputEvent nextEvent()
{
    InputEvent event = editor().input.take();
    if (const auto place = placeOf(event))
        moveCursor(*place);
    return event;
}

InputEvent ask(std::wstring_view prompt)
{
    editor().commandLine.print(platform::toUtf8(prompt));
    InputEvent event = nextEvent();
    while (event.is<MoveEvent>())
        event = nextEvent();
    editor().cursorReported = false;
    show(event);
    return event;
}

PromptRules takeRules()
{
    return std::exchange(editor().rules, {});
}

bool isKeyword(const InputEvent& event, const PromptRules& rules)
{
    const std::wstring* const text = typedText(event);
    const auto keyword = text ? rules.keywords.find(*text) : std::nullopt;
    if (keyword)
        editor().lastInput = *keyword;
    return keyword.has_value();
}

bool isFreeText(const InputEvent& event, const PromptRules& rules)
{
    const std::wstring* const text = typedText(event);
    if (!text || !rules.has(PromptRules::kAnyText))
        return false;
    editor().lastInput = *text;
    return true;
}

int askPoint(std::wstring_view prompt, KdGePoint3d& point)
{
    const PromptRules rules = takeRules();
    while (true) {
        const InputEvent event = ask(prompt);
        if (const std::optional<int> status = commonAnswer(event, rules))
            return *status;
        if (const std::optional<KdGePoint3d> given = placeOf(event)) {
            point = *given;
            currentDocument()->editor->lastPoint = point;
            return RTNORM;
        }
        if (isFreeText(event, rules))
            return RTSTR;
        sayInvalid(L"a point");
    }
}

int askReal(std::wstring_view prompt, double& number)
{
    const PromptRules rules = takeRules();
    while (true) {
        const InputEvent event = ask(prompt);
        if (const std::optional<int> status = commonAnswer(event, rules))
            return *status;
        const std::wstring* const text = typedText(event);
        const auto given = text ? readReal(*text) : std::nullopt;
        if (given && isTaken(*given, rules)) {
            number = *given;
            return RTNORM;
        }
        if (isFreeText(event, rules))
            return RTSTR;
        sayInvalid(L"an allowed number");
    }
}

int askText(std::wstring_view prompt, Blanks blanks, std::wstring& text)
{
    const PromptRules rules = takeRules();
    while (true) {
        const InputEvent event = ask(prompt);
        if (isCancel(event))
            return RTCAN;
        const std::wstring* const typed = typedText(event);
        const bool blank = event.is<KeyEvent>() && blanks == Blanks::inText;
        const bool enter = isEnter(event) && !blank;
        if (!typed && !blank && (!enter || rules.has(PromptRules::kNoEnter)))
            continue;
        text = blank ? L" " : typed ? *typed : L"";
        if (blanks == Blanks::endText)
            text.erase(std::min(text.find(L' '), text.size()));
        return RTNORM;
    }
}

namespace {

/// Copies a text, cut to the buffer.
int give(const std::wstring& text, wchar_t* result, std::size_t size)
{
    const std::size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.c_str(), length, result);
    result[length] = L'\0';
    return RTNORM;
}

std::wstring_view orNothing(const wchar_t* prompt)
{
    return prompt ? prompt : L"";
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedInitGet(int flags, const wchar_t* keywords)
{
    return platform::gate("kdedInitGet", flags, keywords).guard(RTERROR, [&]() -> int {
        if (!runningEditor())
            return RTERROR;
        editor().rules = {flags, Keywords(orNothing(keywords))};
        return RTNORM;
    });
}

int kdedGetReal(const wchar_t* prompt, double* result)
{
    return platform::gate("kdedGetReal", prompt).guard(RTERROR, [&]() -> int {
        if (!result || !runningEditor())
            return RTERROR;
        return askReal(orNothing(prompt), *result);
    });
}

int kdedGetPoint(const kds_point, const wchar_t* prompt, kds_point result)
{
    return platform::gate("kdedGetPoint", prompt).guard(RTERROR, [&]() -> int {
        if (!result || !currentDocument())
            return RTERROR;
        KdGePoint3d point;
        const int status = askPoint(orNothing(prompt), point);
        for (unsigned int axis = 0; status == RTNORM && axis < 3; ++axis)
            result[axis] = point[axis];
        return status;
    });
}

int kdedGetString(int allowBlanks, const wchar_t* prompt, wchar_t* result, std::size_t size)
{
    return platform::gate("kdedGetString", prompt).guard(RTERROR, [&]() -> int {
        if (!result || size == 0 || !runningEditor())
            return RTERROR;
        std::wstring text;
        const int status =
            askText(orNothing(prompt), allowBlanks ? Blanks::inText : Blanks::endText, text);
        return status == RTNORM ? give(text, result, size) : status;
    });
}

int kdedGetInput(wchar_t* result, std::size_t size)
{
    return platform::gate("kdedGetInput").guard(RTERROR, [&]() -> int {
        if (!result || size == 0 || !runningEditor())
            return RTERROR;
        return give(editor().lastInput, result, size);
    });
}
