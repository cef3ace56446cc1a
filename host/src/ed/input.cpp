#include "ed/input.h"

#include "platform/input.h"
#include "platform/text.h"

#include <windows.h>

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace korra::ed {
namespace {

using Kind = InputEvent::Kind;

std::wstring_view trimmed(std::wstring_view text)
{
    return platform::trimmedLeft(platform::trimmedRight(text));
}

enum class PointNeed { none, allowed, required };

struct HandMovement {
    std::wstring_view word;
    Kind kind;
    PointNeed point;
};

constexpr std::array<HandMovement, 6> kHandMovements = {{
    {L"\\esc", Kind::escape, PointNeed::none},
    {L"\\miss", Kind::miss, PointNeed::allowed},
    {L"\\right", Kind::secondary, PointNeed::none},
    {L"\\space", Kind::space, PointNeed::none},
    {L"\\ctrl", Kind::pick, PointNeed::required},
    {L"\\move", Kind::move, PointNeed::required},
}};

/// True when the text is the movement, with the point that it needs and nothing else.
bool readMovement(const HandMovement& movement, std::wstring_view text, InputEvent& event)
{
    if (!text.starts_with(movement.word))
        return false;
    const std::wstring_view rest = text.substr(movement.word.size());
    if (!rest.empty() && !platform::isSpace(rest.front()))
        return false;
    const std::optional<KdGePoint3d> point = readPoint(rest);
    const bool bare = trimmed(rest).empty();
    if (movement.point == PointNeed::none
            ? !bare
            : !point && (movement.point == PointNeed::required || !bare))
        return false;
    event.kind = movement.kind;
    event.point = point;
    return true;
}

void readText(std::wstring text, InputEvent& event)
{
    event.kind = text.empty() ? Kind::enter : Kind::text;
    event.point = readPoint(text);
    event.text = std::move(text);
}

/// Holds the keys and buttons that an event is made with, and releases all others.
void holdKeysOf(const InputEvent& event)
{
    const bool swapped = platform::buttonsAreSwapped();
    const int primary = swapped ? VK_RBUTTON : VK_LBUTTON;
    const int secondary = swapped ? VK_LBUTTON : VK_RBUTTON;

    platform::releaseKeys();
    platform::holdKey(VK_RETURN, event.kind == Kind::enter);
    platform::holdKey(VK_SPACE, event.kind == Kind::space);
    platform::holdKey(VK_CONTROL, event.kind == Kind::pick);
    platform::holdKey(secondary, event.kind == Kind::secondary);
    const bool click = event.kind == Kind::miss || (event.point && event.kind != Kind::move);
    platform::holdKey(primary, click);
}

} // namespace

std::optional<double> readReal(std::wstring_view text)
{
    const std::string digits = platform::toUtf8(trimmed(text));
    const char* first = digits.data();
    const char* const last = first + digits.size();
    if (digits.size() > 1 && *first == '+' && first[1] != '-')
        ++first;
    double value = 0.0;
    const auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc() || end != last || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<KdGePoint3d> readPoint(std::wstring_view text)
{
    KdGePoint3d point;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const std::size_t comma = text.find(L',');
        const std::optional<double> coordinate = readReal(text.substr(0, comma));
        if (!coordinate)
            return std::nullopt;
        point[axis] = *coordinate;
        if (comma == std::wstring_view::npos)
            return axis > 0 ? std::optional(point) : std::nullopt;
        text.remove_prefix(comma + 1);
    }
    return std::nullopt;
}

InputEvent readInputLine(const std::string& utf8Line)
{
    InputEvent event;
    event.line = utf8Line;
    std::wstring text = platform::fromUtf8(utf8Line);
    for (const HandMovement& movement : kHandMovements)
        if (readMovement(movement, text, event))
            return event;
    if (text.starts_with(L"\\\\"))
        text.erase(0, 1);
    readText(std::move(text), event);
    return event;
}

void InputStream::queueLine(const std::string& utf8Line)
{
    queue_.push_back(readInputLine(utf8Line));
}

void InputStream::type(std::wstring_view characters)
{
    for (const wchar_t character : characters) {
        if (character != L' ' && character != L'\n' && character != L'\r') {
            typed_ += character;
            continue;
        }
        InputEvent event;
        event.line = platform::toUtf8(typed_);
        readText(std::exchange(typed_, {}), event);
        queue_.push_back(std::move(event));
    }
}

void InputStream::setSource(Source source, bool shown)
{
    source_ = std::move(source);
    sourceShows_ = shown;
}

void InputStream::fill()
{
    if (!queue_.empty() || !source_)
        return;
    const std::optional<std::string> line = source_();
    if (!line) {
        source_ = nullptr;
        return;
    }
    InputEvent event = readInputLine(platform::toUtf8(std::exchange(typed_, {})) + *line);
    event.shown = sourceShows_;
    queue_.push_back(std::move(event));
}

InputEvent InputStream::take()
{
    fill();
    InputEvent event;
    if (queue_.empty()) {
        event.atEnd = true;
    } else {
        event = std::move(queue_.front());
        queue_.pop_front();
    }
    holdKeysOf(event);
    return event;
}

bool InputStream::isMoveNext()
{
    if (!sourceShows_)
        fill();
    return !queue_.empty() && queue_.front().kind == Kind::move;
}

} // namespace korra::ed
