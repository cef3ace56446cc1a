#include "gi/mtext_lines.h"

#include "gi/text_codes.h"

#include <algorithm>

namespace korra {

namespace {

constexpr std::wstring_view kWithArgument = L"ACcFfHQTWp"; ///< codes that end with a semicolon
constexpr std::wstring_view kSwitches = L"LlOoKk";
constexpr wchar_t kNoBreakSpace = L'\u00A0';

bool isOneOf(wchar_t code, std::wstring_view codes)
{
    return codes.find(code) != std::wstring_view::npos;
}

/// Walks the contents once, code by code.
class ContentsReader {
public:
    explicit ContentsReader(std::wstring_view contents) : rest_(contents) {}

    std::vector<std::wstring> read();

    bool metFormatting() const { return metFormatting_; }

private:
    void readBackslash();
    void readStack();
    void readCaret();
    void readUniversal();

    void show(wchar_t character) { paragraphs_.back() += character; }

    void endParagraph() { paragraphs_.emplace_back(); }

    void skip(std::size_t count) { rest_.remove_prefix(std::min(count, rest_.size())); }

    /// Takes what stands before the next semicolon, and the semicolon.
    std::wstring_view takeArgument();

    std::wstring_view rest_;
    std::vector<std::wstring> paragraphs_{1};
    bool metFormatting_ = false;
};

std::vector<std::wstring> ContentsReader::read()
{
    while (!rest_.empty()) {
        const wchar_t next = rest_.front();
        if (next == L'\\' && rest_.size() > 1) {
            readBackslash();
        } else if (next == L'^' && rest_.size() > 1) {
            readCaret();
        } else {
            skip(1);
            if (next == L'\n')
                endParagraph();
            else if (next != L'{' && next != L'}' && next != L'\r')
                show(next);
        }
    }
    std::ranges::transform(paragraphs_, paragraphs_.begin(),
                           [](const std::wstring& text) { return withoutControlCodes(text); });
    return std::move(paragraphs_);
}

void ContentsReader::readBackslash()
{
    const wchar_t code = rest_[1];
    if (code == L'U') {
        readUniversal();
        return;
    }
    skip(2);
    metFormatting_ |= code == L'S' || isOneOf(code, kWithArgument) || isOneOf(code, kSwitches);
    if (code == L'P' || code == L'X' || code == L'N')
        endParagraph();
    else if (code == L'~')
        show(kNoBreakSpace);
    else if (code == L'S')
        readStack();
    else if (isOneOf(code, kWithArgument))
        takeArgument();
    else if (!isOneOf(code, kSwitches))
        show(code);
}

/// "\S1/2;", "\S1#2;" and "\S+0.1^-0.2;".
void ContentsReader::readStack()
{
    for (const wchar_t character : takeArgument()) {
        if (character == L'^')
            show(L' ');
        else if (character != L'\\')
            show(character == L'#' ? L'/' : character);
    }
}

/// Control characters are written as a caret with a letter: "^I" a tab, "^J" a line feed.
void ContentsReader::readCaret()
{
    const wchar_t code = rest_[1];
    skip(2);
    if (code == L'J')
        endParagraph();
    else if (code == L'I' || code == L' ')
        show(code == L' ' ? L'^' : L' ');
    else if (code != L'M') {
        show(L'^');
        show(code);
    }
}

void ContentsReader::readUniversal()
{
    constexpr std::wstring_view kDigits = L"0123456789ABCDEFabcdef";
    const std::wstring_view digits = rest_.substr(std::min<std::size_t>(3, rest_.size()), 4);
    if (!rest_.starts_with(L"\\U+") || digits.size() < 4 ||
        digits.find_first_not_of(kDigits) != std::wstring_view::npos) {
        skip(1);
        return;
    }
    show(static_cast<wchar_t>(std::stoul(std::wstring(digits), nullptr, 16)));
    skip(7);
}

std::wstring_view ContentsReader::takeArgument()
{
    const std::wstring_view argument = rest_.substr(0, rest_.find(L';'));
    skip(argument.size() + 1);
    return argument;
}

} // namespace

std::vector<std::wstring> readParagraphs(std::wstring_view contents)
{
    return ContentsReader(contents).read();
}

bool isFormatted(std::wstring_view contents)
{
    ContentsReader reader(contents);
    reader.read();
    return reader.metFormatting();
}

std::vector<std::wstring> wrapped(const std::wstring& paragraph, double frameWidth,
                                  const std::function<double(std::wstring_view)>& widthOf)
{
    if (frameWidth <= 0.0)
        return {paragraph};
    std::vector<std::wstring> lines;
    const std::wstring_view text = paragraph;
    std::size_t lineStart = 0;
    std::size_t lineEnd = 0; // behind the last word that is known to fit
    double width = 0.0;      // from lineStart to lineEnd
    while (lineEnd < text.size()) {
        const std::size_t word = text.find_first_not_of(L' ', lineEnd);
        if (word == std::wstring_view::npos)
            break;
        const std::size_t wordEnd = std::min(text.find(L' ', word), text.size());
        const double grown = width + widthOf(text.substr(lineEnd, wordEnd - lineEnd));
        const bool isFirst = lineEnd == lineStart;
        if (grown <= frameWidth || isFirst) {
            width = grown;
            lineEnd = wordEnd;
            continue;
        }
        lines.emplace_back(text.substr(lineStart, lineEnd - lineStart));
        lineStart = lineEnd = word;
        width = 0.0;
    }
    lines.emplace_back(text.substr(lineStart));
    return lines;
}

} // namespace korra
