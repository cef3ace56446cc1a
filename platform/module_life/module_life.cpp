/// Calls the module's DllMain when the module comes and goes, as Windows' loader does: attach after
/// the module's static initialisation, detach before its static destruction.
///
/// Linked last into a module, this file's constructor runs after every other initialiser. Its
/// destructor is the first thing that runs when the module is unloaded; when the program ends
/// instead, static objects go before destructors, so that detach is an exit handler as well.

#include <windows.h>

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <utility>

extern "C" {
BOOL APIENTRY DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

/// Asked for by name, so that the linker takes this file out of its library.
extern const char platformModuleLife;
const char platformModuleLife = 0;
}

namespace {
bool attached = false;

HINSTANCE thisModule()
{
    Dl_info info;
    void* map = nullptr;
    dladdr1(&attached, &info, &map, RTLD_DL_LINKMAP);
    return static_cast<HINSTANCE>(map);
}

void detach()
{
    if (std::exchange(attached, false))
        DllMain(thisModule(), DLL_PROCESS_DETACH, nullptr);
}

[[gnu::constructor]] void attach()
{
    attached = true;
    DllMain(thisModule(), DLL_PROCESS_ATTACH, nullptr);
    std::atexit(detach);
}

[[gnu::destructor]] void detachOnUnload()
{
    detach();
}
} // namespace
