#include "dxf/tag_text.h"

#include "form/numbers.h"

namespace korra {

void appendTag(std::string& text, int code, std::string_view value, std::string_view lineEnd)
{
    const std::string digits = std::to_string(code);
    if (digits.size() < 3)
        text.append(3 - digits.size(), ' ');
    text.append(digits).append(lineEnd).append(value).append(lineEnd);
}

std::string withTag(std::string_view bytes, int code, std::string_view value,
                    std::string_view lineEnd)
{
    const TagList tags(bytes);
    std::string text(tags[0].raw);
    appendTag(text, code, value, lineEnd);
    return text.append(bytes.substr(tags[0].raw.size()));
}

std::string withHandle(std::string_view bytes, std::uint64_t handle, std::string_view lineEnd)
{
    const TagList tags(bytes);
    const std::size_t tag = tags.handleTag();
    if (tag == TagList::kNone)
        return withTag(bytes, tags.handleCode(), formatHandle(handle), lineEnd);
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
            text.append(value).append(lineEnd);
    }
    return text;
}

} // namespace korra
