// Where a window, and a modal dialog by itself, appears.
#include "tests/unit/TestResource.h"
#include "tests/unit/WindowFixture.h"

#include <optional>
#include <utility>

namespace
{

RECT WorkArea()
{
    RECT work;
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    return work;
}

RECT RectOf(const CWnd& window)
{
    RECT rect;
    ::GetWindowRect(window.m_hWnd, &rect);
    return rect;
}

/// A point, so that it can be compared and printed: from the left and from the top, in pixels.
using Point = std::pair<LONG, LONG>;

Point PlaceOf(const CWnd& window)
{
    const RECT rect = RectOf(window);
    return {rect.left, rect.top};
}

/// The middle, twice, so that it is a whole number.
Point TwiceTheCentre(const RECT& rect)
{
    return {rect.left + rect.right, rect.top + rect.bottom};
}

void Place(const CWnd& window, RECT rect)
{
    ::SetWindowPos(window.m_hWnd, nullptr, rect.left, rect.top, rect.right - rect.left,
                   rect.bottom - rect.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Windows without a frame, which no window manager moves. All extents are even.
class CenterWindow : public WindowFixture
{
protected:
    PlainWindow m_owner{WS_POPUP | WS_VISIBLE};
    PlainWindow m_window{WS_POPUP, &m_owner};
    const RECT m_work = WorkArea();
};

TEST_F(CenterWindow, CoversTheOwnersCentre)
{
    Place(m_owner, {300, 200, 700, 500});
    Place(m_window, {0, 0, 120, 80});
    m_window.CenterWindow();
    EXPECT_EQ((Point{440, 310}), PlaceOf(m_window));
    EXPECT_EQ(RectOf(m_window).right - RectOf(m_window).left, 120);
    EXPECT_EQ(RectOf(m_window).bottom - RectOf(m_window).top, 80);
}

TEST_F(CenterWindow, CoversASmallerOwner)
{
    Place(m_owner, {300, 200, 340, 220});
    Place(m_window, {0, 0, 120, 80});
    m_window.CenterWindow();
    EXPECT_EQ((Point{260, 170}), PlaceOf(m_window));
}

TEST_F(CenterWindow, StaysInsideTheWorkAreaAtEachEdge)
{
    // Most of the owner is on this screen; another one may be beside it.
    Place(m_owner, {m_work.left - 20, m_work.top - 20, m_work.left + 60, m_work.top + 60});
    Place(m_window, {50, 50, 170, 130});
    m_window.CenterWindow();
    EXPECT_EQ((Point{m_work.left, m_work.top}), PlaceOf(m_window));

    Place(m_owner, {m_work.right - 60, m_work.bottom - 60, m_work.right + 20, m_work.bottom + 20});
    m_window.CenterWindow();
    EXPECT_EQ((Point{m_work.right - 120, m_work.bottom - 80}), PlaceOf(m_window));
}

TEST_F(CenterWindow, ShowsTheStartOfOneThatIsTooLarge)
{
    Place(m_owner, {300, 200, 700, 500});
    Place(m_window,
          {50, 50, 50 + m_work.right - m_work.left + 100, 50 + m_work.bottom - m_work.top + 100});
    m_window.CenterWindow();
    EXPECT_EQ((Point{m_work.left, m_work.top}), PlaceOf(m_window));
}

// A minimised window stands far outside the screen, and one that is hidden anywhere.
TEST_F(CenterWindow, CoversTheWorkAreasCentreWhenTheOwnerIsNotToBeSeen)
{
    Place(m_window, {0, 0, 120, 80});
    Place(m_owner, {300, 200, 340, 220});
    m_owner.ShowWindow(SW_HIDE);
    m_window.CenterWindow();
    EXPECT_EQ(TwiceTheCentre(m_work), TwiceTheCentre(RectOf(m_window)));

    Place(m_window, {0, 0, 120, 80});
    m_owner.ShowWindow(SW_SHOWMINIMIZED);
    ASSERT_TRUE(m_owner.IsIconic());
    m_window.CenterWindow();
    EXPECT_EQ(TwiceTheCentre(m_work), TwiceTheCentre(RectOf(m_window)));
}

TEST_F(CenterWindow, CoversTheWorkAreasCentreWithoutAnOwner)
{
    PlainWindow window(WS_POPUP);
    Place(window, {0, 0, 120, 80});
    window.CenterWindow();
    EXPECT_EQ(TwiceTheCentre(m_work), TwiceTheCentre(RectOf(window)));
}

/// Remembers where it stands when it is shown.
class PlacedDialog : public CDialog
{
public:
    using CDialog::CDialog;

    std::optional<RECT> shownAt;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_SHOWWINDOW && wParam != FALSE && !shownAt)
        {
            shownAt = RectOf(*this);
            PostMessage(WM_COMMAND, IDCANCEL);
        }
        return CDialog::WindowProc(message, wParam, lParam);
    }
};

class CenterWindowModal : public WindowFixture
{
protected:
    CenterWindowModal() { Place(m_owner, {300, 200, 700, 500}); }

    /// Whether a modal dialog of that template is shown over the owner's centre, to the pixel that
    /// an odd extent leaves.
    bool IsCentred(UINT idTemplate)
    {
        PlacedDialog dialog(idTemplate, &m_owner);
        EXPECT_EQ(IDCANCEL, dialog.DoModal());
        const Point twice = TwiceTheCentre(dialog.shownAt.value());
        return std::abs(twice.first - 1000) <= 1 && std::abs(twice.second - 700) <= 1;
    }

    PlainWindow m_owner{WS_POPUP | WS_VISIBLE};
};

TEST_F(CenterWindowModal, IsOverTheOwnersCentreWhenTheTemplateGivesNone)
{
    EXPECT_TRUE(IsCentred(IDD_TEST));
    EXPECT_TRUE(IsCentred(IDD_CLASSIC));
}

TEST_F(CenterWindowModal, IsThatOfATemplateThatGivesOne)
{
    EXPECT_FALSE(IsCentred(IDD_PLACED));
    EXPECT_FALSE(IsCentred(IDD_CLASSIC_PLACED));
}

TEST_F(CenterWindowModal, IsLeftToATemplateThatIsVisibleByItself)
{
    EXPECT_FALSE(IsCentred(IDD_SHOWN));
}

// Only a modal one moves: the wait dialog appears where the platform puts it.
TEST_F(CenterWindowModal, OfAModelessDialogIsThePlatforms)
{
    const HWND platforms = ::CreateDialogParamW(
        ::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_TEST), m_owner.m_hWnd,
        [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
    RECT expected{};
    ASSERT_TRUE(::GetWindowRect(platforms, &expected));
    ::DestroyWindow(platforms);
    PlacedDialog dialog(IDD_TEST);
    ASSERT_TRUE(dialog.Create(IDD_TEST, &m_owner));
    dialog.ShowWindow(SW_SHOWNOACTIVATE);
    EXPECT_EQ((Point{expected.left, expected.top}), PlaceOf(dialog));
}

} // namespace
