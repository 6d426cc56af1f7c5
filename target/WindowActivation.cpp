#include "target/WindowActivation.h"

namespace
{

constexpr int kAttachAttempts = 5;

/// Ties the input of one thread to another's for as long as the object lives. While tied, either
/// thread can freeze the other, so the scope undoes it on every way out.
class ThreadInputAttachment
{
public:
    ThreadInputAttachment(DWORD thread, DWORD toThread)
        : m_thread(thread), m_toThread(toThread),
          m_attached(::AttachThreadInput(thread, toThread, TRUE) != FALSE)
    {
    }
    ~ThreadInputAttachment()
    {
        if (m_attached)
        {
            ::AttachThreadInput(m_thread, m_toThread, FALSE);
        }
    }
    ThreadInputAttachment(const ThreadInputAttachment&) = delete;
    ThreadInputAttachment& operator=(const ThreadInputAttachment&) = delete;

    explicit operator bool() const { return m_attached; }

private:
    DWORD m_thread;
    DWORD m_toThread;
    bool m_attached;
};

/// The system lets a thread set the foreground window only when it has a right to, as the thread of
/// the current one does. Attached to the target's thread, that right is shared. This process's own
/// thread is attached only when the foreground is its own, as it is when the wait dialog has it.
void SetForegroundAttached(HWND target, DWORD targetThread, DWORD foregroundThread)
{
    for (int attempt = 0; attempt < kAttachAttempts; ++attempt)
    {
        if (const ThreadInputAttachment attachment{foregroundThread, targetThread})
        {
            ::SetForegroundWindow(target);
            return;
        }
        // Gives up the rest of the time slice, after the last refusal as well.
        ::Sleep(0);
    }
    ::SetForegroundWindow(target);
}

} // namespace

void ActivateTarget(HWND target)
{
    if ((::GetWindowLongW(target, GWL_STYLE) & WS_VISIBLE) == 0)
    {
        return;
    }
    const HWND foreground = ::GetForegroundWindow();
    if (foreground == nullptr || foreground == target)
    {
        // A minimised target that is the foreground window stays minimised. Intentional.
        return;
    }
    const DWORD targetThread = ::GetWindowThreadProcessId(target, nullptr);
    const DWORD foregroundThread = ::GetWindowThreadProcessId(foreground, nullptr);
    if (targetThread == 0 || foregroundThread == 0)
    {
        return;
    }
    if (targetThread == foregroundThread)
    {
        ::SetForegroundWindow(target);
    }
    else
    {
        SetForegroundAttached(target, targetThread, foregroundThread);
    }
    // Only now: a window that is restored before it may come to the front is restored behind the
    // others.
    ::ShowWindow(target, ::IsIconic(target) ? SW_RESTORE : SW_SHOW);
}
