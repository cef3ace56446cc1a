#include "dxf/file_text.h"

#include "dxf/drawing_error.h"
#include "dxf/tag_stream.h"

#include <algorithm>

namespace korra {

std::string wholeText(const ReadBytes& read, std::size_t size)
{
    constexpr std::size_t kStep = std::size_t{1} << 16;
    constexpr std::size_t kMostOfUnknown = std::size_t{1} << 30;
    std::string text;
    text.reserve(size + kStep);
    std::size_t line = 0; // where the last line begins
    while (size > 0 || text.size() - line <= kLongestLine + kStep) {
        const std::size_t before = text.size();
        text.resize(before + kStep);
        const std::size_t count = read(text.data() + before, kStep);
        text.resize(before + count);
        if (count == 0)
            break;
        if (size == 0 && text.size() > kMostOfUnknown)
            throw DrawingError{0, "has no end within a gigabyte"};
        const std::size_t end = text.rfind('\n');
        line = end == text.npos ? line : std::max(line, end + 1);
    }
    return text;
}

} // namespace korra
