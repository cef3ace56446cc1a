#pragma once

#include "kd/ge.h"

#include <optional>
#include <string>
#include <variant>

namespace korra::ed {

/// What the user can do. Points are in user coordinates.

/// Typed something that reads as no point, and ended it with Enter.
struct TextEvent {
    std::wstring text;
};

/// Clicked at a point, or typed one.
struct PointEvent {
    KdGePoint3d point;
    std::optional<std::wstring> typed; ///< what was typed; nullopt for a click
};

/// Pressed Enter alone.
struct EnterEvent {};

/// Pressed Escape.
struct CancelEvent {};

/// Pressed a key that is no part of a text.
struct KeyEvent {
    wchar_t key = 0;
};

enum class Button { primary, secondary };

/// Clicked without picking anything.
struct ButtonEvent {
    Button button = Button::primary;
    std::optional<KdGePoint3d> point; ///< nullopt: where the cursor is
};

/// Moved the cursor.
struct MoveEvent {
    KdGePoint3d point;
};

/// There is no input any more: prompts are cancelled, tracking stays where it is.
struct EndEvent {};

/// Keys and buttons that are down; the primary button is the right one where they are swapped.
struct HeldKeys {
    bool enter = false;
    bool space = false;
    bool control = false;
    bool primary = false;
    bool secondary = false;
};

/// One thing that the user did, with what was held meanwhile.
struct InputEvent {
    using Action = std::variant<EndEvent, TextEvent, PointEvent, EnterEvent, CancelEvent, KeyEvent,
                                ButtonEvent, MoveEvent>;

    template <class Kind>
    bool is() const
    {
        return std::holds_alternative<Kind>(action);
    }

    /// Null for an event of another kind.
    template <class Kind>
    const Kind* as() const
    {
        return std::get_if<Kind>(&action);
    }

    Action action;
    HeldKeys held{};

    /// What the command line shows behind its prompt, UTF-8; nullopt: the user's own screen has
    /// shown it.
    std::optional<std::string> echo = std::nullopt;
};

/// True for Escape and for the end of the input.
bool isCancel(const InputEvent& event);

/// True when the event answers with Enter: Enter itself, Space, a secondary click.
bool isEnter(const InputEvent& event);

/// What was typed; null for an event of the hand alone.
const std::wstring* typedText(const InputEvent& event);

/// Where the event put the cursor; nullopt: it left it.
std::optional<KdGePoint3d> placeOf(const InputEvent& event);

} // namespace korra::ed
