#include "ed/number_text.h"

#include "platform/format.h"

namespace korra::ed {

std::wstring numberText(double number)
{
    std::wstring text = platform::format(L"%.6f", number);
    if (text.find(L'.') == std::wstring::npos)
        return text;
    text.erase(text.find_last_not_of(L'0') + 1);
    if (text.back() == L'.')
        text.pop_back();
    return text == L"-0" ? L"0" : text;
}

} // namespace korra::ed
