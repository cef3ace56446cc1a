#pragma once

#include "dxf/tag_list.h"

#include <initializer_list>
#include <set>
#include <span>
#include <string_view>
#include <vector>

namespace korra {

/// Finds an object's fields among its tags in the order in which the object names them.
///
/// Each tag is taken once. What is searched is narrowed by subclass markers and, in a list, to the
/// tags of one element: from its leading tag to that of the next one.
class TagCursor {
public:
    static constexpr std::size_t kNone = TagList::kNone;

    /// Takes the tags of another object, handle and owner taken already.
    /// @param only  the codes that may be taken; empty: all
    void reset(std::string_view source, std::span<const int> only = {});

    const TagList& tags() const { return tags_; }

    const ObjectTag& tag(std::size_t index) const { return tags_[index]; }

    /// True for a code that may be taken.
    bool accepts(int code) const;

    /// The next field of a code that was not taken yet, and takes it; kNone without one.
    std::size_t take(int code) { return takeFrom(first_, code); }

    /// The next field of a code behind a given tag that was not taken yet, and takes it.
    std::size_t takeBehind(std::size_t index, int code) { return takeFrom(index + 1, code); }

    /// Later searches begin at the `count`-th subclass marker, or the last one when there are
    /// fewer.
    void behindMarker(int count);

    /// Where the search begins.
    std::size_t first() const { return first_; }

    /// Begins a list. @return its elements
    std::size_t beginList(int leadCode);

    /// Narrows the search to the next element; to nothing behind the last one.
    void beginElement();

    /// Ends the list: the search is as wide as before.
    void endList();

    /// In a list, the tags of the elements from the `count`-th on, the leading ones included.
    std::vector<std::size_t> elementTagsFrom(std::size_t count) const;

private:
    std::size_t takeFrom(std::size_t first, int code);

    TagList tags_;
    std::vector<char> taken_;
    std::span<const int> only_;
    std::size_t first_ = 0;
    std::size_t last_ = 0;

    std::vector<std::size_t> elements_; ///< leading tags of the list that is being read
    std::size_t nextElement_ = 0;
    std::size_t firstOutside_ = 0; ///< the search outside the list
    std::size_t lastOutside_ = 0;
    std::set<int> elementCodes_; ///< that elements asked for
    bool inList_ = false;
};

} // namespace korra
