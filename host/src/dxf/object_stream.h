#pragma once

#include "dxf/tag_list.h"
#include "dxf/tag_stream.h"

#include <string>
#include <string_view>

namespace korra {

/// An object of a drawing file: its 0 tag and what follows up to the next one, in the file's text.
struct RawObject {
    std::string_view type;
    std::string_view bytes;
    std::size_t line = 0; ///< of the type
};

/// Gathers the tags of a file into objects.
class ObjectStream {
public:
    /// @param text  outlives the stream and what it gives
    explicit ObjectStream(std::string_view text);

    /// The next object and its tags.
    /// @throw DrawingError also where the file ends without its EOF
    void next(RawObject& object, TagList& tags);

    /// All bytes behind the last object.
    std::string_view rest() const { return tags_.rest(); }

    /// Byte order mark and comments before the first object.
    const std::string& opening() const { return opening_; }

    bool beginsWithByteOrderMark() const { return tags_.beginsWithByteOrderMark(); }

    bool endsLinesWithCrLf() const { return tags_.endsLinesWithCrLf(); }

private:
    void readOpening();
    void readTag();

    TagStream tags_;
    Tag tag_; ///< the first one of the next object
    std::string opening_;
};

} // namespace korra
