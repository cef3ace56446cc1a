#pragma once

/// What GetAsyncKeyState, GetKeyState and GetSystemMetrics answer.
namespace platform {

/// Holds or releases a key or mouse button, named by its VK_ code.
void holdKey(int key, bool held);

/// Releases every key and button.
void releaseKeys();

/// A mouse is connected; it is, at the start.
void setMousePresent(bool present);

/// The user has swapped the primary and the secondary button.
void setButtonsSwapped(bool swapped);

/// True when a mouse is connected and its buttons are swapped.
bool buttonsAreSwapped();

} // namespace platform
