#include "support/localised_text.h"

#include "support/resource_handle.h"

CString localisedText(UINT id, const wchar_t* builtIn, const CString& argument)
{
    const HINSTANCE library = moduleResourceHandle();
    CString text;
    const BOOL found = library ? text.LoadString(library, id) : text.LoadString(id);
    if (!found)
        text = builtIn;
    text.Replace(L"%s", argument);
    return text;
}
