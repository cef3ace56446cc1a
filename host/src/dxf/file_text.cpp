#include "dxf/file_text.h"

#include "dxf/drawing_error.h"

namespace korra {

std::string wholeText(const ReadBytes& read, std::size_t size)
{
    constexpr std::size_t kStep = std::size_t{1} << 16;
    constexpr std::size_t kMostOfUnknown = std::size_t{1} << 30;
    std::string text;
    text.reserve(size + kStep);
    for (std::size_t count = kStep; count > 0;) {
        const std::size_t before = text.size();
        text.resize(before + kStep);
        count = read(text.data() + before, kStep);
        text.resize(before + count);
        if (size == 0 && text.size() > kMostOfUnknown)
            throw DrawingError{0, "has no end within a gigabyte"};
    }
    return text;
}

} // namespace korra
