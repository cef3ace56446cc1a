#include "dxf/tag_stream.h"

#include "form/numbers.h"

#include <algorithm>

namespace korra {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

} // namespace

TagStream::TagStream(std::string_view text)
    : text_(text), zero_(text.find('\0')), byteOrderMark_(text.starts_with(kByteOrderMark))
{
    if (byteOrderMark_)
        begin_ = kByteOrderMark.size();
}

/// The end of the line that begins at a place; the place itself at the end of the text.
std::size_t TagStream::lineEnd(std::size_t from) const
{
    const std::size_t found = text_.find('\n', from);
    const std::size_t end = found == text_.npos ? text_.size() : found + 1;
    if (end > zero_)
        throw DrawingError{line_ + 1, "the file is binary: a zero byte"};
    if (end - from > kLongestLine)
        throw DrawingError{line_ + 1, "the line is longer than a megabyte"};
    return end;
}

bool TagStream::next(Tag& tag)
{
    const std::size_t codeEnd = lineEnd(begin_);
    if (codeEnd == begin_)
        return false;
    ++line_;
    const std::size_t end = lineEnd(codeEnd);
    const std::string_view code = text_.substr(begin_, codeEnd - begin_);
    tag.code = groupCode(withoutLineEnd(code));
    if (end == codeEnd)
        throw DrawingError{line_, "the file ends behind a group code"};
    if (line_ == 1)
        crlf_ = code.ends_with("\r\n");
    tag.raw = text_.substr(begin_, end - begin_);
    tag.value = withoutLineEnd(tag.raw.substr(code.size()));
    tag.line = ++line_;
    begin_ = end;
    return true;
}

int TagStream::groupCode(std::string_view text) const
{
    const int code = parseGroupCode(text);
    if (code < 0)
        throw DrawingError{line_, shown(text) + " is no group code"};
    return code;
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
