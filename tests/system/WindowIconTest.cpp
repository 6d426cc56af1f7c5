// The wait dialog's icon on real windows. Wine does not pass an icon's handle from one process to
// another (WM_GETICON and WM_QUERYDRAGICON give 0 there), so the dialog is made in this process,
// out of the program's own class and resources.
#include "delivery/QuilletDlg.h"
#include "res/resource.h"
#include "tests/support/RunsUnderWine.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

/// A picture in memory, top row first, and a device context that draws into it.
class Picture
{
public:
    Picture(int width, int height) : m_width(width), m_height(height)
    {
        BITMAPINFO format{};
        format.bmiHeader.biSize = sizeof(format.bmiHeader);
        format.bmiHeader.biWidth = width;
        format.bmiHeader.biHeight = -height;
        format.bmiHeader.biPlanes = 1;
        format.bmiHeader.biBitCount = 32;
        m_bitmap = ::CreateDIBSection(m_dc, &format, DIB_RGB_COLORS, &m_pixels, nullptr, 0);
        m_before = ::SelectObject(m_dc, m_bitmap);
    }
    ~Picture()
    {
        ::SelectObject(m_dc, m_before);
        ::DeleteObject(m_bitmap);
        ::DeleteDC(m_dc);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    HDC Dc() const { return m_dc; }
    std::vector<COLORREF> Colours() const
    {
        std::vector<COLORREF> colours;
        for (int y = 0; y < m_height; ++y)
        {
            for (int x = 0; x < m_width; ++x)
            {
                colours.push_back(::GetPixel(m_dc, x, y));
            }
        }
        return colours;
    }

private:
    int m_width;
    int m_height;
    HDC m_dc = ::CreateCompatibleDC(nullptr);
    void* m_pixels = nullptr;
    HBITMAP m_bitmap = nullptr;
    HGDIOBJ m_before = nullptr;
};

class WindowIcon : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(m_icon, nullptr);
        ASSERT_TRUE(m_dialog.Create(IDD_QUILLET_DIALOG));
    }
    ~WindowIcon() override { m_dialog.DestroyWindow(); }

    LRESULT Send(UINT message, WPARAM wParam = 0)
    {
        return ::SendMessageW(m_dialog.m_hWnd, message, wParam, 0);
    }

    CWinApp m_app;
    CQuilletDlg m_dialog;
    /// The platform gives the same handle each time that this icon is loaded.
    const HICON m_icon = ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_MAINFRAME));
    const LRESULT m_handle = reinterpret_cast<LRESULT>(m_icon);
};

TEST_F(WindowIcon, IsBothIconsOfTheWindow)
{
    EXPECT_EQ(Send(WM_GETICON, ICON_BIG), m_handle);
    EXPECT_EQ(Send(WM_GETICON, ICON_SMALL), m_handle);
}

TEST_F(WindowIcon, IsWhatTheMinimisedWindowIsDraggedAs)
{
    EXPECT_EQ(Send(WM_QUERYDRAGICON), m_handle);
    ::ShowWindow(m_dialog.m_hWnd, SW_MINIMIZE);
    EXPECT_EQ(Send(WM_QUERYDRAGICON), m_handle);
}

/// What the window shows in a rectangle as large as the icon.
std::vector<COLORREF> ShownAt(HDC window, POINT place, SIZE icon)
{
    const Picture shown(icon.cx, icon.cy);
    ::BitBlt(shown.Dc(), 0, 0, icon.cx, icon.cy, window, place.x, place.y, SRCCOPY);
    return shown.Colours();
}

// Marked as minimised in the size that it has: a window that really is minimised has no client area
// that anybody could see. Wine paints minimised windows from the corner of the frame.
TEST_F(WindowIcon, IsPaintedInTheMiddleOfTheMinimisedWindow)
{
    const HWND window = m_dialog.m_hWnd;
    for (HWND child = ::GetWindow(window, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT))
    {
        ::ShowWindow(child, SW_HIDE);
    }
    const SIZE icon{::GetSystemMetrics(SM_CXICON), ::GetSystemMetrics(SM_CYICON)};
    RECT client{};
    ::GetClientRect(window, &client);
    const POINT middle{(client.right - icon.cx + 1) / 2, (client.bottom - icon.cy + 1) / 2};
    const HDC dc = RunsUnderWine() ? ::GetWindowDC(window) : ::GetDC(window);

    ::UpdateWindow(window);
    const auto background = ShownAt(dc, middle, icon);
    const Picture expected(icon.cx, icon.cy);
    ::BitBlt(expected.Dc(), 0, 0, icon.cx, icon.cy, dc, middle.x, middle.y, SRCCOPY);
    ::DrawIcon(expected.Dc(), 0, 0, m_icon);
    ASSERT_NE(expected.Colours(), background);

    ::SetWindowLongW(window, GWL_STYLE, ::GetWindowLongW(window, GWL_STYLE) | WS_MINIMIZE);
    ASSERT_TRUE(::IsIconic(window));
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_EQ(ShownAt(dc, middle, icon), expected.Colours());
    // A pixel beside it nothing has been painted.
    const POINT beside{middle.x + 1, middle.y};
    EXPECT_NE(ShownAt(dc, beside, icon), expected.Colours());
    ::ReleaseDC(window, dc);
}

} // namespace
