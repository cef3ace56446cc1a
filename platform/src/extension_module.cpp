#include <afxdllx.h>

#include "platform/gate.h"
#include "platform/modules.h"
#include "platform/resources.h"

#include <algorithm>
#include <vector>

namespace {
/// Newest last. Not destroyed: a module that the program links detaches when the program ends.
std::vector<CDynLinkLibrary*>& links()
{
    static auto& all = *new std::vector<CDynLinkLibrary*>;
    return all;
}
} // namespace

AFX_MODULE_STATE* AfxGetModuleState()
{
    static AFX_MODULE_STATE state{platform::programModule(), platform::programModule()};
    return &state;
}

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HMODULE module)
{
    return platform::gate("AfxInitExtensionModule").guard(FALSE, [&] {
        if (!module)
            return FALSE;
        record = {TRUE, module, module};
        return TRUE;
    });
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record, BOOL all)
{
    platform::gate("AfxTermExtensionModule").always([&] {
        if (!record.bInitialized)
            return;
        for (CDynLinkLibrary* link : std::vector(links())) {
            if (all || link->m_hModule == record.hModule)
                delete link;
        }
    });
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& record)
    : m_hModule(record.hModule), m_hResource(record.hResource)
{
    links().push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary()
{
    std::erase(links(), this);
}

HINSTANCE AfxFindStringResourceHandle(UINT id)
{
    const HINSTANCE program = AfxGetModuleState()->m_hCurrentResourceHandle;
    if (platform::findString(program, id))
        return program;
    const auto link = std::find_if(links().rbegin(), links().rend(), [id](const auto* each) {
        return platform::findString(each->m_hResource, id);
    });
    return link == links().rend() ? program : (*link)->m_hResource;
}
