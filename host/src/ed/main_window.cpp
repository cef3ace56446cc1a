#include "ed/main_window.h"

#include "ed/editor.h"
#include "kd/ed.h"
#include "korra/console.h"
#include "platform/gate.h"
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
    editor().input.type(copiedText(record));
    return TRUE;
}

} // namespace korra::ed

std::string korra::mainWindowCaption()
{
    return platform::toUtf8(ed::editor().mainWindow.caption);
}

HWND kdsw_kdapiMainWnd()
{
    platform::note("kdsw_kdapiMainWnd");
    korra::EditorState* const editor = korra::ed::runningEditor();
    return editor ? &editor->mainWindow : nullptr;
}

CWnd* kdedGetKdapiFrame()
{
    platform::note("kdedGetKdapiFrame");
    korra::EditorState* const editor = korra::ed::runningEditor();
    return editor ? &editor->mainWindow.frame : nullptr;
}

void qmSetMainFrameCaptionTitle(const wchar_t* caption)
{
    platform::note("qmSetMainFrameCaptionTitle", caption);
    if (korra::EditorState* const editor = korra::ed::runningEditor())
        editor->mainWindow.caption = caption ? caption : L"";
}

void InitKdUiDLL()
{
    platform::note("InitKdUiDLL");
}
