// The example of the README: one command that picks an entity and says what it is.

#include "orvex/orvex.h"

namespace {

void what()
{
    CQM_CmdechoServer quiet(0);
    KdDbObjectId outer, nested, viewport;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    if (EntSelEx(L"\nPick anything: ", outer, viewport, point, nested, transform) == RTNORM)
        kdutPrintf(L"\nIt is a %s.", nested.objectClass()->name());
}

KdEdCommandStack* commands()
{
    return KdEdCommandStack::cast(kdrxSysRegistry()->at(L"KDAPI_REGISTERED_COMMANDS"));
}

} // namespace

ORVEX_MODULE_API int kdrxEntryPoint(unsigned int message, void*)
{
    if (message == KdRx::kInitAppMsg)
        commands()->addCommand(L"CONSUMER", L"WHAT", L"WHAT", 0, what);
    if (message == KdRx::kUnloadAppMsg)
        commands()->removeCmd(L"CONSUMER", L"WHAT");
    return KdRx::kRetOK;
}

ORVEX_MODULE_API unsigned int kdrxGetApiVersion()
{
    return 0x07E90000;
}
