#pragma once

#include <windows.h>

namespace support {

/// The device context of a window, of the screen for null, for the length of a scope.
class WindowContext {
public:
    explicit WindowContext(HWND window) : window_(window), context_(GetDC(window)) {}

    ~WindowContext()
    {
        if (context_)
            ReleaseDC(window_, context_);
    }

    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;

    /// Null when there was none to be had.
    HDC get() const { return context_; }

private:
    HWND window_;
    HDC context_;
};

} // namespace support
