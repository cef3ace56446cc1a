#include "dxf/object_stream.h"

#include "form/numbers.h"

namespace korra {

ObjectStream::ObjectStream(std::string_view text) : tags_(text)
{
    readOpening();
}

void ObjectStream::readTag()
{
    if (!tags_.next(tag_))
        throw DrawingError{tags_.line(), "the file ends without EOF"};
}

void ObjectStream::readOpening()
{
    constexpr int kComment = 999;
    if (tags_.beginsWithByteOrderMark())
        opening_ = "\xEF\xBB\xBF";
    if (!tags_.next(tag_))
        throw DrawingError{1, "the file is empty"};
    for (; tag_.code == kComment; readTag())
        opening_ += tag_.raw;
    if (tag_.code != 0)
        throw DrawingError{tag_.line - 1, "a drawing begins with a section"};
}

void ObjectStream::next(RawObject& object, TagList& tags)
{
    object.type = trimmed(tag_.value);
    object.line = tag_.line;
    object.bytes = tag_.raw;
    tags.clear();
    tags.add(tag_.code, tag_.value, tag_.raw);
    if (object.type == "EOF")
        return;
    const char* const begin = tag_.raw.data();
    for (readTag(); tag_.code != 0; readTag())
        tags.add(tag_.code, tag_.value, tag_.raw);
    object.bytes = std::string_view(begin, static_cast<std::size_t>(tag_.raw.data() - begin));
}

} // namespace korra
