#pragma once

#include "dxf/drawing_error.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace korra {

/// No text of a drawing is as long; without a limit a file without line ends would fill the memory.
inline constexpr std::size_t kLongestLine = std::size_t{1} << 20;

/// A group code line with the value line below it.
struct Tag {
    int code = 0;
    std::string_view value; ///< without its line end
    std::string_view raw;   ///< both lines with their line ends
    std::size_t line = 0;   ///< of the value
};

/// Splits the text of a drawing file into tags.
class TagStream {
public:
    /// @param text  outlives the stream and its tags
    explicit TagStream(std::string_view text);

    /// @return false at the end of the text
    /// @throw DrawingError for a code that is no number, half a tag, an over-long line, binary data
    bool next(Tag& tag);

    /// All bytes behind the last tag.
    std::string_view rest() const { return text_.substr(begin_); }

    /// Line that was read last.
    std::size_t line() const { return line_; }

    bool beginsWithByteOrderMark() const { return byteOrderMark_; }

    bool endsLinesWithCrLf() const { return crlf_; }

private:
    std::size_t lineEnd(std::size_t from) const;
    int groupCode(std::string_view text) const;

    std::string_view text_;
    std::size_t zero_;      ///< place of the first zero byte; npos without one
    std::size_t begin_ = 0; ///< of the next tag
    std::size_t line_ = 0;
    bool byteOrderMark_ = false;
    bool crlf_ = false;
};

/// The text without the line end that it ends with.
inline std::string_view withoutLineEnd(std::string_view line)
{
    if (line.ends_with('\n'))
        line.remove_suffix(1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

/// A text of a file as a message may hold it: short, one line, plain characters.
std::string printable(std::string_view text);

/// The same in quotes.
std::string shown(std::string_view text);

} // namespace korra
