#include "ed/script_lines.h"

#include "ed/typed_values.h"
#include "platform/text.h"

#include <array>

namespace korra::ed {
namespace {

constexpr HeldKeys kNothingHeld{};
constexpr HeldKeys kEnterHeld{.enter = true};
constexpr HeldKeys kSpaceHeld{.space = true};
constexpr HeldKeys kPrimaryHeld{.primary = true};
constexpr HeldKeys kSecondaryHeld{.secondary = true};
constexpr HeldKeys kControlClick{.control = true, .primary = true};

using Place = std::optional<KdGePoint3d>;

enum class PlaceNeed { none, allowed, required };

struct HandMovement {
    std::wstring_view word;
    PlaceNeed need;
    InputEvent (*event)(const Place& place);
};

constexpr std::array<HandMovement, 6> kHandMovements = {{
    {L"\\esc", PlaceNeed::none,
     [](const Place&) {
         return InputEvent{CancelEvent(), kNothingHeld};
     }},
    {L"\\miss", PlaceNeed::allowed,
     [](const Place& place) {
         return InputEvent{ButtonEvent{Button::primary, place}, kPrimaryHeld};
     }},
    {L"\\right", PlaceNeed::none,
     [](const Place&) {
         return InputEvent{ButtonEvent{Button::secondary, {}}, kSecondaryHeld};
     }},
    {L"\\space", PlaceNeed::none,
     [](const Place&) {
         return InputEvent{KeyEvent{L' '}, kSpaceHeld};
     }},
    {L"\\ctrl", PlaceNeed::required,
     [](const Place& place) {
         return InputEvent{PointEvent{*place, {}}, kControlClick};
     }},
    {L"\\move", PlaceNeed::required,
     [](const Place& place) {
         return InputEvent{MoveEvent{*place}, kNothingHeld};
     }},
}};

/// The event of a text that is the movement, with the place that it needs and nothing else.
std::optional<InputEvent> readMovement(const HandMovement& movement, std::wstring_view text)
{
    if (!text.starts_with(movement.word))
        return std::nullopt;
    const std::wstring_view rest = text.substr(movement.word.size());
    if (!rest.empty() && !platform::isSpace(rest.front()))
        return std::nullopt;
    const bool bare = platform::trimmedLeft(rest).empty();
    const Place place = readPoint(rest);
    if (bare ? movement.need == PlaceNeed::required : movement.need == PlaceNeed::none || !place)
        return std::nullopt;
    return movement.event(place);
}

InputEvent eventOf(std::wstring text)
{
    if (text.empty())
        return {EnterEvent(), kEnterHeld};
    if (const Place place = readPoint(text))
        return {PointEvent{*place, std::move(text)}, kPrimaryHeld};
    return {TextEvent{std::move(text)}, kNothingHeld};
}

InputEvent eventOfLine(std::wstring text)
{
    for (const HandMovement& movement : kHandMovements) {
        if (auto event = readMovement(movement, text))
            return *std::move(event);
    }
    if (text.starts_with(L"\\\\"))
        text.erase(0, 1);
    return eventOf(std::move(text));
}

} // namespace

InputEvent readInputLine(const std::string& utf8Line)
{
    InputEvent event = eventOfLine(platform::fromUtf8(utf8Line));
    event.echo = utf8Line;
    return event;
}

InputEvent typedEvent(const std::wstring& text)
{
    InputEvent event = eventOf(text);
    event.echo = platform::toUtf8(text);
    return event;
}

} // namespace korra::ed
