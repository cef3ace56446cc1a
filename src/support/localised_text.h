#pragma once

#include <afxwin.h>

/// A message in the installed language: the string resource of the language library, or of the
/// resource chain while no language library is loaded.
/// @param builtIn  the text when there is no such resource
CString localisedText(UINT id, const wchar_t* builtIn);
