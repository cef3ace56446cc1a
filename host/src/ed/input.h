#pragma once

#include "kd/ge.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace korra::ed {

/// One thing that the user did.
struct InputEvent {
    enum class Kind {
        text,  ///< typed and ended with Enter; may read as a point
        enter, ///< Enter alone
        escape,
        pick,      ///< a click at a point with Ctrl held
        miss,      ///< a primary click that hits nothing
        secondary, ///< a secondary click
        space,
        move ///< the cursor moved
    };

    Kind kind = Kind::escape;
    std::wstring text;                ///< of Kind::text
    std::optional<KdGePoint3d> point; ///< user coordinates; also of a text that reads as a point
    std::string line;                 ///< as it was given, UTF-8; echoed
    bool shown = false;               ///< the user's own screen has shown it
    bool atEnd = false;               ///< stands for the end of the input
};

/// Reads a line in the script form: a text or point, an empty line for Enter, a hand movement
/// (\esc, \miss [x,y], \right, \space, \ctrl x,y, \move x,y); `\\` begins a text with one
/// backslash.
InputEvent readInputLine(const std::string& utf8Line);

/// The point `x,y` or `x,y,z` that a text reads as.
std::optional<KdGePoint3d> readPoint(std::wstring_view text);

/// The number that a text reads as, blanks around it aside.
std::optional<double> readReal(std::wstring_view text);

/// What the user does, in order: what is queued first, then what the source gives.
class InputStream {
public:
    using Source = std::function<std::optional<std::string>()>;

    void queueLine(const std::string& utf8Line);

    /// Queues typed characters: a blank or line end acts as Enter; what follows the last one waits
    /// for more.
    void type(std::wstring_view characters);

    /// @param shown  whoever gives the lines sees them on a screen of his own
    void setSource(Source source, bool shown);

    /// Takes the next event; keys and buttons count as held as the event has them until the next
    /// one is taken. At the end of the input: Escape.
    InputEvent take();

    /// True when the next event is there already, or can be had without asking anybody, and is a
    /// move of the cursor.
    bool isMoveNext();

private:
    void fill();

    std::deque<InputEvent> queue_;
    std::wstring typed_; ///< characters that no Enter has ended yet
    Source source_;
    bool sourceShows_ = false;
};

} // namespace korra::ed
