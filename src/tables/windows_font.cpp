#include "tables/windows_font.h"

#include "support/window_context.h"

#include "kd/ed.h"

using support::WindowContext;

namespace {

/// Takes an enumerated family over when it is the wanted one; always goes on.
int CALLBACK takeIfWanted(const LOGFONTW* family, const TEXTMETRICW*, DWORD, LPARAM parameter)
{
    LOGFONTW& wanted = *reinterpret_cast<LOGFONTW*>(parameter);
    if (CString(family->lfFaceName).CompareNoCase(CString(wanted.lfFaceName)) == 0)
        wanted = *family;
    return 1;
}

HWND mainFrame()
{
    const CWnd* const frame = kdedGetKdapiFrame();
    return frame ? frame->GetSafeHwnd() : nullptr;
}

} // namespace

bool tables::fitsFaceName(const CString& name)
{
    LOGFONTW font{};
    return name.GetLength() < LF_FACESIZE && wcscpy_s(font.lfFaceName, name) == 0;
}

LOGFONTW tables::findWindowsFont(const CString& faceName)
{
    LOGFONTW wanted{};
    wcscpy_s(wanted.lfFaceName, faceName);
    const WindowContext context(mainFrame());
    EnumFontFamiliesW(context.get(), nullptr, takeIfWanted, reinterpret_cast<LPARAM>(&wanted));
    return wanted;
}
