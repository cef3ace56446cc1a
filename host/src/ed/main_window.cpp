#include "ed/main_window.h"

#include "platform/text.h"

namespace korra::ed {
namespace {

/// The kind of copied data that is command text.
constexpr ULONG_PTR kCommandText = 1;

/// The copied characters up to the terminating zero.
std::wstring copiedText(const COPYDATASTRUCT& record)
{
    const auto* const units = static_cast<const char16_t*>(record.lpData);
    std::u16string_view text(units, record.cbData / sizeof(char16_t));
    return platform::fromUtf16(text.substr(0, text.find(u'\0')));
}

} // namespace

LRESULT MainWindow::onMessage(UINT message, WPARAM, LPARAM lParam)
{
    if (message != WM_COPYDATA || !lParam)
        return FALSE;
    const auto& record = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    if (record.dwData != kCommandText || !record.lpData)
        return FALSE;
    commands_.type(copiedText(record));
    return TRUE;
}

} // namespace korra::ed
