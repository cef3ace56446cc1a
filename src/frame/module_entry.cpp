#include "frame/application.h"
#include "frame/document_data.h"
#include "orvex/shell.h"
#include "support/resource_handle.h"

#include "kd/ed.h"

#include <afxwin.h>

namespace {

/// The library's place in the window framework.
struct ExtensionModule {
    AFX_EXTENSION_MODULE record;
    BOOL attached = FALSE;
    HINSTANCE defaultResources = nullptr;
    HINSTANCE moduleResources = nullptr;
};

ExtensionModule extension;
KdApDataManager<CDocData> documentData;
constinit COrvexbaseApp application;

/// Makes the language library a source of resources for the whole program.
void attachResources(HINSTANCE library)
{
    if (extension.attached)
        return;
    extension.attached = AfxInitExtensionModule(extension.record, library);
    if (!extension.attached)
        return;
    extension.defaultResources = AfxGetModuleState()->m_hCurrentInstanceHandle;
    extension.moduleResources = library;
    extension.record.hResource = library;
    new CDynLinkLibrary(extension.record); // the framework owns it
}

void detachResources()
{
    if (!extension.attached)
        return;
    AfxTermExtensionModule(extension.record, FALSE);
    extension.defaultResources = nullptr;
    extension.moduleResources = nullptr;
    extension.attached = FALSE;
}

} // namespace

extern "C" BOOL APIENTRY DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        setModuleResourceHandle(loadLangResourceDLL(instance, 1));
        attachResources(moduleResourceHandle());
        InitKdUiDLL();
    } else if (reason == DLL_PROCESS_DETACH) {
        detachResources();
        freeLangResourceDLL(moduleResourceHandle());
    }
    return TRUE;
}

extern "C" ORVEX_API KdRx::AppRetCode kdrxEntryPoint(std::uint32_t code, void* packet)
{
    return application.dispatch(code, packet);
}

/// The version of the host's interface that the library was made for.
extern "C" ORVEX_API unsigned int kdrxGetApiVersion()
{
    return 0x07E90000;
}
