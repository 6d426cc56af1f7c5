#pragma once

#include "CCmdTarget.h"

class CDataExchange;
class CMenu;

/// A window object. While a platform window is attached to it, every message of that window goes
/// through the virtual WindowProc. All use is on the thread that created the window.
class CWnd : public CCmdTarget
{
public:
    CWnd() = default;
    /// Destroys the platform window if one is still attached.
    ~CWnd() override;

    /// The attached platform window; null before creation and after destruction.
    HWND m_hWnd = nullptr;

    HWND GetSafeHwnd() const { return m_hWnd; }

    /// The object that `hwnd` is attached to, or null.
    static CWnd* FromHandlePermanent(HWND hwnd);

    /// Attaches `hwnd` and routes its messages through this object.
    BOOL SubclassWindow(HWND hwnd);
    /// Destroys the platform window; the object stays. FALSE when there is none.
    virtual BOOL DestroyWindow();

    BOOL ShowWindow(int command) { return ::ShowWindow(m_hWnd, command); }
    BOOL EnableWindow(BOOL enable) { return ::EnableWindow(m_hWnd, enable); }
    BOOL IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
    BOOL IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
    BOOL IsIconic() const { return ::IsIconic(m_hWnd); }
    void GetClientRect(RECT* rect) const { ::GetClientRect(m_hWnd, rect); }
    /// Moves a top-level window over the centre of its owner, or of the screen when it has none
    /// that is to be seen; never beyond the work area of the owner's monitor.
    void CenterWindow();
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

    /// The window's system menu for modification, or, with `revert`, its reset to the platform's
    /// own. Null when there is none. The object is valid until the next call that gives a menu.
    CMenu* GetSystemMenu(BOOL revert) const;

    /// Pumps messages until EndModalLoop, and returns the result given there. A result given before
    /// the loop began is not seen. On WM_QUIT the message is posted again and the result is -1.
    /// Loops nest: one that was ended while an inner loop runs returns when the inner one has
    /// returned. `flags` must be 0.
    int RunModalLoop(DWORD flags = 0);
    /// Ends a running modal loop with `result`; without one, or after a first result, does nothing.
    virtual void EndModalLoop(int result);

    /// Called around the modal use of another window that this one owns.
    virtual void BeginModalState() { EnableWindow(FALSE); }
    virtual void EndModalState() { EnableWindow(TRUE); }

    /// Looks at a message before it is translated and dispatched; TRUE when it has been dealt with.
    virtual BOOL PreTranslateMessage(MSG* message);

protected:
    /// Handles one message: by the message map, derived classes first, else by DefWindowProc.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// The window's own default processing: the procedure it had before it was attached.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Default processing of the message being handled.
    LRESULT Default();
    /// Handles WM_COMMAND: this window's map first, then the application's. FALSE when nobody does.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    /// Exchanges data between controls and members; the base has none.
    virtual void DoDataExchange(CDataExchange*) {}

    void OnSysCommand(UINT, LPARAM) { Default(); }
    void OnPaint() { Default(); }
    HCURSOR OnQueryDragIcon() { return reinterpret_cast<HCURSOR>(Default()); }

    /// Whether a modal loop of this window is running and has no result yet.
    bool ContinueModal() const { return m_continueModal; }

private:
    static LRESULT CALLBACK AttachedProc(HWND hwnd, UINT message, WPARAM wParam,
                                         LPARAM lParam) noexcept;
    LRESULT HandleMessage(const MSG& message);
    void Detach();

    WNDPROC m_superProc = nullptr;
    MSG m_currentMessage{};
    bool m_continueModal = false;
    int m_modalResult = 0;
};
