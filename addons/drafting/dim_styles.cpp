#include "commands.h"

#include "output.h"
#include "prompts.h"

namespace {

struct Answers {
    std::wstring name;
    std::wstring textStyle;
    double textHeight = 0.0;
    double arrowSize = 0.0;
};

int askStyle(Answers& answers)
{
    int status = askName(L"\nDimension style: ", answers.name);
    if (status == RTNORM)
        status = askText(L"\nText style <current>: ", answers.textStyle);
    if (status == RTNORM)
        status = askNumber(L"\nText height: ", answers.textHeight);
    if (status == RTNORM)
        status = askNumber(L"\nArrow size: ", answers.arrowSize);
    return status;
}

void writeStyle(decltype(DimStyleMgr::CreateDimStyle) write)
{
    constexpr unsigned int kDecimals = 2;
    constexpr double kToleranceFactor = 0.0;
    constexpr double kExtensionBeyond = 2.0;
    constexpr double kTextGap = 1.0;
    constexpr int kInsideHorizontal = 0;
    constexpr int kOutsideHorizontal = 1;

    Answers answers;
    const int status = askStyle(answers);
    if (status != RTNORM)
        return printNone(L"dimstyle", status);
    const int result = write(answers.name.c_str(), answers.textStyle.c_str(), answers.textHeight,
                             answers.arrowSize, kDecimals, kToleranceFactor, kExtensionBeyond,
                             kTextGap, kInsideHorizontal, kOutsideHorizontal,
                             kddbHostApplicationServices()->workingDatabase());
    kdutPrintf(L"\ndimstyle %s %d", answers.name.c_str(), result);
}

} // namespace

void dsmake()
{
    writeStyle(DimStyleMgr::CreateDimStyle);
}

void dsset()
{
    writeStyle(DimStyleMgr::ModifyDimStyle);
}

void dslist()
{
    printNames(L"dslist", DimStyleMgr::GetDimStyleNameFromDrawing);
}
