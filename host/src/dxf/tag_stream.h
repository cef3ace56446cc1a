#pragma once

#include "dxf/drawing_error.h"

#include <cstddef>
#include <functional>
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

/// Splits a stream of bytes into tags; holds no more of it than one tag and one buffer.
class TagStream {
public:
    /// Gives up to `size` further bytes; fewer than asked for, none at the end.
    using ReadBytes = std::function<std::size_t(char* buffer, std::size_t size)>;

    explicit TagStream(ReadBytes read);

    /// The next tag; its views hold until the next call.
    /// @return false at the end of the stream
    /// @throw DrawingError for a code that is no number, half a tag, an over-long line, binary data
    bool next(Tag& tag);

    /// All bytes behind the last tag; the stream is at its end then.
    std::string rest();

    /// Line that was read last.
    std::size_t line() const { return line_; }

    bool beginsWithByteOrderMark() const { return byteOrderMark_; }

    bool endsLinesWithCrLf() const { return crlf_; }

private:
    static constexpr std::size_t kNoLine = ~std::size_t{0};

    std::size_t lineEnd(std::size_t from);
    bool fill();
    void skipByteOrderMark();
    int groupCode(std::string_view text) const;

    ReadBytes read_;
    std::string buffer_;
    std::size_t begin_ = 0;  ///< of the next tag in the buffer
    std::size_t filled_ = 0; ///< end of what was read into the buffer
    std::size_t zero_;       ///< place of a zero byte in the buffer, or behind everything
    std::size_t line_ = 0;
    bool byteOrderMark_ = false;
    bool crlf_ = false;
};

/// The text without the line end that it ends with.
std::string_view withoutLineEnd(std::string_view line);

/// A text of a file as a message may hold it: short, one line, plain characters.
std::string printable(std::string_view text);

/// The same in quotes.
std::string shown(std::string_view text);

} // namespace korra
