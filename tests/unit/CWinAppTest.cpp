#include "tests/unit/WindowFixture.h"

namespace
{

class ThreeStepsApp : public CWinApp
{
public:
    explicit ThreeStepsApp(std::vector<std::string>& steps) : m_steps(steps) {}

    BOOL InitInstance() override
    {
        m_steps.emplace_back("InitInstance");
        return FALSE;
    }
    int ExitInstance() override
    {
        CWinApp::ExitInstance();
        m_steps.emplace_back(m_pMainWnd == nullptr ? "ExitInstance" : "ExitInstance with a window");
        return -7;
    }

private:
    std::vector<std::string>& m_steps;
};

class GoingWindow : public PlainWindow
{
public:
    explicit GoingWindow(std::vector<std::string>& steps) : m_steps(steps) {}

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_DESTROY)
        {
            m_steps.emplace_back("WM_DESTROY");
        }
        return PlainWindow::WindowProc(message, wParam, lParam);
    }

private:
    std::vector<std::string>& m_steps;
};

TEST(CWinApp, IsTheCurrentApplicationWhileItLives)
{
    EXPECT_EQ(AfxGetApp(), nullptr);
    {
        CWinApp app;
        EXPECT_EQ(AfxGetApp(), &app);
        EXPECT_EQ(AfxGetMainWnd(), nullptr);
    }
    EXPECT_EQ(AfxGetApp(), nullptr);
}

TEST(CWinApp, BeginsAndEndsWellByItself)
{
    CWinApp app;
    EXPECT_TRUE(app.InitInstance());
    EXPECT_EQ(app.ExitInstance(), 0);
}

TEST(CWinApp, ResourcesAreTheProgramsOwn)
{
    EXPECT_EQ(AfxFindResourceHandle(L"any", RT_DIALOG), ::GetModuleHandleW(nullptr));
}

TEST(CWinApp, EndsWithTheValueOfExitInstance)
{
    std::vector<std::string> steps;
    ThreeStepsApp app(steps);
    EXPECT_EQ(AfxWinMain(), -7);
    EXPECT_EQ(steps, (std::vector<std::string>{"InitInstance", "ExitInstance"}));
}

TEST(CWinApp, DestroysTheMainWindowThatIsLeft)
{
    std::vector<std::string> steps;
    ThreeStepsApp app(steps);
    GoingWindow window(steps);
    app.m_pMainWnd = &window;
    EXPECT_EQ(AfxWinMain(), -7);
    EXPECT_EQ(steps, (std::vector<std::string>{"InitInstance", "WM_DESTROY", "ExitInstance"}));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(DrainQueue(), 0U);
}

class CWinAppWindow : public WindowFixture
{
};

TEST_F(CWinAppWindow, DestroyedMainWindowIsForgottenAndAsksTheThreadToQuit)
{
    PlainWindow window;
    m_app.m_pMainWnd = &window;
    EXPECT_EQ(AfxGetMainWnd(), &window);
    window.DestroyWindow();
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
    EXPECT_EQ(DrainQueue(), 0U);
}

TEST_F(CWinAppWindow, AnotherWindowsEndChangesNothing)
{
    PlainWindow main;
    PlainWindow other;
    m_app.m_pMainWnd = &main;
    other.DestroyWindow();
    EXPECT_EQ(AfxGetMainWnd(), &main);
    EXPECT_EQ(DrainQueue(), std::nullopt);
}

constexpr UINT kFirst = WM_APP + 1;
constexpr UINT kSecond = WM_APP + 2;

class ListeningWindow : public PlainWindow
{
public:
    using PlainWindow::PlainWindow;

    std::vector<UINT> handled;
    std::vector<UINT> preTranslated;
    UINT swallowed = 0;

    BOOL PreTranslateMessage(MSG* message) override
    {
        preTranslated.push_back(message->message);
        return message->message == swallowed;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == kFirst || message == kSecond || message == WM_CHAR)
        {
            handled.push_back(message);
        }
        return PlainWindow::WindowProc(message, wParam, lParam);
    }
};

TEST_F(CWinAppWindow, PumpTakesExactlyOneMessage)
{
    ListeningWindow window;
    DrainQueue();
    window.PostMessage(kFirst);
    window.PostMessage(kSecond);
    EXPECT_TRUE(m_app.PumpMessage());
    EXPECT_EQ(window.handled, std::vector{kFirst});
    EXPECT_TRUE(m_app.PumpMessage());
    EXPECT_EQ(window.handled, (std::vector{kFirst, kSecond}));
}

TEST_F(CWinAppWindow, PumpSaysWhenItTookTheQuitMessage)
{
    ::PostQuitMessage(5);
    EXPECT_FALSE(m_app.PumpMessage());
    EXPECT_EQ(DrainQueue(), std::nullopt);
}

TEST_F(CWinAppWindow, PumpTranslatesKeys)
{
    ListeningWindow window;
    DrainQueue();
    window.PostMessage(WM_KEYDOWN, 'A', 0x001E0001);
    EXPECT_TRUE(m_app.PumpMessage());
    EXPECT_TRUE(m_app.PumpMessage());
    EXPECT_EQ(window.handled, std::vector<UINT>{WM_CHAR});
}

TEST_F(CWinAppWindow, PumpOffersAMessageToTheTargetAndThenItsParents)
{
    ListeningWindow parent;
    ListeningWindow child(WS_CHILD, &parent);
    DrainQueue();
    child.PostMessage(kFirst);
    m_app.PumpMessage();
    EXPECT_EQ(child.preTranslated, std::vector{kFirst});
    EXPECT_EQ(parent.preTranslated, std::vector{kFirst});
    EXPECT_EQ(child.handled, std::vector{kFirst});
    EXPECT_TRUE(parent.handled.empty());
}

TEST_F(CWinAppWindow, MessageTakenByPreTranslationGoesNoFurther)
{
    ListeningWindow parent;
    ListeningWindow child(WS_CHILD, &parent);
    DrainQueue();
    child.swallowed = kFirst;
    parent.swallowed = kSecond;
    child.PostMessage(kFirst);
    child.PostMessage(kSecond);
    EXPECT_TRUE(m_app.PumpMessage());
    EXPECT_TRUE(m_app.PumpMessage());
    EXPECT_EQ(child.preTranslated, (std::vector{kFirst, kSecond}));
    EXPECT_EQ(parent.preTranslated, std::vector{kSecond});
    EXPECT_TRUE(child.handled.empty());
}

} // namespace
