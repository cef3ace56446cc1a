#include "ed/input_sources.h"

#include "ed/script_lines.h"
#include "platform/text.h"

#include <utility>

namespace korra::ed {

std::optional<InputEvent> EventQueue::next()
{
    if (events_.empty())
        return std::nullopt;
    InputEvent event = std::move(events_.front());
    events_.pop_front();
    return event;
}

void TypedCharacters::type(std::wstring_view characters)
{
    for (const wchar_t character : characters) {
        if (character == L' ' || character == L'\n' || character == L'\r')
            queue_.add(typedEvent(takeUnfinished()));
        else
            unfinished_ += character;
    }
}

LineSource::LineSource(std::function<std::optional<std::string>()> read, InputEcho echo,
                       TypedCharacters& typed)
    : read_(std::move(read)), echo_(echo), typed_(typed)
{
}

std::optional<InputEvent> LineSource::next()
{
    const std::optional<std::string> line = read_ ? read_() : std::nullopt;
    if (!line) {
        read_ = nullptr;
        return std::nullopt;
    }
    InputEvent event = readInputLine(platform::toUtf8(typed_.takeUnfinished()) + *line);
    if (echo_ == InputEcho::byUser)
        event.echo.reset();
    return event;
}

} // namespace korra::ed
