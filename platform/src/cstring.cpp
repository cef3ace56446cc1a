#include <afxwin.h>

#include "platform/format.h"
#include "platform/gate.h"
#include "platform/resources.h"
#include "platform/text.h"

#include <algorithm>

namespace {
std::size_t clampedCount(int count, std::size_t most)
{
    return std::min(static_cast<std::size_t>(std::max(count, 0)), most);
}

int asIndex(std::size_t position)
{
    return position == std::wstring::npos ? -1 : static_cast<int>(position);
}
} // namespace

CString& CString::operator+=(const CString& other)
{
    text_ += other.text_;
    return *this;
}

CString CString::fromUtf16(const char16_t* text, std::size_t size)
{
    const std::u16string_view units(text, size);
    return CString(std::wstring_view(platform::fromUtf16(units.substr(0, units.find(u'\0')))));
}

CString& CString::operator+=(wchar_t character)
{
    text_ += character;
    return *this;
}

int CString::Compare(const wchar_t* other) const
{
    const int order = text_.compare(other ? other : L"");
    return order < 0 ? -1 : order > 0;
}

int CString::CompareNoCase(const wchar_t* other) const
{
    return platform::compareNoCase(text_, other ? other : L"");
}

int CString::Find(wchar_t character, int start) const
{
    return start < 0 ? -1 : asIndex(text_.find(character, static_cast<std::size_t>(start)));
}

int CString::Find(const wchar_t* part, int start) const
{
    if (!part || start < 0)
        return -1;
    return asIndex(text_.find(part, static_cast<std::size_t>(start)));
}

int CString::ReverseFind(wchar_t character) const
{
    return asIndex(text_.rfind(character));
}

CString CString::Left(int count) const
{
    return CString(view().substr(0, clampedCount(count, text_.size())));
}

CString CString::Right(int count) const
{
    return CString(view().substr(text_.size() - clampedCount(count, text_.size())));
}

CString CString::Mid(int first) const
{
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const
{
    const std::wstring_view rest = view().substr(clampedCount(first, text_.size()));
    return CString(rest.substr(0, clampedCount(count, rest.size())));
}

CString& CString::MakeUpper()
{
    std::transform(text_.begin(), text_.end(), text_.begin(), platform::toUpper);
    return *this;
}

CString& CString::MakeLower()
{
    std::transform(text_.begin(), text_.end(), text_.begin(), platform::toLower);
    return *this;
}

CString& CString::TrimLeft()
{
    text_ = std::wstring(platform::trimmedLeft(text_));
    return *this;
}

CString& CString::TrimRight()
{
    text_.resize(platform::trimmedRight(text_).size());
    return *this;
}

CString& CString::Trim()
{
    return TrimRight().TrimLeft();
}

int CString::Replace(const wchar_t* old, const wchar_t* replacement)
{
    const std::wstring_view from = old ? old : L"";
    const std::wstring_view to = replacement ? replacement : L"";
    if (from.empty())
        return 0;
    int count = 0;
    for (std::size_t at = text_.find(from); at != std::wstring::npos;
         at = text_.find(from, at + to.size())) {
        text_.replace(at, from.size(), to);
        ++count;
    }
    return count;
}

int CString::Delete(int index, int count)
{
    const std::size_t first = clampedCount(index, text_.size());
    text_.erase(first, clampedCount(count, text_.size() - first));
    return GetLength();
}

void CString::Format(const wchar_t* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    text_ = platform::formatList(pattern, arguments);
    va_end(arguments);
}

void CString::AppendFormat(const wchar_t* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    text_ += platform::formatList(pattern, arguments);
    va_end(arguments);
}

BOOL CString::LoadString(HINSTANCE module, UINT id)
{
    return platform::gate("CString::LoadString", id).guard(FALSE, [&] {
        const auto found = platform::findString(module, id);
        if (!found)
            return FALSE;
        text_ = *found;
        return TRUE;
    });
}

BOOL CString::LoadString(UINT id)
{
    return LoadString(AfxFindStringResourceHandle(id), id);
}
