/// A module whose command ends the program as a crash does.

#include "kd/ed.h"
#include "kd/rx.h"

#include <cstdlib>

namespace {

void endAll()
{
    kdutPrintf(L"half a line");
    std::_Exit(EXIT_SUCCESS);
}

KdEdCommandStack* commands()
{
    return KdEdCommandStack::cast(kdrxSysRegistry()->at(L"KDAPI_REGISTERED_COMMANDS"));
}

} // namespace

extern "C" __attribute__((visibility("default"))) KdRx::AppRetCode
kdrxEntryPoint(KdRx::AppMsgCode code, void*)
{
    if (code == KdRx::kInitAppMsg)
        commands()->addCommand(L"PROBE", L"ENDALL", L"ENDALL", 0, endAll);
    return KdRx::kRetOK;
}

extern "C" __attribute__((visibility("default"))) unsigned int kdrxGetApiVersion()
{
    return 0x07E90000;
}
