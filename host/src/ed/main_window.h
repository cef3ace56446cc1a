#pragma once

#include "ed/input_sources.h"
#include "platform/window.h"

#include <afxwin.h>

#include <string>

namespace korra::ed {

/// The host's main window: it takes copied text as typed command input.
struct MainWindow final : HWND__ {
    /// @param commands  where command text goes; outlives the window
    explicit MainWindow(TypedCharacters& commands) : commands_(commands) { frame.m_hWnd = this; }

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    std::wstring caption;
    CWnd frame; ///< the window as the window framework has it

private:
    TypedCharacters& commands_;
};

} // namespace korra::ed
