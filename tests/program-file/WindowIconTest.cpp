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

class WindowIcon : public testing::Test
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

/// Where the corner may be from which a minimised window paints, in its frame. Under Wine the
/// frame's own; what Windows does has not been seen, so there the client area's is right as well.
std::vector<POINT> CornersOf(HWND window)
{
    std::vector<POINT> corners{{0, 0}};
    if (!RunsUnderWine())
    {
        RECT frame{};
        ::GetWindowRect(window, &frame);
        POINT client{};
        ::ClientToScreen(window, &client);
        corners.push_back({client.x - frame.left, client.y - frame.top});
    }
    return corners;
}

// Marked as minimised in the size that it has: a window that really is minimised has no client area
// that anybody could see.
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
    std::vector<POINT> middles = CornersOf(window);
    const HDC dc = ::GetWindowDC(window);
    ::UpdateWindow(window);
    std::vector<std::vector<COLORREF>> expected;
    for (POINT& middle : middles)
    {
        middle.x += (client.right - icon.cx + 1) / 2;
        middle.y += (client.bottom - icon.cy + 1) / 2;
        const Picture picture(icon.cx, icon.cy);
        ::BitBlt(picture.Dc(), 0, 0, icon.cx, icon.cy, dc, middle.x, middle.y, SRCCOPY);
        ::DrawIcon(picture.Dc(), 0, 0, m_icon);
        expected.push_back(picture.Colours());
        ASSERT_NE(expected.back(), ShownAt(dc, middle, icon));
    }

    ::SetWindowLongW(window, GWL_STYLE, ::GetWindowLongW(window, GWL_STYLE) | WS_MINIMIZE);
    ASSERT_TRUE(::IsIconic(window));
    ::RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    int painted = 0;
    for (std::size_t i = 0; i < middles.size(); ++i)
    {
        // A pixel beside it the picture is another one.
        const POINT beside{middles[i].x + 1, middles[i].y};
        painted +=
            ShownAt(dc, middles[i], icon) == expected[i] && ShownAt(dc, beside, icon) != expected[i]
                ? 1
                : 0;
    }
    EXPECT_EQ(painted, 1);
    ::ReleaseDC(window, dc);
}

} // namespace
