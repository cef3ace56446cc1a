#include "platform/window.h"

#include "platform/gate.h"

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return platform::gate("SendMessageW", message).guard(LRESULT{0}, [&]() -> LRESULT {
        if (!window)
            return 0;
        if (message == WM_COPYDATA && lParam) {
            const auto& record = *reinterpret_cast<const COPYDATASTRUCT*>(lParam);
            platform::note("WM_COPYDATA", record.dwData, record.cbData);
        }
        return window->onMessage(message, wParam, lParam);
    });
}
