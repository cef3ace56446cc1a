#include "script.h"

namespace {

/// What some editors put before the first line of a UTF-8 file.
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

/// No input is as long; without a limit a file without line ends would fill the memory.
constexpr std::size_t kLongestLine = std::size_t{1} << 20;

} // namespace

/// @return false at the end, and for a line that is too long
bool Script::read(std::string& text)
{
    text.clear();
    for (char next = '\0'; !refused_ && lines_.get(next) && next != '\n';) {
        text += next;
        refused_ = text.size() > kLongestLine;
    }
    ++line_;
    return !refused_ && (lines_ || !text.empty());
}

std::optional<std::string> Script::next()
{
    std::string line;
    while (read(line)) {
        if (line_ == 1 && line.starts_with(kByteOrderMark))
            line.erase(0, 3);
        if (line.ends_with('\r'))
            line.pop_back();
        if (!line.starts_with(';'))
            return line;
    }
    return std::nullopt;
}
