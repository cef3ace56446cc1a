#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace korra {

/// What a tag of an object is.
enum class TagPart : unsigned char {
    begin,    ///< the 0 tag
    field,    ///< of the object's own
    marker,   ///< 100: a subclass begins
    group,    ///< in a group of braces (102), or a brace of it
    embedded, ///< of an embedded object, which 101 begins
    extended, ///< extended data
    comment
};

/// One tag in the bytes of an object.
struct ObjectTag {
    int code = 0;
    TagPart part = TagPart::field;
    int markers = 0; ///< subclass markers before it
    std::string_view value;
    std::string_view raw;
};

/// The tags of one object, in views of its bytes. Tag `i` has its value on the object's line plus
/// 2 `i`.
class TagList {
public:
    static constexpr std::size_t kNone = ~std::size_t{0};

    TagList() = default;

    explicit TagList(std::string_view bytes) { split(bytes); }

    /// Takes other bytes, which outlive the list; the storage is used again.
    void split(std::string_view bytes);

    /// Takes one tag more.
    /// @param value, raw  outlive the list
    void add(int code, std::string_view value, std::string_view raw);

    void clear();

    std::size_t size() const { return tags_.size(); }

    const ObjectTag& operator[](std::size_t index) const { return tags_[index]; }

    int markers() const { return markers_; }

    bool hasExtendedData() const { return extended_; }

    /// The first field of a code; kNone without one.
    std::size_t find(int code) const;

    /// Its value; empty without one.
    std::string_view valueOf(int code) const;

    /// The code that the object's handle has.
    int handleCode() const;

    /// The handle, which two kinds of objects could take for a field of theirs.
    std::size_t handleTag() const;

    /// The owner's handle: the first 330 before every marker.
    std::size_t ownerTag() const;

    /// In the group of the extension dictionary the tag with its handle.
    std::size_t extensionDictionaryTag() const;

    /// A group that is begun and not ended.
    std::size_t openGroup() const { return groups_.empty() ? kNone : groups_.front(); }

private:
    std::vector<ObjectTag> tags_;
    std::vector<std::size_t> groups_; ///< begun and not yet ended, innermost last
    int markers_ = 0;
    bool embedded_ = false; ///< behind the tag that begins the embedded object
    bool extended_ = false;
};

} // namespace korra
