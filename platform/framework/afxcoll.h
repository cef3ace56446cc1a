#pragma once

#include <afxstr.h>

#include <map>
#include <vector>

/// An array of texts that grows as needed; an index outside it is undefined.
class CStringArray {
public:
    CStringArray() = default;
    CStringArray(const CStringArray&) = delete;
    CStringArray& operator=(const CStringArray&) = delete;

    INT_PTR GetSize() const { return static_cast<INT_PTR>(items_.size()); }

    INT_PTR GetCount() const { return GetSize(); }

    bool IsEmpty() const { return items_.empty(); }

    const CString& GetAt(INT_PTR index) const { return items_[static_cast<std::size_t>(index)]; }

    void SetAt(INT_PTR index, const wchar_t* text);

    CString& operator[](INT_PTR index) { return items_[static_cast<std::size_t>(index)]; }

    const CString& operator[](INT_PTR index) const { return GetAt(index); }

    /// Appends a text. @return its index
    INT_PTR Add(const wchar_t* text);
    void InsertAt(INT_PTR index, const wchar_t* text);
    void RemoveAt(INT_PTR index, INT_PTR count = 1);

    void RemoveAll() { items_.clear(); }

private:
    std::vector<CString> items_;
};

/// A place in a map that is being walked; null ends the walk.
using POSITION = struct __POSITION*;

/// Texts by text; keys are compared code by code.
class CMapStringToString {
public:
    CMapStringToString() = default;
    CMapStringToString(const CMapStringToString&) = delete;
    CMapStringToString& operator=(const CMapStringToString&) = delete;

    INT_PTR GetCount() const { return static_cast<INT_PTR>(items_.size()); }

    INT_PTR GetSize() const { return GetCount(); }

    BOOL IsEmpty() const { return items_.empty(); }

    /// @param value  set only when the key is there. @return non-zero when it is
    BOOL Lookup(const wchar_t* key, CString& value) const;

    void SetAt(const wchar_t* key, const wchar_t* value) { items_[key] = value; }

    CString& operator[](const wchar_t* key) { return items_[key]; }

    BOOL RemoveKey(const wchar_t* key) { return items_.erase(key) != 0; }

    void RemoveAll() { items_.clear(); }

    /// Walks the map in no order that a caller may count on.
    POSITION GetStartPosition() const;
    void GetNextAssoc(POSITION& next, CString& key, CString& value) const;

private:
    std::map<CString, CString> items_;
};
