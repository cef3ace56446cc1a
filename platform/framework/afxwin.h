#pragma once

/// The names of the window framework that this project uses.

#include <afxcoll.h>
#include <afxdllx.h>
#include <afxstr.h>
#include <windows.h>

/// A window as the framework has it: it refers to the handle, which is not its own.
class CWnd {
public:
    CWnd() = default;
    virtual ~CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    HWND GetSafeHwnd() const { return m_hWnd; }

    HWND m_hWnd = nullptr;
};
