#pragma once

#include <windows.h>

#include <functional>

/// Keys and mouse as a user works them: through the platform's input queue, to whichever window has
/// the foreground or lies under the pointer. The calls that press or click return before the input
/// has been handled. The window manager takes the foreground away now and then, and what was
/// pressed meanwhile is lost; tests therefore press by way of ActInFront.

/// Brings `window` to the foreground and waits until it is there; false when it does not get there.
bool WaitForForeground(HWND window);

/// Works keys or mouse while `window` is in the foreground. Done again only when it has lost the
/// foreground meanwhile. False when it does not get there.
bool ActInFront(HWND window, const std::function<void()>& act);

/// The same, and waits for the effect. Input that arrives and has none is not repeated: false.
bool ActInFront(HWND window, const std::function<void()>& act,
                const std::function<bool()>& hasEffect);

/// One key, pressed and released, with `modifier` (VK_MENU, VK_SHIFT …) held down if it is not 0.
void PressKey(WORD key, WORD modifier = 0);

/// The left button at a point of the screen. Each is one event that carries its place, so that a
/// late report of an earlier pointer movement cannot shift it.
void PressMouseAt(POINT onScreen);
void ReleaseMouseAt(POINT onScreen);
void ClickAt(POINT onScreen);

/// The middle of a window, on the screen.
POINT CentreOf(HWND window);
