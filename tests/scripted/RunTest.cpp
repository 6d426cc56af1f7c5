// Whole runs, from the command line to the exit code, call by call.
#include "app/HelpText.h"
#include "app/QuilletApp.h"
#include "app/ResultCode.h"
#include "res/resource.h"
#include "tests/scripted/ScriptedPlatform.h"
#include "tests/scripted/Thrown.h"

namespace
{

const Calls kDialogMade = {"LoadIconW(128)",
                           "CreateDialogParamW(102, NULL)",
                           "GetSystemMenu(dialog, FALSE)",
                           "LoadStringW(101, 0)",
                           "AppendMenuW(system menu, 0x800, 0, NULL)",
                           "AppendMenuW(system menu, 0x0, 16, \"About\")",
                           "SendMessageW(dialog, WM_SETICON, ICON_BIG, icon)",
                           "SendMessageW(dialog, WM_SETICON, ICON_SMALL, icon)"};
const Calls kDialogShown = kDialogMade + Calls{"ShowWindow(dialog, SW_SHOW)"};
const Calls kDialogMinimised = kDialogMade + Calls{"ShowWindow(dialog, SW_SHOWMINIMIZED)"};
const Calls kFound = {"FindWindowW(\"Host\", NULL)"};
const Calls kNotified = {"SendNotifyMessageW(target, 0x400, 0, 0)"};
const Calls kOneMessage = {"GetMessageW()"};
const Calls kDialogGone = {"DestroyWindow(dialog)"};

Calls Ended(int result)
{
    return {"EndDialog(dialog, " + std::to_string(result) + ")"};
}

Calls CopyDataSent(const char* waitDialog)
{
    return {std::string("SendMessageW(target, WM_COPYDATA, ") + waitDialog +
            ", dwData 0, 6 bytes: 61 00 62 00 63 00)"};
}

/// Keeps what InitInstance gave. Here nothing depends on it; with the vendor's framework, TRUE
/// would lead into a message loop that nobody ends.
class AttentiveApp : public CQuilletApp
{
public:
    BOOL result = TRUE;

    BOOL InitInstance() override
    {
        result = CQuilletApp::InitInstance();
        return result;
    }
};

class Run : public testing::Test
{
protected:
    Run() { m_platform.found = m_target; }

    /// The run's exit code. However the run ends, no message loop is asked for and no window left.
    int ExitCode(const std::wstring& switches)
    {
        m_platform.commandLine = L"quillet.exe" + switches;
        AttentiveApp app;
        const int code = AfxWinMain();
        EXPECT_FALSE(app.result);
        EXPECT_TRUE(app.m_pMainWnd == nullptr || app.m_pMainWnd->m_hWnd == nullptr);
        EXPECT_FALSE(m_platform.IsWindow(m_dialog));
        return code;
    }

    testing::AssertionResult Made(const Calls& calls) { return m_platform.Made(calls); }

    ScriptedPlatform m_platform;
    const HWND m_target = m_platform.AddWindow(
        {.name = "target", .thread = 9, .text = L"Host - 1", .windowClass = L"HostFrame"});
    const HWND m_dialog = ScriptedPlatform::DialogHandle(IDD_QUILLET_DIALOG);
};

TEST_F(Run, HelpWinsOverEverythingElse)
{
    EXPECT_EQ(ExitCode(L" -kla=Host -activatewindow -Copydata=abc -?"), kResultCancelled);
    EXPECT_TRUE(Made({"MessageBoxW(NULL, text, \"Orvane\", 0x40)"}));
    EXPECT_EQ(m_platform.messageBoxText,
              BuildHelpText(L"quillet.exe -kla=Host -activatewindow -Copydata=abc -?"));
}

TEST_F(Run, WithoutTargetAndDialogEndsAtOnce)
{
    EXPECT_EQ(ExitCode(L" -nodlg -msg=5 -seaglob -copydata=abc"), kResultCancelled);
    EXPECT_TRUE(Made({}));
}

TEST_F(Run, WithoutTargetOnlyWaits)
{
    m_platform.Post(m_dialog, WM_COMMAND, IDCANCEL);
    EXPECT_EQ(ExitCode(L" -kla=\"\" -nam= -copydata=abc"), kResultCancelled);
    EXPECT_TRUE(Made(kDialogShown + kOneMessage + Ended(2) + kDialogGone));
}

TEST_F(Run, WithoutTargetActivatesNothing)
{
    m_platform.Post(m_dialog, WM_NULL);
    EXPECT_EQ(ExitCode(L" -nodlg -activatewindow"), kResultCancelled);
    EXPECT_TRUE(Made(kDialogMinimised + kOneMessage + kDialogGone));
}

// --- finding ---

TEST_F(Run, MissingNameIsNoCondition)
{
    EXPECT_EQ(ExitCode(L" -nodlg -nam=\"Mein Fenster\""), kResultCancelled);
    EXPECT_TRUE(Made(Calls{"FindWindowW(NULL, \"Mein Fenster\")"} + kNotified));
}

TEST_F(Run, ClassAndTextAreTakenLiterally)
{
    EXPECT_EQ(ExitCode(L" -nodlg -kla=* -nam=[a]?"), kResultCancelled);
    EXPECT_TRUE(Made(Calls{"FindWindowW(\"*\", \"[a]?\")"} + kNotified));
}

TEST_F(Run, WindowNotFoundEndsWithMinusTwo)
{
    m_platform.found = nullptr;
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -copydata=abc"), kResultWindowNotFound);
    EXPECT_TRUE(Made(kFound));
}

TEST_F(Run, WindowNotFoundTakesTheDialogAway)
{
    m_platform.found = nullptr;
    EXPECT_EQ(ExitCode(L" -kla=Host -activatewindow"), kResultWindowNotFound);
    EXPECT_TRUE(Made(kDialogShown + kFound + kDialogGone));
}

TEST_F(Run, PatternSearchAsksEachWindow)
{
    EXPECT_EQ(ExitCode(L" -nodlg -seaglob -nam=Host*"), kResultCancelled);
    EXPECT_TRUE(
        Made(Calls{"EnumWindows()", "GetWindowTextW(target, zeroed buffer, 4096)"} + kNotified));
}

TEST_F(Run, PatternSearchWithoutResultEndsWithMinusTwo)
{
    EXPECT_EQ(ExitCode(L" -nodlg -seaglob -kla=host*"), kResultWindowNotFound);
    EXPECT_TRUE(Made({"EnumWindows()", "RealGetWindowClassW(target, zeroed buffer, 4096)"}));
}

// It is there before the search, and on top.
TEST_F(Run, PatternSearchCanFindTheWaitDialogItself)
{
    m_platform.Post(m_dialog, WM_USER + 4);
    EXPECT_EQ(ExitCode(L" -seaglob -nam=*"), 4);
    EXPECT_TRUE(Made(kDialogShown +
                     Calls{"EnumWindows()", "GetWindowTextW(dialog, zeroed buffer, 4096)",
                           "SendNotifyMessageW(dialog, 0x400, 0, 0)"} +
                     kOneMessage + Ended(1028) + kDialogGone));
}

// --- notifying ---

TEST_F(Run, NotificationAloneEndsWithMinusOne)
{
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host"), kResultCancelled);
    EXPECT_TRUE(Made(kFound + kNotified));
}

TEST_F(Run, FailedNotificationEndsWithMinusThree)
{
    m_platform.notificationResult = FALSE;
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host"), kResultSendFailed);
    EXPECT_TRUE(Made(kFound + kNotified));
}

TEST_F(Run, FailedNotificationTakesTheDialogAway)
{
    m_platform.notificationResult = FALSE;
    EXPECT_EQ(ExitCode(L" -kla=Host"), kResultSendFailed);
    EXPECT_TRUE(Made(kDialogShown + kFound + kNotified + kDialogGone));
}

struct NotificationRow
{
    const wchar_t* switches;
    const char* call;
};

class RunWithNotification : public Run, public testing::WithParamInterface<NotificationRow>
{
};

TEST_P(RunWithNotification, CarriesItsNumbers)
{
    EXPECT_EQ(ExitCode(std::wstring(L" -nodlg -kla=Host") + GetParam().switches), kResultCancelled);
    EXPECT_TRUE(Made(kFound + Calls{GetParam().call}));
}

// The message number is formed in 32 bits, without a range check.
// clang-format off
INSTANTIATE_TEST_SUITE_P(, RunWithNotification, testing::Values(
    NotificationRow{L" -msg=5", "SendNotifyMessageW(target, 0x405, 0, 0)"},
    NotificationRow{L" -msg=0", "SendNotifyMessageW(target, 0x400, 0, 0)"},
    NotificationRow{L" -msg=-1", "SendNotifyMessageW(target, 0x3ff, 0, 0)"},
    NotificationRow{L" -msg=-1024", "SendNotifyMessageW(target, 0x0, 0, 0)"},
    NotificationRow{L" -msg=-1025", "SendNotifyMessageW(target, 0xffffffff, 0, 0)"},
    NotificationRow{L" -msg=0x7fffffff", "SendNotifyMessageW(target, 0x800003ff, 0, 0)"},
    NotificationRow{L" -msg=-2147483648", "SendNotifyMessageW(target, 0x80000400, 0, 0)"},
    NotificationRow{L" -msg=0xfffffc00", "SendNotifyMessageW(target, 0x0, 0, 0)"},
    NotificationRow{L" -wparam=0x -lparam=0xffffffffffffffff", "SendNotifyMessageW(target, 0x400, 0, -1)"},
    NotificationRow{L" -wparam=-1 -lparam=0x7fffffffffffffff", "SendNotifyMessageW(target, 0x400, -1, 9223372036854775807)"},
    NotificationRow{L" -wparam=7 -lparam=-8", "SendNotifyMessageW(target, 0x400, 7, -8)"}));
// clang-format on

TEST_F(Run, UrlOverridesTheSwitches)
{
    EXPECT_EQ(ExitCode(L" -kla=Other -msg=1 -wparam=2 -url=\"q:?kla=Host&msg=5&nodlg\""),
              kResultCancelled);
    EXPECT_TRUE(Made(kFound + Calls{"SendNotifyMessageW(target, 0x405, 2, 0)"}));
}

// --- copy data ---

TEST_F(Run, AcceptedCopyDataAloneEndsWithZero)
{
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -copydata=abc -msg=5"), kResultAccepted);
    EXPECT_TRUE(Made(kFound + CopyDataSent("NULL")));
}

TEST_F(Run, RefusedCopyDataEndsWithMinusThree)
{
    m_platform.copyDataResult = 0;
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -copydata=abc"), kResultSendFailed);
    EXPECT_TRUE(Made(kFound + CopyDataSent("NULL")));
}

TEST_F(Run, RefusedCopyDataIsNotWaitedFor)
{
    m_platform.copyDataResult = 0;
    m_platform.Post(m_dialog, WM_USER + 5);
    EXPECT_EQ(ExitCode(L" -kla=Host -copydata=abc"), kResultSendFailed);
    EXPECT_TRUE(Made(kDialogShown + kFound + CopyDataSent("dialog") + kDialogGone));
}

TEST_F(Run, CopyDataNamesTheDialogAndTheAnswerReplacesTheZero)
{
    m_platform.duringCopyData = [this](const COPYDATASTRUCT&) {
        m_platform.Post(m_dialog, WM_USER + 3);
    };
    EXPECT_EQ(ExitCode(L" -kla=Host -copydata=abc"), 3);
    EXPECT_TRUE(Made(kDialogShown + kFound + CopyDataSent("dialog") + kOneMessage + Ended(1027) +
                     kDialogGone));
}

TEST_F(Run, CancelReplacesTheZeroOfAcceptedCopyData)
{
    m_platform.Post(m_dialog, WM_COMMAND, IDCANCEL);
    EXPECT_EQ(ExitCode(L" -kla=Host -copydata=abc"), kResultCancelled);
}

TEST_F(Run, EmptyCopyDataIsANotification)
{
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -copydata=\"\""), kResultCancelled);
    EXPECT_TRUE(Made(kFound + kNotified));
}

TEST_F(Run, FailedConversionStoresNoResultAndDoesNotWait)
{
    m_platform.commandLine = L"quillet.exe -kla=Host -copydata=abc -copydataencoding=ansi";
    m_platform.conversions = {{0, ERROR_INVALID_PARAMETER}};
    CQuilletApp app;
    EXPECT_EQ(ThrownCode([] { AfxWinMain(); }), E_INVALIDARG);
    EXPECT_EQ(app.ExitInstance(), kResultCancelled);
    EXPECT_TRUE(Made(kDialogShown + kFound +
                     Calls{"WideCharToMultiByte(0, 0, 4 units, inline store, 16)"}));
}

// --- waiting ---

TEST_F(Run, AnswerIsTheExitCode)
{
    m_platform.Post(m_dialog, WM_USER + 4096);
    EXPECT_EQ(ExitCode(L" -kla=Host"), 4096);
    EXPECT_TRUE(Made(kDialogShown + kFound + kNotified + kOneMessage + Ended(5120) + kDialogGone));
}

struct WaitRow
{
    const char* name;
    UINT message;
    WPARAM wParam;
    int code;
};

class RunWithWait : public Run, public testing::WithParamInterface<WaitRow>
{
};

TEST_P(RunWithWait, EndsWithTheResultOfTheLoop)
{
    m_platform.Post(m_dialog, GetParam().message, GetParam().wParam);
    EXPECT_EQ(ExitCode(L""), GetParam().code);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(, RunWithWait, testing::Values(
    WaitRow{"Answer0", WM_USER, 0, 0},
    WaitRow{"Answer1", WM_USER + 1, 0, 1},
    WaitRow{"Answer2", WM_USER + 2, 0, 2}, // not to be taken for the cancel command 2
    WaitRow{"Answer4095", WM_USER + 4095, 0, 4095},
    WaitRow{"Cancel", WM_COMMAND, IDCANCEL, kResultCancelled},
    WaitRow{"Ok", WM_COMMAND, IDOK, 1}), // no button sends it, but whoever does is taken at their word
    [](const auto& row) { return std::string(row.param.name); });
// clang-format on

TEST_F(Run, MessagesOutsideTheRangeAreNoAnswers)
{
    m_platform.Post(m_dialog, WM_USER - 1);
    m_platform.Post(m_dialog, WM_USER + 4097);
    m_platform.Post(m_dialog, WM_USER + 7);
    EXPECT_EQ(ExitCode(L""), 7);
    EXPECT_TRUE(
        Made(kDialogShown + kOneMessage + kOneMessage + kOneMessage + Ended(1031) + kDialogGone));
}

TEST_F(Run, FirstOfTwoAnswersDecides)
{
    m_platform.Post(m_dialog, WM_USER + 1);
    m_platform.Post(m_dialog, WM_USER + 2);
    EXPECT_EQ(ExitCode(L""), 1);
    EXPECT_TRUE(Made(kDialogShown + kOneMessage + Ended(1025) + kDialogGone));
}

// The dialog is hidden, and the wait goes on.
TEST_F(Run, AnswerSentBeforeTheLoopIsNotSeen)
{
    m_platform.duringCopyData = [this](const COPYDATASTRUCT&) {
        m_platform.Send(m_dialog, WM_USER + 3);
    };
    m_platform.Post(m_dialog, WM_USER + 4);
    EXPECT_EQ(ExitCode(L" -kla=Host -copydata=abc"), 4);
    EXPECT_TRUE(Made(kDialogShown + kFound + CopyDataSent("dialog") + Ended(1027) + kOneMessage +
                     Ended(1028) + kDialogGone));
}

TEST_F(Run, AnswerWhileTheAboutBoxIsOpenIsTakenWhenItCloses)
{
    m_platform.Post(m_dialog, WM_SYSCOMMAND, IDM_ABOUTBOX);
    m_platform.Post(m_dialog, WM_USER + 5);
    m_platform.Post(ScriptedPlatform::DialogHandle(IDD_ABOUTBOX), WM_COMMAND, IDOK);
    EXPECT_EQ(ExitCode(L""), 5);
    EXPECT_TRUE(Made(kDialogShown + kOneMessage +
                     Calls{"CreateDialogParamW(100, dialog)", "EnableWindow(dialog, FALSE)",
                           "ShowWindow(box, SW_SHOWNORMAL)", "GetMessageW()",
                           "EndDialog(dialog, 1029)", "GetMessageW()", "EndDialog(box, 1)",
                           "EnableWindow(dialog, TRUE)", "DestroyWindow(box)"} +
                     kDialogGone));
}

TEST_F(Run, QuitMessageEndsTheWaitWithMinusOne)
{
    m_platform.Quit();
    EXPECT_EQ(ExitCode(L" -kla=Host -copydata=abc"), kResultCancelled);
}

// --- activating ---

class RunWithActivation : public Run
{
protected:
    RunWithActivation() { m_platform.foreground = m_foreground; }

    const HWND m_foreground = m_platform.AddWindow({.name = "foreground", .thread = 7});
    const Calls m_activated = {"GetWindowLongW(target, GWL_STYLE)",
                               "GetForegroundWindow()",
                               "GetWindowThreadProcessId(target, NULL)",
                               "GetWindowThreadProcessId(foreground, NULL)",
                               "AttachThreadInput(7, 9, TRUE)",
                               "SetForegroundWindow(target)",
                               "AttachThreadInput(7, 9, FALSE)",
                               "IsIconic(target)",
                               "ShowWindow(target, SW_SHOW)"};
};

TEST_F(RunWithActivation, StandsBetweenFindingAndDelivering)
{
    m_platform.Post(m_dialog, WM_USER + 6);
    EXPECT_EQ(ExitCode(L" -kla=Host -activatewindow"), 6);
    EXPECT_TRUE(Made(kDialogShown + kFound + m_activated + kNotified + kOneMessage + Ended(1030) +
                     kDialogGone));
}

TEST_F(RunWithActivation, MinimisedDialogPumpsExactlyOneMessage)
{
    m_platform.Post(m_dialog, WM_NULL);
    m_platform.Post(m_dialog, WM_NULL);
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -activatewindow"), kResultCancelled);
    EXPECT_TRUE(
        Made(kDialogMinimised + kFound + m_activated + kNotified + kOneMessage + kDialogGone));
}

TEST_F(RunWithActivation, MinimisedDialogTravelsAndKeepsTheCodeOfTheDelivery)
{
    // Even an answer is only the one message.
    m_platform.Post(m_dialog, WM_USER + 9);
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -activatewindow -copydata=abc"), kResultAccepted);
    EXPECT_TRUE(Made(kDialogMinimised + kFound + m_activated + CopyDataSent("dialog") +
                     kOneMessage + Ended(1033) + kDialogGone));
}

TEST_F(RunWithActivation, RefusedCopyDataTakesTheMinimisedDialogAway)
{
    m_platform.copyDataResult = 0;
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -activatewindow -copydata=abc"), kResultSendFailed);
    EXPECT_TRUE(
        Made(kDialogMinimised + kFound + m_activated + CopyDataSent("dialog") + kDialogGone));
}

TEST_F(RunWithActivation, WindowNotFoundIsNotActivated)
{
    m_platform.found = nullptr;
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host -activatewindow"), kResultWindowNotFound);
    EXPECT_TRUE(Made(kDialogMinimised + kFound + kDialogGone));
}

TEST_F(RunWithActivation, FailureChangesNothing)
{
    m_platform.foreground = nullptr;
    m_platform.Post(m_dialog, WM_USER + 8);
    EXPECT_EQ(ExitCode(L" -kla=Host -activatewindow -copydata=abc"), 8);
    EXPECT_TRUE(Made(kDialogShown + kFound +
                     Calls{"GetWindowLongW(target, GWL_STYLE)", "GetForegroundWindow()"} +
                     CopyDataSent("dialog") + kOneMessage + Ended(1032) + kDialogGone));
}

TEST_F(RunWithActivation, IsMadeOnlyWhenAskedFor)
{
    m_platform.Window(m_target).minimised = true;
    EXPECT_EQ(ExitCode(L" -nodlg -kla=Host"), kResultCancelled);
    EXPECT_TRUE(Made(kFound + kNotified));
}

} // namespace
