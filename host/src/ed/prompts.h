#pragma once

#include "ed/input_event.h"
#include "ed/prompt_rules.h"

#include <string_view>

/// What the prompts of the host are built from.
namespace korra::ed {

/// Takes the next event; the cursor follows its point.
InputEvent nextEvent();

/// Prints a prompt and waits for an answer: moves of the cursor are none. The answer is echoed.
InputEvent ask(std::wstring_view prompt);

/// What kdedInitGet() laid down, for one prompt.
PromptRules takeRules();

/// The keyword that an event names; it is then what kdedGetInput() tells.
bool isKeyword(const InputEvent& event, const PromptRules& rules);

/// True when the rules take any text and the event is one; kdedGetInput() then tells it.
bool isFreeText(const InputEvent& event, const PromptRules& rules);

enum class Blanks {
    endText, ///< a text ends at its first blank, and Space is Enter
    inText   ///< they are a part of it
};

/// Asks for a point, a number or a text by the rules that hold; as kdedGetPoint(), kdedGetReal()
/// and kdedGetString() without their gates.
int askPoint(std::wstring_view prompt, KdGePoint3d& point);
int askReal(std::wstring_view prompt, double& number);
int askText(std::wstring_view prompt, Blanks blanks, std::wstring& text);

} // namespace korra::ed
