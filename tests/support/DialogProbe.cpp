#include "tests/support/DialogProbe.h"

#include "tests/support/RealInput.h"

namespace
{

HWND ButtonOf(HWND dialog)
{
    const HWND cancel = ::GetDlgItem(dialog, IDCANCEL);
    return cancel != nullptr ? cancel : ::GetDlgItem(dialog, IDOK);
}

bool IsPushed(HWND button)
{
    return (::SendMessageW(button, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
}

} // namespace

bool WaitForPostedMessages(HWND dialog)
{
    // The dialog's window exists before its controls do.
    if (!WaitUntil([dialog] { return ButtonOf(dialog) != nullptr; }))
    {
        return false;
    }
    const HWND button = ButtonOf(dialog);
    ::PostMessageW(button, BM_SETSTATE, TRUE, 0);
    const bool pushed = WaitUntil([button] { return IsPushed(button); });
    ::SendMessageW(button, BM_SETSTATE, FALSE, 0);
    return pushed;
}

bool WaitForInput(HWND dialog)
{
    const HWND button = ButtonOf(dialog);
    const bool pushed = ActInFront(
        dialog, [button] { PressMouseAt(CentreOf(button)); }, [button] { return IsPushed(button); },
        kRepeatHeldAfter);
    const bool released = ActInFront(
        dialog, [] { ReleaseMouseAt({0, 0}); }, [button] { return !IsPushed(button); },
        kRepeatHeldAfter);
    return pushed && released;
}

HWND WaitForBox(DWORD processId, const wchar_t* caption)
{
    HWND box = nullptr;
    const bool shown = WaitUntil([&] {
        box = FindProcessWindow(processId, L"#32770", caption);
        return box != nullptr && ::IsWindowVisible(box);
    });
    return shown && WaitForPostedMessages(box) ? box : nullptr;
}

bool OpenSystemMenu(HWND dialog)
{
    // What is posted overtakes keys and mouse, which would then work the menu.
    return WaitForInput(dialog) &&
           ActInFront(
               dialog, [dialog] { ::PostMessageW(dialog, WM_SYSCOMMAND, SC_KEYMENU, VK_SPACE); },
               [dialog] { return IsInMenuMode(dialog); }, kRepeatHeldAfter);
}

bool IsInMenuMode(HWND dialog)
{
    GUITHREADINFO information{};
    information.cbSize = sizeof(information);
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(dialog, nullptr), &information);
    return (information.flags & GUI_INMENUMODE) != 0;
}

bool IsWaiting(const QuilletRun& run, HWND dialog)
{
    return run.IsRunning() && ::IsWindowVisible(dialog) && ::IsWindowEnabled(dialog);
}
