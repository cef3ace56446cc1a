#pragma once

#include <windows.h>

/// What the framework keeps of one extension module.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized = FALSE;
    HMODULE hModule = nullptr;
    HMODULE hResource = nullptr;
};

/// The state of the program that extension modules run in.
struct AFX_MODULE_STATE {
    HINSTANCE m_hCurrentInstanceHandle;
    HINSTANCE m_hCurrentResourceHandle;
};

/// The program's state, which its extension modules share.
AFX_MODULE_STATE* AfxGetModuleState();

/// Readies an extension module's record. @return non-zero when it is ready; zero for a null module
BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HMODULE module);

/// Ends an extension module: its links of the resource chain are deleted.
/// @param all  non-zero deletes the links of every module
void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record, BOOL all = FALSE);

/// A link of the resource chain, made with `new`; the framework owns it from then on.
///
/// String resources are looked for in the program first, then in the links, the newest first.
class CDynLinkLibrary {
public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& record);
    ~CDynLinkLibrary();
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

    HMODULE m_hModule;
    HMODULE m_hResource;
};

/// The module of the resource chain that has a string resource: the program's resource handle when
/// none has it.
HINSTANCE AfxFindStringResourceHandle(UINT id);
