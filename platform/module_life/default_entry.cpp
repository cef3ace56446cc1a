#include <windows.h>

/// The entry of a module that defines none: the linker takes it only when nothing else is there.
extern "C" BOOL APIENTRY DllMain(HINSTANCE, DWORD, LPVOID)
{
    return TRUE;
}
