#include "dxf/tag_stream.h"

#include "form/numbers.h"

#include <algorithm>
#include <cstring>

namespace korra {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

constexpr std::size_t kNowhere = ~std::size_t{0};
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

TagStream::TagStream(ReadBytes read)
    : read_(std::move(read)), buffer_(kBufferSize, '\0'), zero_(kNowhere)
{
    skipByteOrderMark();
}

void TagStream::skipByteOrderMark()
{
    while (filled_ < kByteOrderMark.size() && fill()) {
    }
    byteOrderMark_ = std::string_view(buffer_).substr(0, filled_).starts_with(kByteOrderMark);
    if (byteOrderMark_)
        begin_ = kByteOrderMark.size();
}

bool TagStream::fill()
{
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, filled_ - begin_);
        filled_ -= begin_;
        if (zero_ != kNowhere)
            zero_ -= begin_;
        begin_ = 0;
    }
    if (filled_ == buffer_.size())
        buffer_.resize(2 * buffer_.size());
    char* target = buffer_.data() + filled_;
    const std::size_t count = read_(target, buffer_.size() - filled_);
    if (const void* zero = zero_ == kNowhere ? std::memchr(target, '\0', count) : nullptr)
        zero_ = static_cast<std::size_t>(static_cast<const char*>(zero) - buffer_.data());
    filled_ += count;
    return count > 0;
}

/// The end of the line that begins `from` bytes behind the beginning of the tag, counted likewise.
std::size_t TagStream::lineEnd(std::size_t from)
{
    for (std::size_t searched = from;;) {
        const char* start = buffer_.data() + begin_;
        const std::size_t there = filled_ - begin_;
        const void* found = std::memchr(start + searched, '\n', there - searched);
        const std::size_t end =
            found ? static_cast<std::size_t>(static_cast<const char*>(found) - start) + 1 : there;
        if (begin_ + end > zero_)
            throw DrawingError{line_ + 1, "the file is binary: a zero byte"};
        if (end - from > kLongestLine)
            throw DrawingError{line_ + 1, "the line is longer than a megabyte"};
        if (found)
            return end;
        searched = there;
        if (!fill())
            return end > from ? end : kNoLine;
    }
}

bool TagStream::next(Tag& tag)
{
    const std::size_t codeEnd = lineEnd(0);
    if (codeEnd == kNoLine)
        return false;
    ++line_;
    const std::size_t end = lineEnd(codeEnd);
    const std::string_view both(buffer_.data() + begin_, end == kNoLine ? codeEnd : end);
    tag.code = groupCode(withoutLineEnd(both.substr(0, codeEnd)));
    if (end == kNoLine)
        throw DrawingError{line_, "the file ends behind a group code"};
    if (line_ == 1)
        crlf_ = both.substr(0, codeEnd).ends_with("\r\n");
    tag.value = withoutLineEnd(both.substr(codeEnd));
    tag.raw = both;
    tag.line = ++line_;
    begin_ += end;
    return true;
}

std::string TagStream::rest()
{
    while (fill()) {
    }
    return buffer_.substr(begin_, filled_ - begin_);
}

int TagStream::groupCode(std::string_view text) const
{
    const int code = parseGroupCode(text);
    if (code < 0)
        throw DrawingError{line_, shown(text) + " is no group code"};
    return code;
}

std::string_view withoutLineEnd(std::string_view line)
{
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

std::string printable(std::string_view text)
{
    constexpr std::size_t kEnough = 40;
    std::string plain(text.substr(0, kEnough));
    std::ranges::replace_if(
        plain, [](char c) { return c < ' ' || c > '~'; }, '?');
    return plain + (text.size() > kEnough ? "..." : "");
}

std::string shown(std::string_view text)
{
    return '"' + printable(text) + '"';
}

} // namespace korra
