#include "platform/input.h"

#include "platform/gate.h"

#include <windows.h>

#include <bitset>

namespace {
constexpr std::size_t kKeyCount = 256;
constexpr SHORT kHeld = static_cast<SHORT>(0x8000);

std::bitset<kKeyCount> heldKeys;
bool mousePresent = true;
bool buttonsSwapped = false;

bool isKey(int key)
{
    return key >= 0 && static_cast<std::size_t>(key) < kKeyCount;
}

SHORT keyState(int key)
{
    return isKey(key) && heldKeys[static_cast<std::size_t>(key)] ? kHeld : SHORT{0};
}
} // namespace

void platform::holdKey(int key, bool held)
{
    if (isKey(key))
        heldKeys[static_cast<std::size_t>(key)] = held;
}

void platform::releaseKeys()
{
    heldKeys.reset();
}

void platform::setMousePresent(bool present)
{
    mousePresent = present;
}

void platform::setButtonsSwapped(bool swapped)
{
    buttonsSwapped = swapped;
}

bool platform::buttonsAreSwapped()
{
    return mousePresent && buttonsSwapped;
}

SHORT GetAsyncKeyState(int key)
{
    return platform::gate("GetAsyncKeyState", key).always([&] { return keyState(key); });
}

SHORT GetKeyState(int key)
{
    return platform::gate("GetKeyState", key).always([&] { return keyState(key); });
}

int GetSystemMetrics(int metric)
{
    return platform::gate("GetSystemMetrics", metric).always([&]() -> int {
        if (metric == SM_MOUSEPRESENT)
            return mousePresent;
        return metric == SM_SWAPBUTTON && buttonsSwapped;
    });
}
