#include "commands.h"

#include "output.h"

namespace {

void printEntity(const wchar_t* word, KdDbObjectId id)
{
    kdutPrintf(L"\n%s %s %s", word, classText(id).c_str(), handleText(id).c_str());
}

void printTransform(const KdGeMatrix3d& matrix)
{
    for (unsigned int row = 0; row < 4; ++row) {
        std::wstring line = L"\nxform";
        for (unsigned int column = 0; column < 4; ++column)
            line += L' ' + numberText(matrix(row, column));
        kdutPrintf(L"%s", line.c_str());
    }
}

} // namespace

void pickinfo()
{
    KdDbObjectId outer, nested, viewport;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    const int status = EntSelEx(L"\nSelect an object: ", outer, viewport, point, nested, transform);
    if (status != RTNORM)
        return printNone(L"picked", status);
    printEntity(L"picked", nested);
    printEntity(L"outer", outer);
    kdutPrintf(L"\nviewport %s", viewport.isNull() ? L"none" : handleText(viewport).c_str());
    kdutPrintf(L"\npoint %s", pointText(point).c_str());
    printTransform(transform);
}
