#include "prompts.h"

#include <climits>
#include <cmath>
#include <iterator>

int askText(const wchar_t* prompt, std::wstring& text)
{
    wchar_t typed[256] = L"";
    const int status = kdedGetString(1, prompt, typed, std::size(typed));
    text = typed;
    return status;
}

int askName(const wchar_t* prompt, std::wstring& name)
{
    const int status = askText(prompt, name);
    return status == RTNORM && name.empty() ? RTNONE : status;
}

int askNumber(const wchar_t* prompt, double& number)
{
    return kdedGetReal(prompt, &number);
}

int askWholeNumber(const wchar_t* prompt, int& number)
{
    double given = 0.0;
    const int status = askNumber(prompt, given);
    if (status != RTNORM)
        return status;
    if (given != std::trunc(given) || std::abs(given) > INT_MAX)
        return RTERROR;
    number = static_cast<int>(given);
    return RTNORM;
}
