#include "support/localised_text.h"

#include "support/resource_handle.h"

CString localisedText(UINT id, const wchar_t* builtIn)
{
    const HINSTANCE library = moduleResourceHandle();
    CString text;
    const BOOL found = library ? text.LoadString(library, id) : text.LoadString(id);
    return found ? text : CString(builtIn);
}
