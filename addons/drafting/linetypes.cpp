#include "commands.h"

#include "output.h"
#include "prompts.h"

void ltload()
{
    std::wstring name;
    const int status = askName(L"\nLinetype: ", name);
    if (status != RTNORM)
        return printNone(L"linetype", status);
    KdDbDatabase* const drawing = kddbHostApplicationServices()->workingDatabase();
    const int result = QmLTypeMgr::LoadLType(name.c_str(), drawing->measurement(), drawing, 0);
    kdutPrintf(L"\nlinetype %s %d", name.c_str(), result);
}

void ltlist()
{
    printNames(L"ltlist", QmLTypeMgr::GetLTypeFromDrawing);
}
