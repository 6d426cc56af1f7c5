#include "tests/support/WaitDialogProbe.h"

#include "tests/support/RealInput.h"

namespace
{

bool IsPushed(HWND button)
{
    return (::SendMessageW(button, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
}

} // namespace

bool WaitForPostedMessages(HWND dialog)
{
    const HWND button = ::GetDlgItem(dialog, IDCANCEL);
    ::PostMessageW(button, BM_SETSTATE, TRUE, 0);
    const bool pushed = WaitUntil([button] { return IsPushed(button); });
    ::SendMessageW(button, BM_SETSTATE, FALSE, 0);
    return pushed;
}

bool WaitForInput(HWND dialog)
{
    // The window manager may take the focus away and give it back while the button is pressed, and
    // then the press is lost; so there are several attempts.
    constexpr std::chrono::milliseconds kAttemptLimit{500};
    constexpr int kAttempts = 20;
    const HWND button = ::GetDlgItem(dialog, IDCANCEL);
    for (int attempt = 0; attempt < kAttempts; ++attempt)
    {
        PressMouseAt(CentreOf(button));
        const bool pushed = WaitUntil([button] { return IsPushed(button); }, kAttemptLimit);
        ReleaseMouseAt({0, 0});
        if (pushed)
        {
            return WaitUntil([button] { return !IsPushed(button); });
        }
    }
    return false;
}

bool IsWaiting(const QuilletRun& run, HWND dialog)
{
    return run.IsRunning() && ::IsWindowVisible(dialog) && ::IsWindowEnabled(dialog);
}
