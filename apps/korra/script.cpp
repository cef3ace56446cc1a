#include "script.h"

namespace {

/// What some editors put before the first line of a UTF-8 file.
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

std::optional<std::string> Script::next()
{
    std::string line;
    while (std::getline(lines_, line)) {
        if (!begun_ && line.starts_with(kByteOrderMark))
            line.erase(0, 3);
        begun_ = true;
        if (line.ends_with('\r'))
            line.pop_back();
        if (!line.starts_with(';'))
            return line;
    }
    return std::nullopt;
}
