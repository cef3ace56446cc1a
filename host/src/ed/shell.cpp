#include "ed/editor.h"
#include "kd/ed.h"
#include "platform/format.h"
#include "platform/gate.h"
#include "platform/text.h"

/// The command line and the main window as add-ons reach them.
using korra::EditorState;
using korra::ed::runningEditor;

int kdutPrintf(const wchar_t* format, ...)
{
    if (!format)
        return RTERROR;
    std::va_list arguments;
    va_start(arguments, format);
    const std::wstring text = platform::formatList(format, arguments);
    va_end(arguments);

    return platform::gate("kdutPrintf", text).always([&] {
        EditorState* const editor = runningEditor();
        if (!editor)
            return RTERROR;
        editor->commandLine.print(platform::toUtf8(text));
        return RTNORM;
    });
}

HWND kdsw_kdapiMainWnd()
{
    return platform::gate("kdsw_kdapiMainWnd").always([]() -> HWND {
        EditorState* const editor = runningEditor();
        return editor ? &editor->mainWindow : nullptr;
    });
}

CWnd* kdedGetKdapiFrame()
{
    return platform::gate("kdedGetKdapiFrame").always([]() -> CWnd* {
        EditorState* const editor = runningEditor();
        return editor ? &editor->mainWindow.frame : nullptr;
    });
}

void qmSetMainFrameCaptionTitle(const wchar_t* caption)
{
    platform::gate("qmSetMainFrameCaptionTitle", caption).always([&] {
        if (EditorState* const editor = runningEditor())
            editor->mainWindow.caption = caption ? caption : L"";
    });
}

void InitKdUiDLL()
{
    platform::gate("InitKdUiDLL").always([] {});
}
