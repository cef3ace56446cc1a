#include "support/localised_text.h"

#include "support/resource_handle.h"

#include <string>

namespace {

CString load(UINT id, const wchar_t* builtIn)
{
    const HINSTANCE library = moduleResourceHandle();
    CString text;
    const BOOL found = library ? text.LoadString(library, id) : text.LoadString(id);
    return found ? text : CString(builtIn);
}

} // namespace

CString localisedText(UINT id, const wchar_t* builtIn, const CString& argument)
{
    CString text = load(id, builtIn);
    text.Replace(L"%s", argument);
    return text;
}

CString localisedText(UINT id, const wchar_t* builtIn, int argument)
{
    CString text = load(id, builtIn);
    text.Replace(L"%d", std::to_wstring(argument).c_str());
    return text;
}
