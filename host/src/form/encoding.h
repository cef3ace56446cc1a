#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace korra {

class CodePage;

/// The code page of a drawing's texts; conversion through iconv.
class TextEncoding {
public:
    /// UTF-8.
    TextEncoding();

    /// @param codePage  as the header names it: "ANSI_1251", "ANSI_936", "DOS850", "UTF-8"; one
    /// that
    ///                  is unknown reads and writes bytes as Latin-1
    explicit TextEncoding(std::string codePage);

    /// @param otherPage  in which texts are read that are none of the code page; never written
    TextEncoding(std::string codePage, std::string_view otherPage);

    const std::string& codePage() const { return name_; }

    /// Also reads \U+XXXX and \M+nXXXX escapes and control characters in the form ^J. Bytes that
    /// are no text of any code page are read as Latin-1: different names stay different.
    std::wstring decode(std::string_view bytes) const;

    /// Characters that the code page lacks become \U+XXXX, control characters ^J.
    std::string encode(std::wstring_view text) const;

private:
    std::string name_;
    std::shared_ptr<const CodePage> page_;
    std::shared_ptr<const CodePage> otherPage_; ///< null: none
};

} // namespace korra
