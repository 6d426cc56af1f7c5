#pragma once

#include <afxwin.h>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

/// An application object whose map routes one command of its own.
class TestApp : public CWinApp
{
public:
    static constexpr UINT kCommand = 0x7001;

    int commands = 0;

protected:
    DECLARE_MESSAGE_MAP()

    void OnTestCommand() { ++commands; }
};

/// A window of a class of the tests' own, whose default processing is the platform's. Made
/// invisible, except by those who need it otherwise.
class PlainWindow : public CWnd
{
public:
    explicit PlainWindow(DWORD style = WS_OVERLAPPEDWINDOW, const CWnd* parent = nullptr);
};

/// For tests with real windows: an application object, which the framework's windows rely on, and
/// a message queue that is empty before and after. A wait that lasts for ever ends as if the thread
/// had been asked to quit, and fails the test.
class WindowFixture : public testing::Test
{
protected:
    WindowFixture();
    ~WindowFixture() override;

    TestApp m_app;

private:
    UINT_PTR m_watchdog;
};

/// Takes every message out of the thread's queue without dispatching it. Gives the exit code of the
/// WM_QUIT among them, or nothing.
std::optional<WPARAM> DrainQueue();
