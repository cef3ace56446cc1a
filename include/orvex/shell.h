#pragma once

/// The language library and small services of the host's shell.

#include "orvex/api.h"

#include <afxwin.h>

/// Loads the language library of a module: the module's path without its last four characters,
/// followed by "Res.dll".
/// @param abortOnFailure  not 0: a library that cannot be loaded stops the host with a message
/// @return the library, to be given back with freeLangResourceDLL(); null when it cannot be loaded
ORVEX_API HINSTANCE loadLangResourceDLL(HINSTANCE module, int abortOnFailure);

/// Gives a language library back; nothing for null.
ORVEX_API void freeLangResourceDLL(HINSTANCE library);

/// True when the host lists an extension module of that file name; case does not count.
ORVEX_API bool isModuleLoaded(const wchar_t* moduleName);

/// Loads an extension module unless it is loaded already.
/// @return true when the module is loaded; false also for whatever is thrown on the way
ORVEX_API bool orvex_ArxLoad(const wchar_t* moduleName);

/// Sends a command to the host's main window and waits until the window has taken it.
ORVEX_API void sendCommandToAutoCAD(CString command);

/// Sets the caption of the host's main window.
ORVEX_API void setTavroTitleCaption(CString caption);

namespace Orvex {

/// A string resource of the first module of the resource chain that has one of that number.
/// @return the text; empty, with a message on the command line, when there is none
ORVEX_API CString StringFromID(unsigned int id);

/// @return 1 when the path names a file or a folder, else 0
ORVEX_API int IsFileExist(CString path);

} // namespace Orvex
