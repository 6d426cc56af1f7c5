// Runs whose wait dialog could not be created, which nobody checks: the object exists all the same,
// without a window that could be named or answered.
#include "app/QuilletApp.h"
#include "app/ResultCode.h"
#include "tests/scripted/ScriptedPlatform.h"

namespace
{

class FailedDialog : public testing::Test
{
protected:
    FailedDialog()
    {
        m_platform.dialogsCanBeMade = false;
        m_platform.found = m_target;
    }

    int ExitCode(const wchar_t* switches)
    {
        m_platform.commandLine = std::wstring(L"quillet.exe -kla=Host") + switches;
        CQuilletApp app;
        const int exitCode = AfxWinMain();
        m_mainWindow = app.m_pMainWnd;
        return exitCode;
    }

    ScriptedPlatform m_platform;
    const HWND m_target = m_platform.AddWindow(
        {.name = "target", .thread = 9, .text = L"Host - 1", .windowClass = L"HostFrame"});
    /// What the application's main window was at the end.
    const CWnd* m_mainWindow = nullptr;
    const Calls m_searched = {"LoadIconW(128)", "CreateDialogParamW(102, NULL)",
                              "ShowWindow(NULL, SW_SHOW)", "FindWindowW(\"Host\", NULL)"};
    const Calls m_notified = {"SendNotifyMessageW(target, 0x400, 0, 0)"};
    const Calls m_sent = {"SendMessageW(target, WM_COPYDATA, NULL, dwData 0, 2 bytes: 61 00)"};
    const Calls m_waited = {"GetMessageW()"};
};

TEST_F(FailedDialog, DoesNotChangeTheSearch)
{
    m_platform.found = nullptr;
    EXPECT_EQ(ExitCode(L""), kResultWindowNotFound);
    EXPECT_TRUE(m_platform.Made(m_searched));
}

// Only the end of the message queue ends such a wait.
TEST_F(FailedDialog, IsDeliveredForAndWaitedFor)
{
    m_platform.Quit();
    EXPECT_EQ(ExitCode(L" -copydata=a"), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(m_searched + m_sent + m_waited));
}

TEST_F(FailedDialog, IsWaitedForAfterANotification)
{
    m_platform.Quit();
    EXPECT_EQ(ExitCode(L""), kResultCancelled);
    EXPECT_TRUE(m_platform.Made(m_searched + m_notified + m_waited));
    EXPECT_EQ(m_mainWindow, nullptr);
}

TEST_F(FailedDialog, IsNotWaitedForAfterARefusal)
{
    m_platform.copyDataResult = 0;
    EXPECT_EQ(ExitCode(L" -copydata=a"), kResultSendFailed);
    EXPECT_TRUE(m_platform.Made(m_searched + m_sent));
}

} // namespace
