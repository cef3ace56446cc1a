#include "ed/prompt_rules.h"

#include "platform/text.h"

namespace korra::ed {
namespace {

bool isCapital(wchar_t character)
{
    return platform::toLower(character) != character || (character >= L'0' && character <= L'9');
}

/// The first run of capitals of a word; the whole word where it has none.
struct Capitals {
    explicit Capitals(std::wstring_view word)
    {
        while (begin < word.size() && !isCapital(word[begin]))
            ++begin;
        end = begin;
        while (end < word.size() && isCapital(word[end]))
            ++end;
        if (begin == word.size())
            begin = 0;
    }

    std::size_t begin = 0;
    std::size_t end = 0;
};

bool sameText(std::wstring_view left, std::wstring_view right)
{
    return platform::compareNoCase(left, right) == 0;
}

bool means(std::wstring_view text, std::wstring_view word)
{
    const Capitals capitals(word);
    if (sameText(text, word.substr(capitals.begin, capitals.end - capitals.begin)))
        return true;
    return text.size() >= capitals.end && sameText(text, word.substr(0, text.size()));
}

} // namespace

Keywords::Keywords(std::wstring_view list)
{
    while (true) {
        list = platform::trimmedLeft(list);
        if (list.empty())
            return;
        std::size_t length = 0;
        while (length < list.size() && !platform::isSpace(list[length]))
            ++length;
        words_.emplace_back(list.substr(0, length));
        list.remove_prefix(length);
    }
}

std::optional<std::wstring> Keywords::find(std::wstring_view text) const
{
    text = platform::trimmedLeft(platform::trimmedRight(text));
    if (text.starts_with(L'_'))
        text.remove_prefix(1);
    if (text.empty())
        return std::nullopt;
    for (const std::wstring& word : words_) {
        if (means(text, word))
            return word;
    }
    return std::nullopt;
}

} // namespace korra::ed
