#pragma once

#include <windows.h>

/// Keys and mouse as a user works them: through the platform's input queue, to whichever window has
/// the foreground or lies under the pointer. All calls return before the input has been handled.

/// Brings `window` to the foreground and waits until it is there; false when it does not get there.
bool WaitForForeground(HWND window);

/// One key, pressed and released, with `modifier` (VK_MENU, VK_SHIFT …) held down if it is not 0.
void PressKey(WORD key, WORD modifier = 0);

/// The left button at a point of the screen. Each is one event that carries its place, so that a
/// late report of an earlier pointer movement cannot shift it.
void PressMouseAt(POINT onScreen);
void ReleaseMouseAt(POINT onScreen);
void ClickAt(POINT onScreen);

/// The middle of a window, on the screen.
POINT CentreOf(HWND window);
