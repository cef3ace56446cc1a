#pragma once

#include "ed/input_event.h"
#include "korra/console.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace korra::ed {

/// Where events come from.
class InputSource {
public:
    InputSource() = default;
    virtual ~InputSource() = default;
    InputSource(const InputSource&) = delete;
    InputSource& operator=(const InputSource&) = delete;

    /// The next event; nullopt when there is none now.
    virtual std::optional<InputEvent> next() = 0;

    /// True when next() may wait for a person.
    virtual bool asksUser() const = 0;
};

/// Events that are there already, in the order in which they came.
class EventQueue final : public InputSource {
public:
    void add(InputEvent event) { events_.push_back(std::move(event)); }

    std::optional<InputEvent> next() override;

    bool asksUser() const override { return false; }

private:
    std::deque<InputEvent> events_;
};

/// Characters that are typed one by one: a blank or line end acts as Enter; what follows the last
/// one waits for more.
class TypedCharacters {
public:
    /// @param queue  where the events go; outlives this
    explicit TypedCharacters(EventQueue& queue) : queue_(queue) {}

    void type(std::wstring_view characters);

    /// Takes what no Enter has ended yet.
    std::wstring takeUnfinished() { return std::exchange(unfinished_, {}); }

private:
    EventQueue& queue_;
    std::wstring unfinished_;
};

/// The lines of a script file or of a terminal; what was typed unfinished begins the next one.
class LineSource final : public InputSource {
public:
    /// @param read  gives the next line; nullopt: there is none any more
    /// @param echo  by the user: he sees the lines on the screen that he types on
    /// @param typed  outlives this
    LineSource(std::function<std::optional<std::string>()> read, InputEcho echo,
               TypedCharacters& typed);

    std::optional<InputEvent> next() override;

    bool asksUser() const override { return echo_ == InputEcho::byUser; }

private:
    std::function<std::optional<std::string>()> read_; ///< null after the end
    InputEcho echo_;
    TypedCharacters& typed_;
};

} // namespace korra::ed
