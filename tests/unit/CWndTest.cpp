#include "tests/unit/WindowFixture.h"

namespace
{

constexpr UINT kProbe = WM_APP + 7;
constexpr UINT kInner = WM_APP + 8;
constexpr UINT kWindowCommand = 0x7201;

class CWndTest : public WindowFixture
{
};

TEST_F(CWndTest, IsFoundByItsHandleWhileAttached)
{
    PlainWindow window;
    const HWND hwnd = window.m_hWnd;
    ASSERT_TRUE(::IsWindow(hwnd));
    EXPECT_EQ(window.GetSafeHwnd(), hwnd);
    EXPECT_EQ(CWnd::FromHandlePermanent(hwnd), &window);

    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_FALSE(::IsWindow(hwnd));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(hwnd), nullptr);
    EXPECT_FALSE(window.DestroyWindow());
}

TEST_F(CWndTest, ForeignHandleHasNoObject)
{
    EXPECT_EQ(CWnd::FromHandlePermanent(nullptr), nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(::GetDesktopWindow()), nullptr);
}

TEST_F(CWndTest, DestructorDestroysTheWindow)
{
    HWND hwnd = nullptr;
    {
        PlainWindow window;
        hwnd = window.m_hWnd;
    }
    EXPECT_NE(hwnd, nullptr);
    EXPECT_FALSE(::IsWindow(hwnd));
    EXPECT_EQ(CWnd::FromHandlePermanent(hwnd), nullptr);
}

TEST_F(CWndTest, DetachesWhenThePlatformDestroysTheWindow)
{
    PlainWindow window;
    ::DestroyWindow(window.m_hWnd);
    EXPECT_EQ(window.m_hWnd, nullptr);
}

// The procedure stays, and messages may come after the last one.
TEST_F(CWndTest, WindowThatHasLostItsObjectGetsDefaultProcessing)
{
    PlainWindow window;
    const HWND hwnd = window.m_hWnd;
    ::SendMessageW(hwnd, WM_NCDESTROY, 0, 0);
    EXPECT_EQ(window.m_hWnd, nullptr);
    ::SetWindowTextW(hwnd, L"Titel");
    EXPECT_EQ(::SendMessageW(hwnd, WM_GETTEXTLENGTH, 0, 0), 5);
    ::DestroyWindow(hwnd);
}

TEST_F(CWndTest, TellsWhatThePlatformTells)
{
    PlainWindow window;
    EXPECT_FALSE(window.IsWindowVisible());
    EXPECT_FALSE(window.ShowWindow(SW_SHOWNOACTIVATE)); // it was not shown before
    EXPECT_TRUE(window.IsWindowVisible());
    EXPECT_FALSE(window.IsIconic());
    EXPECT_TRUE(window.ShowWindow(SW_SHOWMINNOACTIVE));
    EXPECT_TRUE(window.IsIconic());
    EXPECT_FALSE(window.EnableWindow(FALSE)); // it was not disabled before
    EXPECT_FALSE(window.IsWindowEnabled());
    EXPECT_TRUE(window.EnableWindow(TRUE));
    EXPECT_TRUE(window.IsWindowEnabled());
}

/// Answers kProbe itself, passes the rest on, and records both.
class RecordingWindow : public PlainWindow
{
public:
    std::vector<UINT> seen;
    std::vector<UINT> defaulted;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        seen.push_back(message);
        return message == kProbe ? static_cast<LRESULT>(wParam) + lParam
                                 : PlainWindow::WindowProc(message, wParam, lParam);
    }
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        defaulted.push_back(message);
        return PlainWindow::DefWindowProc(message, wParam, lParam);
    }
};

TEST_F(CWndTest, EveryMessageGoesThroughWindowProc)
{
    RecordingWindow window;
    EXPECT_EQ(window.SendMessage(kProbe, 3, 0x100000004), 0x100000007);
    EXPECT_EQ(window.seen, std::vector{kProbe});
    EXPECT_TRUE(window.defaulted.empty());
}

TEST_F(CWndTest, MessagesHaveNoParametersUnlessGiven)
{
    RecordingWindow window;
    EXPECT_EQ(window.SendMessage(kProbe), 0);
    EXPECT_TRUE(window.PostMessage(kProbe));
    MSG message;
    ASSERT_TRUE(::PeekMessageW(&message, window.m_hWnd, kProbe, kProbe, PM_REMOVE));
    EXPECT_EQ(message.wParam, 0u);
    EXPECT_EQ(message.lParam, 0);
}

TEST_F(CWndTest, UnmappedMessageGetsTheWindowsOwnProcessing)
{
    RecordingWindow window;
    ::SetWindowTextW(window.m_hWnd, L"Titel");
    wchar_t text[16];
    ::GetWindowTextW(window.m_hWnd, text, 16);
    EXPECT_STREQ(text, L"Titel");
    EXPECT_EQ(window.SendMessage(WM_GETTEXTLENGTH), 5);
    EXPECT_EQ(window.defaulted, (std::vector<UINT>{WM_SETTEXT, WM_GETTEXT, WM_GETTEXTLENGTH}));
}

class MappedBase : public PlainWindow
{
public:
    std::vector<std::string> handled;

protected:
    DECLARE_MESSAGE_MAP()

    void OnSysCommand(UINT, LPARAM) { handled.emplace_back("base's system command"); }
    HCURSOR OnQueryDragIcon() { return reinterpret_cast<HCURSOR>(0x1234); }
    void OnWindowCommand() { handled.emplace_back("window's command"); }
};

BEGIN_MESSAGE_MAP(MappedBase, PlainWindow)
    ON_WM_SYSCOMMAND()
    ON_WM_QUERYDRAGICON()
    ON_COMMAND(kWindowCommand, &MappedBase::OnWindowCommand)
END_MESSAGE_MAP()

/// Sends itself another message before it asks for the first one's default processing.
class MappedWindow : public MappedBase
{
public:
    std::vector<UINT> defaulted;
    LPARAM lastParameter = 0;

protected:
    DECLARE_MESSAGE_MAP()

    void OnSysCommand(UINT command, LPARAM lParam)
    {
        handled.emplace_back("derived class's system command");
        lastParameter = lParam;
        SendMessage(kInner);
        if (command == 0x20)
        {
            CWnd::OnSysCommand(command, lParam);
        }
    }
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        defaulted.push_back(message);
        return PlainWindow::DefWindowProc(message, wParam, lParam);
    }
};

BEGIN_MESSAGE_MAP(MappedWindow, MappedBase)
    ON_WM_SYSCOMMAND()
END_MESSAGE_MAP()

TEST_F(CWndTest, MessageGoesToTheMostDerivedHandlerAlone)
{
    MappedWindow window;
    window.SendMessage(WM_SYSCOMMAND, 0x30, 42);
    EXPECT_EQ(window.handled, std::vector<std::string>{"derived class's system command"});
    EXPECT_EQ(window.lastParameter, 42);
    EXPECT_EQ(window.defaulted, std::vector{kInner});
}

TEST_F(CWndTest, HandlerOfTheBaseServesTheDerivedClass)
{
    MappedWindow window;
    EXPECT_EQ(window.SendMessage(WM_QUERYDRAGICON), 0x1234);
}

TEST_F(CWndTest, DefaultMeansTheMessageBeingHandled)
{
    MappedWindow window;
    window.SendMessage(WM_SYSCOMMAND, 0x20);
    // The inner message came and went in between.
    EXPECT_EQ(window.defaulted, (std::vector<UINT>{kInner, WM_SYSCOMMAND}));
}

/// Names handlers and has none of its own.
class NamingWindow : public PlainWindow
{
public:
    std::vector<UINT> defaulted;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT DefWindowProc(UINT message, WPARAM, LPARAM) override
    {
        defaulted.push_back(message);
        return 0x5678;
    }
};

BEGIN_MESSAGE_MAP(NamingWindow, PlainWindow)
    ON_WM_SYSCOMMAND()
    ON_WM_PAINT()
    ON_WM_QUERYDRAGICON()
END_MESSAGE_MAP()

TEST_F(CWndTest, HandlersOfTheRootMeanDefaultProcessing)
{
    NamingWindow window;
    EXPECT_EQ(window.SendMessage(kProbe), 0x5678);
    window.SendMessage(WM_SYSCOMMAND);
    window.SendMessage(WM_PAINT);
    EXPECT_EQ(window.SendMessage(WM_QUERYDRAGICON), 0x5678);
    EXPECT_EQ(window.defaulted,
              (std::vector<UINT>{kProbe, WM_SYSCOMMAND, WM_PAINT, WM_QUERYDRAGICON}));
}

TEST_F(CWndTest, CommandGoesToTheWindowFirst)
{
    MappedWindow window;
    EXPECT_EQ(window.SendMessage(WM_COMMAND, kWindowCommand), 0);
    EXPECT_EQ(window.handled, std::vector<std::string>{"window's command"});
    EXPECT_EQ(m_app.commands, 0);
    EXPECT_TRUE(window.defaulted.empty());
}

TEST_F(CWndTest, CommandThatNoWindowHandlesGoesToTheApplication)
{
    MappedWindow window;
    window.SendMessage(WM_COMMAND, TestApp::kCommand);
    EXPECT_EQ(m_app.commands, 1);
    EXPECT_TRUE(window.defaulted.empty());
}

TEST_F(CWndTest, CommandThatNobodyHandlesGetsDefaultProcessing)
{
    MappedWindow window;
    window.SendMessage(WM_COMMAND, 0x7fff);
    EXPECT_EQ(window.defaulted, std::vector<UINT>{WM_COMMAND});
}

TEST_F(CWndTest, ControlsNotificationIsACommandOnlyWhenItIsAClick)
{
    MappedWindow window;
    const auto control = reinterpret_cast<LPARAM>(window.m_hWnd);
    window.SendMessage(WM_COMMAND, MAKEWPARAM(kWindowCommand, BN_SETFOCUS), control);
    EXPECT_TRUE(window.handled.empty());
    window.SendMessage(WM_COMMAND, MAKEWPARAM(kWindowCommand, BN_CLICKED), control);
    window.SendMessage(WM_COMMAND, MAKEWPARAM(kWindowCommand, 1)); // an accelerator's
    EXPECT_EQ(window.handled.size(), 2u);
}

TEST_F(CWndTest, ModalStateDisablesTheWindowItself)
{
    PlainWindow window;
    window.BeginModalState();
    EXPECT_FALSE(::IsWindowEnabled(window.m_hWnd));
    window.EndModalState();
    EXPECT_TRUE(::IsWindowEnabled(window.m_hWnd));
}

TEST_F(CWndTest, SystemMenuTakesFurtherEntries)
{
    PlainWindow window;
    CMenu* menu = window.GetSystemMenu(FALSE);
    ASSERT_NE(menu, nullptr);
    const HMENU handle = ::GetSystemMenu(window.m_hWnd, FALSE);
    const int before = ::GetMenuItemCount(handle);

    EXPECT_TRUE(menu->AppendMenu(MF_SEPARATOR));
    EXPECT_TRUE(menu->AppendMenu(MF_STRING, 0x20, L"&Mehr"));
    EXPECT_EQ(::GetMenuItemCount(handle), before + 2);
    EXPECT_TRUE(::GetMenuState(handle, static_cast<UINT>(before), MF_BYPOSITION) & MF_SEPARATOR);
    EXPECT_EQ(::GetMenuItemID(handle, before), 0u);
    wchar_t text[16];
    ::GetMenuStringW(handle, 0x20, text, 16, MF_BYCOMMAND);
    EXPECT_STREQ(text, L"&Mehr");
}

TEST_F(CWndTest, WindowWithoutSystemMenuGivesNone)
{
    PlainWindow window(WS_OVERLAPPED);
    EXPECT_EQ(window.GetSystemMenu(FALSE), nullptr);
    EXPECT_EQ(CMenu::FromHandle(nullptr), nullptr);
}

class PaintingWindow : public PlainWindow
{
public:
    int painted = 0;
    HWND windowOfContext = nullptr;

protected:
    DECLARE_MESSAGE_MAP()

    void OnPaint()
    {
        CPaintDC dc(this);
        ++painted;
        windowOfContext = ::WindowFromDC(dc.GetSafeHdc());
        EXPECT_EQ(dc.GetSafeHdc(), dc.m_ps.hdc);
        EXPECT_TRUE(dc.DrawIcon(0, 0, ::LoadIconW(nullptr, IDI_APPLICATION)));
    }
};

BEGIN_MESSAGE_MAP(PaintingWindow, PlainWindow)
    ON_WM_PAINT()
END_MESSAGE_MAP()

TEST_F(CWndTest, PaintContextPaintsAndValidatesItsWindow)
{
    PaintingWindow window;
    window.ShowWindow(SW_SHOWNOACTIVATE);
    ::InvalidateRect(window.m_hWnd, nullptr, FALSE);
    ::UpdateWindow(window.m_hWnd);
    EXPECT_LE(1, window.painted);
    EXPECT_EQ(window.windowOfContext, window.m_hWnd);
    EXPECT_FALSE(::GetUpdateRect(window.m_hWnd, nullptr, FALSE));
}

} // namespace
