#pragma once

#include <windows.h>

class CWnd;

/// The device context for painting a window in response to WM_PAINT: opened by the constructor,
/// closed, which ends painting, by the destructor. The window must outlive it.
class CPaintDC
{
public:
    explicit CPaintDC(CWnd* window);
    ~CPaintDC();
    CPaintDC(const CPaintDC&) = delete;
    CPaintDC& operator=(const CPaintDC&) = delete;

    HDC GetSafeHdc() const { return m_ps.hdc; }
    /// Draws an icon in the system's icon size at (x, y), in pixels of the client area.
    BOOL DrawIcon(int x, int y, HICON icon) { return ::DrawIcon(m_ps.hdc, x, y, icon); }

    /// What the platform said about the painting to do.
    PAINTSTRUCT m_ps{};

private:
    HWND m_hWnd;
};
