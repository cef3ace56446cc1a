#include "dxf/tag_cursor.h"

#include <algorithm>

namespace korra {

void TagCursor::reset(std::string_view source, std::span<const int> only)
{
    tags_.split(source);
    taken_.assign(tags_.size(), 0);
    only_ = only;
    first_ = 0;
    last_ = tags_.size();
    for (const std::size_t index : {tags_.handleTag(), tags_.ownerTag()}) {
        if (index != kNone)
            taken_[index] = 1;
    }
}

bool TagCursor::accepts(int code) const
{
    return only_.empty() || std::ranges::find(only_, code) != only_.end();
}

std::size_t TagCursor::takeFrom(std::size_t first, int code)
{
    if (inList_)
        elementCodes_.insert(code);
    if (!accepts(code))
        return kNone;
    for (std::size_t index = std::max(first, first_); index < last_; ++index) {
        if (tags_[index].code == code && tags_[index].part == TagPart::field && !taken_[index]) {
            taken_[index] = 1;
            return index;
        }
    }
    return kNone;
}

void TagCursor::behindMarker(int count)
{
    const int reached = std::min(count, tags_.markers());
    while (first_ < last_ && tags_[first_].markers < reached)
        ++first_;
}

std::size_t TagCursor::beginList(int leadCode)
{
    elements_.clear();
    elementCodes_.clear();
    nextElement_ = 0;
    firstOutside_ = first_;
    lastOutside_ = last_;
    inList_ = true;
    for (std::size_t index = first_; accepts(leadCode) && index < last_; ++index) {
        if (tags_[index].code == leadCode && tags_[index].part == TagPart::field && !taken_[index])
            elements_.push_back(index);
    }
    return elements_.size();
}

void TagCursor::beginElement()
{
    const std::size_t element = nextElement_++;
    first_ = element < elements_.size() ? elements_[element] : lastOutside_;
    last_ = element + 1 < elements_.size() ? elements_[element + 1] : lastOutside_;
}

void TagCursor::endList()
{
    first_ = firstOutside_;
    last_ = lastOutside_;
    inList_ = false;
}

std::vector<std::size_t> TagCursor::elementTagsFrom(std::size_t count) const
{
    std::vector<std::size_t> found;
    if (count >= elements_.size())
        return found;
    // The last element has no end of its own: only what elements ask for is taken to be its.
    const std::size_t lastLead = elements_.back();
    for (std::size_t index = elements_[count]; index < lastOutside_; ++index) {
        const bool isOfElement =
            index <= lastLead || elementCodes_.empty() || elementCodes_.contains(tags_[index].code);
        if (tags_[index].part == TagPart::field && !taken_[index] && isOfElement)
            found.push_back(index);
    }
    return found;
}

} // namespace korra
