/// A module that leaves its doings in the trace and has a few resources.

#include "kd/ap.h"
#include "kd/rx.h"
#include "platform/gate.h"
#include "platform/resources.h"

#include <afxwin.h>

#include <exception>

#ifndef PROBE_VERSION
#define PROBE_VERSION 0x07E90000
#endif
#ifndef PROBE_LOCKED
#define PROBE_LOCKED false
#endif
#ifndef PROBE_INIT_ANSWER
#define PROBE_INIT_ANSWER KdRx::kRetOK
#endif

namespace {

struct StaticObject {
    StaticObject() { platform::note("static initialisation"); }

    ~StaticObject() { platform::note("static destruction"); }
};

StaticObject staticObject;
AFX_EXTENSION_MODULE extension;

constexpr platform::StringResource kStrings[] = {
    {101, L"probe's own 101"}, {9000, L"9000"}, {9001, L"100% \"%s\""}};
constexpr platform::CursorResource kCursors[] = {{7}};

/// Its class is gone with the module.
struct OwnError : std::exception {
    const char* what() const noexcept override { return "no licence"; }
};

[[maybe_unused]] KdRx::AppRetCode fail()
{
    throw OwnError();
}

void unlock(void* packet)
{
    auto* const linker = KdRxDynamicLinker::cast(kdrxSysRegistry()->at(L"DynamicLinker"));
    if (PROBE_LOCKED || !linker)
        return;
    linker->unlockApplication(packet);
    linker->registerAppMDIAware(packet);
}

} // namespace

PLATFORM_RESOURCES = {kStrings, kCursors};

extern "C" BOOL APIENTRY DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    platform::note("DllMain", reason);
    if (reason == DLL_PROCESS_ATTACH) {
        if (AfxInitExtensionModule(extension, instance))
            new CDynLinkLibrary(extension);
    } else if (reason == DLL_PROCESS_DETACH) {
        AfxTermExtensionModule(extension);
    }
    return TRUE;
}

extern "C" __attribute__((visibility("default"))) KdRx::AppRetCode
kdrxEntryPoint(KdRx::AppMsgCode code, void* packet)
{
    const KdApDocument* const document = kdDocManagerPtr()->curDocument();
    platform::note("message", static_cast<int>(code), document ? document->fileName() : L"");
    if (code != KdRx::kInitAppMsg)
        return KdRx::kRetOK;
    unlock(packet);
    return PROBE_INIT_ANSWER;
}

extern "C" __attribute__((visibility("default"))) unsigned int kdrxGetApiVersion()
{
    platform::note("kdrxGetApiVersion");
    return PROBE_VERSION;
}
