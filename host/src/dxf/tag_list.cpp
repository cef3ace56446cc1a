#include "dxf/tag_list.h"

#include "dxf/tag_stream.h"
#include "form/numbers.h"

namespace korra {
namespace {

constexpr int kGroup = 102;
constexpr int kEmbedded = 101;
constexpr int kMarker = 100;
constexpr int kComment = 999;
constexpr int kFirstExtended = 1000;

std::size_t lineEnd(std::string_view bytes, std::size_t from)
{
    const std::size_t end = bytes.find('\n', from);
    return end == std::string_view::npos ? bytes.size() : end + 1;
}

} // namespace

void TagList::clear()
{
    tags_.clear();
    groups_.clear();
    markers_ = 0;
    embedded_ = false;
    extended_ = false;
}

void TagList::split(std::string_view bytes)
{
    clear();
    for (std::size_t begin = 0; begin < bytes.size();) {
        const std::size_t codeEnd = lineEnd(bytes, begin);
        const std::size_t end = lineEnd(bytes, codeEnd);
        const std::string_view code = bytes.substr(begin, codeEnd - begin);
        add(parseGroupCode(withoutLineEnd(code)),
            withoutLineEnd(bytes.substr(codeEnd, end - codeEnd)), bytes.substr(begin, end - begin));
        begin = end;
    }
}

void TagList::add(int code, std::string_view value, std::string_view raw)
{
    ObjectTag tag;
    tag.code = code;
    tag.value = value;
    tag.raw = raw;
    tag.markers = markers_;
    if (tag.code == 0) {
        tag.part = TagPart::begin;
    } else if (tag.code == kComment) {
        tag.part = TagPart::comment;
    } else if (tag.code >= kFirstExtended) {
        tag.part = TagPart::extended;
        extended_ = true;
    } else if (embedded_ || tag.code == kEmbedded) {
        tag.part = TagPart::embedded;
        embedded_ = true;
    } else if (tag.code == kGroup) {
        tag.part = TagPart::group;
        if (tag.value.starts_with('{'))
            groups_.push_back(tags_.size());
        else if (tag.value == "}" && !groups_.empty())
            groups_.pop_back();
    } else if (!groups_.empty()) {
        tag.part = TagPart::group;
    } else if (tag.code == kMarker) {
        tag.part = TagPart::marker;
        ++markers_;
    }
    tags_.push_back(tag);
}

std::size_t TagList::find(int code) const
{
    for (std::size_t index = 0; index < tags_.size(); ++index) {
        if (tags_[index].code == code && tags_[index].part == TagPart::field)
            return index;
    }
    return kNone;
}

std::string_view TagList::valueOf(int code) const
{
    const std::size_t index = find(code);
    return index == kNone ? std::string_view() : tags_[index].value;
}

int TagList::handleCode() const
{
    // A dimension style has a name under 5, as drawings without subclasses had it.
    const bool isDimensionStyle = !tags_.empty() && trimmed(tags_[0].value) == "DIMSTYLE";
    return isDimensionStyle ? 105 : 5;
}

std::size_t TagList::handleTag() const
{
    return find(handleCode());
}

std::size_t TagList::ownerTag() const
{
    const std::size_t index = find(330);
    return index != kNone && tags_[index].markers == 0 ? index : kNone;
}

std::size_t TagList::extensionDictionaryTag() const
{
    for (std::size_t index = 0; index < tags_.size(); ++index) {
        if (tags_[index].code != kGroup || !tags_[index].value.ends_with("XDICTIONARY"))
            continue;
        const std::size_t next = index + 1;
        return next < tags_.size() && tags_[next].part == TagPart::group &&
                       (tags_[next].code == 360 || tags_[next].code == 350)
                   ? next
                   : kNone;
    }
    return kNone;
}

} // namespace korra
