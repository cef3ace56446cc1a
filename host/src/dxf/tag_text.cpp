#include "dxf/tag_text.h"

#include "dxf/tag_stream.h"
#include "form/numbers.h"

#include <cmath>
#include <numbers>

namespace korra {

std::string realText(double value)
{
    if (!std::isfinite(value))
        throw DrawingError{0, "a number is not finite"};
    return formatReal(value);
}

std::string degreesText(double radians)
{
    if (!std::isfinite(radians * (180.0 / std::numbers::pi)))
        throw DrawingError{0, "an angle is not finite"};
    return formatDegrees(radians);
}

void appendValue(std::string& text, std::string_view value, std::string_view lineEnd)
{
    if (value.size() + lineEnd.size() > kLongestLine)
        throw DrawingError{0, "a text is longer than a megabyte"};
    text.append(value).append(lineEnd);
}

void appendTag(std::string& text, int code, std::string_view value, std::string_view lineEnd)
{
    const std::string digits = std::to_string(code);
    if (digits.size() < 3)
        text.append(3 - digits.size(), ' ');
    text.append(digits).append(lineEnd);
    appendValue(text, value, lineEnd);
}

std::string withTag(const TagList& tags, std::size_t behind, int code, std::string_view value,
                    std::string_view lineEnd)
{
    std::string text;
    for (std::size_t index = 0; index < tags.size(); ++index) {
        text += tags[index].raw;
        if (index == behind)
            appendTag(text, code, value, lineEnd);
    }
    return text;
}

std::string withHandle(std::string_view bytes, std::uint64_t handle, std::string_view lineEnd)
{
    const TagList tags(bytes);
    const std::size_t tag = tags.handleTag();
    if (tag == TagList::kNone)
        return withTag(tags, 0, tags.handleCode(), formatHandle(handle), lineEnd);
    if (parseHandle(tags[tag].value) == handle)
        return std::string(bytes);
    return withValue(tags, tag, formatHandle(handle), lineEnd);
}

std::string withValue(const TagList& tags, std::size_t tag, std::string_view value,
                      std::string_view lineEnd)
{
    std::string text;
    for (std::size_t index = 0; index < tags.size(); ++index) {
        const std::string_view raw = tags[index].raw;
        text += index == tag ? raw.substr(0, raw.find('\n') + 1) : raw;
        if (index == tag)
            appendValue(text, value, lineEnd);
    }
    return text;
}

} // namespace korra
