#pragma once

#include <afxwin.h>

/// A message in the installed language: the string resource of the language library, or of the
/// resource chain while no language library is loaded.
///
/// It is a text, not a format: of what a translator writes only the place of the argument means
/// something, "%s" of a text, "%d" of a number. Print it with "%s".
/// @param builtIn  the text when there is no such resource
CString localisedText(UINT id, const wchar_t* builtIn, const CString& argument = {});
CString localisedText(UINT id, const wchar_t* builtIn, int argument);
