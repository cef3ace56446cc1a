#include "prompts.h"

#include <climits>
#include <cmath>
#include <iterator>

namespace {

/// What a blank does in a text that is asked for.
enum class Blank { endsText, isKept };

int askString(const wchar_t* prompt, std::wstring& text, Blank blank)
{
    wchar_t typed[256] = L"";
    const int status = kdedGetString(blank == Blank::isKept, prompt, typed, std::size(typed));
    text = typed;
    return status;
}

int noneForEmpty(int status, const std::wstring& text)
{
    return status == RTNORM && text.empty() ? RTNONE : status;
}

} // namespace

int askText(const wchar_t* prompt, std::wstring& text)
{
    return askString(prompt, text, Blank::isKept);
}

int askName(const wchar_t* prompt, std::wstring& name)
{
    return noneForEmpty(askString(prompt, name, Blank::isKept), name);
}

int askWord(const wchar_t* prompt, std::wstring& word)
{
    return noneForEmpty(askString(prompt, word, Blank::endsText), word);
}

int askPoint(const wchar_t* prompt, KdGePoint3d& point)
{
    kds_point given{};
    const int status = kdedGetPoint(nullptr, prompt, given);
    if (status == RTNORM)
        UCS2WCS(KdGePoint3d(given[0], given[1], given[2]), point);
    return status;
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
