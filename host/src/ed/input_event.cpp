#include "ed/input_event.h"

namespace korra::ed {

bool isCancel(const InputEvent& event)
{
    return event.is<CancelEvent>() || event.is<EndEvent>();
}

bool isEnter(const InputEvent& event)
{
    const auto* const click = event.as<ButtonEvent>();
    const auto* const pressed = event.as<KeyEvent>();
    return event.is<EnterEvent>() || (click && click->button == Button::secondary) ||
           (pressed && pressed->key == L' ');
}

const std::wstring* typedText(const InputEvent& event)
{
    if (const auto* const text = event.as<TextEvent>())
        return &text->text;
    const auto* const point = event.as<PointEvent>();
    return point && point->typed ? &*point->typed : nullptr;
}

std::optional<KdGePoint3d> placeOf(const InputEvent& event)
{
    if (const auto* const point = event.as<PointEvent>())
        return point->point;
    if (const auto* const move = event.as<MoveEvent>())
        return move->point;
    const auto* const click = event.as<ButtonEvent>();
    return click ? click->point : std::nullopt;
}

} // namespace korra::ed
