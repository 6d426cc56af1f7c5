#pragma once

#include <windows.h>

#include "tests/support/Waiting.h"

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

/// After that time without an effect, what was to be held down (a button by the mouse, the modifier
/// of a key) or let go is not. When the window manager gives a window the focus, Wine ends what has
/// captured the mouse, and takes over from the display which keys are down, which knows nothing of
/// those that a test holds. And a button let go while another window has the foreground stays down:
/// the release is for that window, and a thread that has the foreground back before it has heard of
/// the loss keeps its capture. A key without a modifier is lost only where a step before it has
/// moved the foreground; a test then does that step again as well.
inline constexpr std::chrono::seconds kHoldPatience{3};

/// The same, and waits for the effect; done again after `patience` without one as well. As it is,
/// input that arrives and has no effect is not repeated. False when there is none by kWaitLimit.
bool ActInFront(HWND window, const std::function<void()>& act,
                const std::function<bool()>& hasEffect,
                std::chrono::milliseconds patience = kWaitLimit);

/// One key, pressed and released, with `modifier` (VK_MENU, VK_SHIFT …) held down if it is not 0.
void PressKey(WORD key, WORD modifier = 0);

/// The left button at a point of the screen. Each is one event that carries its place, so that a
/// late report of an earlier pointer movement cannot shift it.
void PressMouseAt(POINT onScreen);
void ReleaseMouseAt(POINT onScreen);
void ClickAt(POINT onScreen);

/// The middle of a window, on the screen.
POINT CentreOf(HWND window);
