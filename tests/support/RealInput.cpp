#include "tests/support/RealInput.h"

#include "tests/support/ForegroundLock.h"
#include "tests/support/Waiting.h"

#include <iostream>
#include <vector>

namespace
{

INPUT Key(WORD key, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

/// A pixel's coordinate in the 65,536 steps that the input queue divides the screen into.
LONG InScreenSteps(LONG pixel, int screenSize)
{
    constexpr LONG kSteps = 65536;
    return (pixel * kSteps + kSteps / 2) / screenSize;
}

void SendMouseButton(DWORD button, POINT onScreen)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = InScreenSteps(onScreen.x, ::GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = InScreenSteps(onScreen.y, ::GetSystemMetrics(SM_CYSCREEN));
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | button;
    ::SendInput(1, &input, sizeof(input));
}

bool IsInFront(HWND window)
{
    return ::GetForegroundWindow() == window;
}

/// What the platform said the last time that it was asked for the foreground.
struct Asked
{
    bool inputTaken = false;
    bool granted = false;
};
Asked lastAsked;

/// False, since it takes until later.
bool AskForForeground(HWND window)
{
    lastAsked.inputTaken = SendEmptyInput();
    lastAsked.granted = ::SetForegroundWindow(window) != FALSE;
    return false;
}

} // namespace

bool WaitForForeground(HWND window)
{
    const bool inFront =
        WaitUntil([window] { return IsInFront(window) || AskForForeground(window); });
    if (!inFront)
    {
        std::cerr << "The window does not get to the foreground; asked for it last, the platform "
                  << (lastAsked.granted ? "agreed" : "refused")
                  << (lastAsked.inputTaken ? "\n" : ", and took no empty input\n");
    }
    return inFront;
}

bool ActInFront(HWND window, const std::function<void()>& act)
{
    const auto end = std::chrono::steady_clock::now() + kWaitLimit;
    while (std::chrono::steady_clock::now() < end && WaitForForeground(window))
    {
        act();
        if (IsInFront(window))
        {
            return true;
        }
    }
    return false;
}

bool ActInFront(HWND window, const std::function<void()>& act,
                const std::function<bool()>& hasEffect, std::chrono::milliseconds repeatAfter)
{
    const auto end = std::chrono::steady_clock::now() + kWaitLimit;
    bool isReady = WaitForForeground(window);
    while (isReady && std::chrono::steady_clock::now() < end)
    {
        act();
        WaitUntil([&] { return hasEffect() || !IsInFront(window); }, repeatAfter);
        // The effect may still come while the foreground is away, and the window never be in front
        // again.
        isReady =
            WaitUntil([&] { return hasEffect() || IsInFront(window) || AskForForeground(window); });
        if (hasEffect())
        {
            return true;
        }
    }
    return false;
}

void PressKey(WORD key, WORD modifier)
{
    std::vector<INPUT> inputs{Key(key, 0), Key(key, KEYEVENTF_KEYUP)};
    if (modifier != 0)
    {
        inputs.insert(inputs.begin(), Key(modifier, 0));
        inputs.push_back(Key(modifier, KEYEVENTF_KEYUP));
    }
    ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

// Events are of the device's buttons, whose meaning a left-handed user can have swapped.
void PressMouseAt(POINT onScreen)
{
    const bool swapped = ::GetSystemMetrics(SM_SWAPBUTTON) != 0;
    SendMouseButton(swapped ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN, onScreen);
}

void ReleaseMouseAt(POINT onScreen)
{
    const bool swapped = ::GetSystemMetrics(SM_SWAPBUTTON) != 0;
    SendMouseButton(swapped ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP, onScreen);
}

void ClickAt(POINT onScreen)
{
    PressMouseAt(onScreen);
    ReleaseMouseAt(onScreen);
}

POINT CentreOf(HWND window)
{
    RECT area{};
    ::GetWindowRect(window, &area);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}
