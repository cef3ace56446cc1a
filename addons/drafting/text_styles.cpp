#include "commands.h"

#include "output.h"
#include "prompts.h"

namespace {

struct Answers {
    std::wstring name;
    std::wstring font;
    std::wstring bigFont;
    double widthFactor = 1.0;
    double obliqueDegrees = 0.0;
};

int askStyle(Answers& answers)
{
    int status = askName(L"\nText style: ", answers.name);
    if (status == RTNORM)
        status = askText(L"\nFont file (.shx) or family: ", answers.font);
    if (status == RTNORM)
        status = askText(L"\nBig font file <none>: ", answers.bigFont);
    if (status == RTNORM)
        status = askNumber(L"\nWidth factor: ", answers.widthFactor);
    if (status == RTNORM)
        status = askNumber(L"\nObliquing angle, degrees: ", answers.obliqueDegrees);
    return status;
}

bool isShapeFile(const CString& font)
{
    return font.Right(4).CompareNoCase(L".shx") == 0;
}

void writeStyle(decltype(TxtStyleMgr::CreateTextStyle) write)
{
    Answers answers;
    const int status = askStyle(answers);
    if (status != RTNORM)
        return printNone(L"textstyle", status);
    const CString font = answers.font.c_str();
    const int result = write(answers.name.c_str(), answers.widthFactor, answers.obliqueDegrees,
                             !isShapeFile(font), font, answers.bigFont.c_str(), font,
                             kddbHostApplicationServices()->workingDatabase());
    kdutPrintf(L"\ntextstyle %s %d", answers.name.c_str(), result);
}

} // namespace

void tsmake()
{
    writeStyle(TxtStyleMgr::CreateTextStyle);
}

void tsset()
{
    writeStyle(TxtStyleMgr::ModifyTextStyle);
}

void tslist()
{
    printNames(L"tslist", TxtStyleMgr::GetTxtStyleNameFromDrawing);
}
