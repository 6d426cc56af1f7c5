#include "CWnd.h"

#include "CMenu.h"
#include "CWinApp.h"

#include <algorithm>
#include <map>
#include <utility>

namespace
{

std::map<HWND, CWnd*>& AttachedWindows()
{
    static std::map<HWND, CWnd*> windows;
    return windows;
}

/// Where a window of this extent starts so that it lies in the middle of the area; a start that is
/// beyond the limits is drawn inside, and of a window that is too large the start is shown.
int CentredIn(LONG areaStart, LONG areaEnd, LONG extent, LONG lowest, LONG highest)
{
    const LONG start = areaStart + (areaEnd - areaStart - extent) / 2;
    return std::max(lowest, std::min(start, highest - extent));
}

} // namespace

CWnd::~CWnd()
{
    CWnd::DestroyWindow();
}

CWnd* CWnd::FromHandlePermanent(HWND hwnd)
{
    const auto entry = AttachedWindows().find(hwnd);
    return entry == AttachedWindows().end() ? nullptr : entry->second;
}

BOOL CWnd::SubclassWindow(HWND hwnd)
{
    m_hWnd = hwnd;
    AttachedWindows().emplace(hwnd, this);
    m_superProc = reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrW(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AttachedProc)));
    return TRUE;
}

void CWnd::Detach()
{
    AttachedWindows().erase(m_hWnd);
    m_hWnd = nullptr;
    AfxGetApp()->OnWindowGone(this);
}

BOOL CWnd::DestroyWindow()
{
    return m_hWnd == nullptr ? FALSE : ::DestroyWindow(m_hWnd);
}

void CWnd::CenterWindow()
{
    const HWND owner = ::GetWindow(m_hWnd, GW_OWNER);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    ::GetMonitorInfoW(
        ::MonitorFromWindow(owner != nullptr ? owner : m_hWnd, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& work = monitor.rcWork;

    // A minimised window stands far outside the screen.
    RECT area = work;
    if (owner != nullptr && ::IsWindowVisible(owner) && !::IsIconic(owner))
    {
        ::GetWindowRect(owner, &area);
    }
    RECT window;
    ::GetWindowRect(m_hWnd, &window);
    const LONG width = window.right - window.left;
    const LONG height = window.bottom - window.top;
    ::SetWindowPos(m_hWnd, nullptr, CentredIn(area.left, area.right, width, work.left, work.right),
                   CentredIn(area.top, area.bottom, height, work.top, work.bottom), width, height,
                   SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::SendMessageW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::PostMessageW(m_hWnd, message, wParam, lParam);
}

CMenu* CWnd::GetSystemMenu(BOOL revert) const
{
    return CMenu::FromHandle(::GetSystemMenu(m_hWnd, revert));
}

// noexcept: an exception must not cross the platform's frames; it ends the process here.
LRESULT CALLBACK CWnd::AttachedProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    CWnd* window = FromHandlePermanent(hwnd);
    if (window == nullptr)
    {
        return ::DefWindowProcW(hwnd, message, wParam, lParam);
    }
    return window->HandleMessage({hwnd, message, wParam, lParam, 0, {}});
}

LRESULT CWnd::HandleMessage(const MSG& message)
{
    // A handler may send further messages to the same window before it asks for Default().
    const MSG outerMessage = std::exchange(m_currentMessage, message);
    const LRESULT result = WindowProc(message.message, message.wParam, message.lParam);
    m_currentMessage = outerMessage;
    if (message.message == WM_NCDESTROY)
    {
        Detach();
    }
    return result;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && OnCommand(wParam, lParam))
    {
        return 0;
    }
    if (const AFX_MSGMAP_ENTRY* entry = FindEntry(message, 0))
    {
        return entry->invoke(*this, wParam, lParam);
    }
    return DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    return ::CallWindowProcW(m_superProc, m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default()
{
    return DefWindowProc(m_currentMessage.message, m_currentMessage.wParam,
                         m_currentMessage.lParam);
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam)
{
    // A control's notification is a command only with code 0 (a button's click); a menu's or an
    // accelerator's always is.
    const bool isCommand = lParam == 0 || HIWORD(wParam) == BN_CLICKED;
    const UINT id = LOWORD(wParam);
    return isCommand && (OnCmdMsg(id) || AfxGetApp()->OnCmdMsg(id));
}

BOOL CWnd::PreTranslateMessage(MSG*)
{
    return FALSE;
}

int CWnd::RunModalLoop(DWORD)
{
    m_continueModal = true;
    while (m_continueModal)
    {
        if (!AfxGetApp()->PumpMessage())
        {
            ::PostQuitMessage(0);
            m_continueModal = false;
            return -1;
        }
    }
    return m_modalResult;
}

void CWnd::EndModalLoop(int result)
{
    if (!m_continueModal)
    {
        return;
    }
    m_continueModal = false;
    m_modalResult = result;
    // The end may come in a sent message, which does not by itself end the loop's wait for a posted
    // one.
    PostMessage(WM_NULL);
}
