#pragma once

#include "dxf/tag_stream.h"

#include <string>
#include <utility>

namespace korra {

/// An object of a drawing file: its 0 tag and what follows up to the next one.
struct RawObject {
    std::string type;
    std::string bytes;
    std::size_t line = 0; ///< of the type
};

/// Gathers the tags of a file into objects.
class ObjectStream {
public:
    explicit ObjectStream(TagStream::ReadBytes read);

    /// The next object; its strings are used again.
    /// @throw DrawingError also where the file ends without its EOF
    void next(RawObject& object);

    /// All bytes behind the last object.
    std::string rest() { return tags_.rest(); }

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
