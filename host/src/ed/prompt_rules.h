#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korra::ed {

/// Words that a prompt takes besides what it asks for.
class Keywords {
public:
    Keywords() = default;

    /// @param list  words with blanks between; the capitals of a word are its shortest form
    explicit Keywords(std::wstring_view list);

    /// The keyword that a text means, as the list has it: a beginning of the word that holds its
    /// capitals, or the capitals alone, without regard to case.
    std::optional<std::wstring> find(std::wstring_view text) const;

private:
    std::vector<std::wstring> words_;
};

/// What kdedInitGet() laid down for the next prompt.
struct PromptRules {
    enum Flag { kNoEnter = 1, kNoZero = 2, kNoNegative = 4, kAnyText = 128 };

    bool has(Flag flag) const { return (flags & flag) != 0; }

    int flags = 0;
    Keywords keywords;
};

} // namespace korra::ed
