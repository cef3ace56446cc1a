#include "commands.h"

#include "open_object.h"
#include "output.h"

void segment()
{
    KdDbEntity* copy = nullptr;
    KdGePoint3d point;
    const int picked = rx_entsel(L"\nSelect an object to copy: ", copy, point, nullptr);
    if (picked != RTNORM || !copy)
        return printNone(L"segment", picked);
    KdDbObjectId id;
    const Kdapi::ErrorStatus added =
        postToDb(copy, id, kddbHostApplicationServices()->workingDatabase());
    if (added != Kdapi::eOk) {
        giveUp(copy);
        return printNone(L"segment", added);
    }
    kdutPrintf(L"\nsegment %s %s", classText(id).c_str(), handleText(id).c_str());
}
