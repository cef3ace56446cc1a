#include <afxcoll.h>

namespace {
/// A place is the address of the key that comes next.
POSITION placeOf(const CString& key)
{
    return reinterpret_cast<POSITION>(const_cast<CString*>(&key));
}

const CString& keyAt(POSITION place)
{
    return *reinterpret_cast<const CString*>(place);
}
} // namespace

void CStringArray::SetAt(INT_PTR index, const wchar_t* text)
{
    items_[static_cast<std::size_t>(index)] = text;
}

INT_PTR CStringArray::Add(const wchar_t* text)
{
    items_.emplace_back(text);
    return GetSize() - 1;
}

void CStringArray::InsertAt(INT_PTR index, const wchar_t* text)
{
    items_.insert(items_.begin() + index, text);
}

void CStringArray::RemoveAt(INT_PTR index, INT_PTR count)
{
    items_.erase(items_.begin() + index, items_.begin() + index + count);
}

BOOL CMapStringToString::Lookup(const wchar_t* key, CString& value) const
{
    const auto found = items_.find(key);
    if (found == items_.end())
        return FALSE;
    value = found->second;
    return TRUE;
}

POSITION CMapStringToString::GetStartPosition() const
{
    return items_.empty() ? nullptr : placeOf(items_.begin()->first);
}

void CMapStringToString::GetNextAssoc(POSITION& next, CString& key, CString& value) const
{
    auto item = items_.find(keyAt(next));
    key = item->first;
    value = item->second;
    ++item;
    next = item == items_.end() ? nullptr : placeOf(item->first);
}
