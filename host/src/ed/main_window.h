#pragma once

#include "ed/input.h"
#include "platform/window.h"

#include <afxwin.h>

#include <string>

namespace korra::ed {

/// The host's main window: it takes copied text as typed command input.
struct MainWindow final : HWND__ {
    /// @param input  where the commands go; outlives the window
    explicit MainWindow(InputStream& input) : input_(input) { frame.m_hWnd = this; }

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    std::wstring caption;
    CWnd frame; ///< the window as the window framework has it

private:
    InputStream& input_;
};

} // namespace korra::ed
