#pragma once

#include <windows.h>

#include "tests/support/Waiting.h"

#include <functional>

/// Keys and mouse as a user works them: through the platform's input queue, to whichever window has
/// the foreground or lies under the pointer. The calls that press or click return before the input
/// has been handled. Input is lost while the window manager has taken the foreground away; tests
/// therefore press by way of ActInFront.

/// Brings `window` to the foreground and waits until it is there; false when it does not get there.
bool WaitForForeground(HWND window);

/// Works keys or mouse while `window` is in the foreground. Done again only when it has lost the
/// foreground meanwhile. False when it does not get there.
bool ActInFront(HWND window, const std::function<void()>& act);

/// After this time without an effect, input that holds something down (a mouse button, a modifier)
/// was lost: Wine lets go of what is held when a window gets the focus, and a release goes to
/// whichever window is in front. Other input is not lost by itself.
inline constexpr std::chrono::seconds kRepeatHeldAfter{3};

/// The same, and waits for the effect; done again after `repeatAfter` without one as well, which by
/// default is never. False when there is none by kWaitLimit.
bool ActInFront(HWND window, const std::function<void()>& act,
                const std::function<bool()>& hasEffect,
                std::chrono::milliseconds repeatAfter = kWaitLimit);

/// One key, pressed and released, with `modifier` (VK_MENU, VK_SHIFT …) held down if it is not 0.
void PressKey(WORD key, WORD modifier = 0);

/// The left button at a point of the screen. Each is one event that carries its place, so that a
/// late report of an earlier pointer movement cannot shift it.
void PressMouseAt(POINT onScreen);
void ReleaseMouseAt(POINT onScreen);
void ClickAt(POINT onScreen);

/// The middle of a window, on the screen.
POINT CentreOf(HWND window);
