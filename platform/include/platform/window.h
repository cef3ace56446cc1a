#pragma once

#include <windows.h>

/// What a window handle points to: whoever answers the window's messages.
struct HWND__ {
    HWND__() = default;
    HWND__(const HWND__&) = delete;
    HWND__& operator=(const HWND__&) = delete;
    virtual ~HWND__() = default;

    /// Handles one message. @return the answer that the message defines; 0 for one it does not know
    virtual LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
};
