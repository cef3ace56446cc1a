#pragma once

#include <windows.h>

#include <compare>
#include <string>
#include <string_view>

/// Wide text with value semantics.
///
/// Indexes and lengths count characters. An argument that is a null pointer is an empty text.
class CString {
public:
    CString() = default;

    CString(const wchar_t* text) : text_(text ? text : L"") {}

    CString(const wchar_t* text, int length) : text_(text, static_cast<std::size_t>(length)) {}

    /// From UTF-16, up to its terminating zero, as structures hold texts whose bytes are counted.
    template <std::size_t size>
    CString(const char16_t (&text)[size]) : CString(fromUtf16(text, size))
    {
    }

    explicit CString(wchar_t character, int repeat = 1)
        : text_(static_cast<std::size_t>(repeat), character)
    {
    }

    int GetLength() const { return static_cast<int>(text_.size()); }

    bool IsEmpty() const { return text_.empty(); }

    void Empty() { text_.clear(); }

    wchar_t GetAt(int index) const { return text_[static_cast<std::size_t>(index)]; }

    void SetAt(int index, wchar_t character) { text_[static_cast<std::size_t>(index)] = character; }

    wchar_t operator[](int index) const { return GetAt(index); }

    /// The text, with a terminating zero; good until the text changes.
    const wchar_t* GetString() const { return text_.c_str(); }

    operator const wchar_t*() const { return text_.c_str(); }

    CString& operator+=(const CString& other);

    CString& operator+=(const wchar_t* other) { return *this += CString(other); }

    CString& operator+=(wchar_t character);

    friend CString operator+(CString left, const CString& right) { return left += right; }

    friend CString operator+(CString left, const wchar_t* right) { return left += right; }

    friend CString operator+(const wchar_t* left, const CString& right)
    {
        return CString(left) += right;
    }

    friend CString operator+(CString left, wchar_t right) { return left += right; }

    friend bool operator==(const CString&, const CString&) = default;

    friend bool operator==(const CString& left, const wchar_t* right)
    {
        return left == CString(right);
    }

    friend std::strong_ordering operator<=>(const CString&, const CString&) = default;

    /// Compares code by code. @return negative, zero or positive
    int Compare(const wchar_t* other) const;

    /// Compares without case. @return negative, zero or positive
    int CompareNoCase(const wchar_t* other) const;

    /// The first place of a character or text at or after `start`; -1 when there is none.
    int Find(wchar_t character, int start = 0) const;
    int Find(const wchar_t* part, int start = 0) const;

    /// The last place of a character; -1 when there is none.
    int ReverseFind(wchar_t character) const;

    /// Parts; a count that is negative or reaches beyond the text is cut to it.
    CString Left(int count) const;
    CString Right(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;

    CString& MakeUpper();
    CString& MakeLower();

    /// Takes white space off, from the one end or from both.
    CString& TrimLeft();
    CString& TrimRight();
    CString& Trim();

    /// Replaces every occurrence of a text. @return how many there were
    int Replace(const wchar_t* old, const wchar_t* replacement);

    /// Takes characters out from an index on. @return the new length
    int Delete(int index, int count = 1);

    /// Formats by the rules of Windows' wide printf: `%s` takes wide text.
    void Format(const wchar_t* pattern, ...);
    void AppendFormat(const wchar_t* pattern, ...);

    /// Loads a string resource of the module, or of the first module of the resource chain that has
    /// it. @return non-zero when it was found; the text is unchanged otherwise
    BOOL LoadString(HINSTANCE module, UINT id);
    BOOL LoadString(UINT id);

private:
    explicit CString(std::wstring_view text) : text_(text) {}

    static CString fromUtf16(const char16_t* text, std::size_t size);

    std::wstring_view view() const { return text_; }

    std::wstring text_;
};
