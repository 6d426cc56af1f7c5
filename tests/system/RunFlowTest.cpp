// One request from the command line to the exit code, with the real program and real host windows.
#include "app/AbnormalEnd.h"
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

namespace
{

// --- What a run ends with ---------------------------------------------------------------------

TEST(RunFlow, NoDialogAloneEndsAtOnceWithMinusOne)
{
    EXPECT_EQ(RunQuillet(L" -nodlg"), kResultCancelled);
}

TEST(RunFlow, NoArgumentsOnlyWaitForTheUser)
{
    const QuilletRun run(L"");
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(IsWaiting(run, dialog));
    ::PostMessageW(::GetDlgItem(dialog, IDCANCEL), BM_CLICK, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST(RunFlow, NotificationArrivesAndEndsWithMinusOne)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=7 -wparam=-1 -lparam=0x10 -kla=" + host.ClassName()),
              kResultCancelled);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 7u);
    EXPECT_EQ(received[0].wParam, static_cast<WPARAM>(-1));
    EXPECT_EQ(received[0].lParam, 0x10);
}

TEST(RunFlow, NotificationDefaultsToZeros)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName()), kResultCancelled);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_USER));
    EXPECT_EQ(received[0].wParam, 0u);
    EXPECT_EQ(received[0].lParam, 0);
}

TEST(RunFlow, AcceptedCopyDataEndsWithTheHostsAnswer)
{
    const ScriptedHost host(UniqueHost(), AnswerWith(42));
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 42);
}

TEST(RunFlow, AcceptedCopyDataWithoutADialogEndsWithZero)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=abc -kla=" + host.ClassName()), kResultAccepted);
}

TEST(RunFlow, RefusedCopyDataEndsWithMinusThree)
{
    const ScriptedHost host(UniqueHost(), ReturnFromCopyData(0));
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=abc -kla=" + host.ClassName()), kResultSendFailed);
}

// A host that closes while it is being brought to the front: found, but gone before the send.
TEST(RunFlow, FailedNotificationEndsWithMinusThree)
{
    ScriptedHostOptions options = UniqueHost();
    options.style |= WS_MINIMIZE;
    options.alsoRecord = {WM_QUERYOPEN};
    const ScriptedHost host(options, [](HWND window, const ReceivedMessage& message) {
        std::optional<LRESULT> result;
        if (message.message == WM_QUERYOPEN)
        {
            ::DestroyWindow(window);
            result = FALSE;
        }
        return result;
    });
    const ScriptedHost inFront(UniqueHost());
    ASSERT_TRUE(WaitForForeground(inFront.Handle()));
    EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -kla=" + host.ClassName()), kResultSendFailed);
}

TEST(RunFlow, DialogIsOnScreenDuringTheSendAndGoneAfterARefusal)
{
    HWND dialogDuringDelivery = nullptr;
    const ScriptedHost host(UniqueHost(), [&](HWND, const ReceivedMessage& message) {
        dialogDuringDelivery = reinterpret_cast<HWND>(message.wParam);
        return std::optional<LRESULT>(::IsWindowVisible(dialogDuringDelivery) ? 0 : 1);
    });
    // Refused when, and only when, the dialog is visible.
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), kResultSendFailed);
    EXPECT_FALSE(::IsWindow(dialogDuringDelivery));
}

TEST(RunFlow, MissingWindowEndsWithMinusTwo)
{
    const std::wstring nobody = UniqueName(L"Nobody");
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + nobody), kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=" + nobody), kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -kla=" + nobody), kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -kla=" + nobody + L" -copydata=abc"), kResultWindowNotFound);
}

// No result code, and no box that waits for somebody.
TEST(RunFlow, UncaughtExceptionEndsAtOnceWithACodeThatIsNoResult)
{
    EXPECT_EQ(RunQuillet(L" -nodlg -url=x?nam=%"), static_cast<int>(kAbnormalEndExitCode));
    EXPECT_EQ(RunQuillet(L" -url=x?nam=%"), static_cast<int>(kAbnormalEndExitCode));
}

// --- Which window -----------------------------------------------------------------------------

struct Lookup
{
    const char* reason;
    std::wstring classSwitch;
    std::wstring textSwitch;
    bool found;
};

TEST(RunFlow, ClassAndTextMustBothFit)
{
    const std::wstring title = UniqueName(L"Mein Fenster ");
    const ScriptedHost host(UniqueHost(title));
    const std::wstring nobody = UniqueName(L"Nobody");
    const Lookup lookups[] = {
        {"class alone", host.ClassName(), L"", true},
        {"text alone", L"", title, true},
        {"both", host.ClassName(), title, true},
        {"the platform compares without case", L"h" + host.ClassName().substr(1), L"", true},
        {"class fits, text does not", host.ClassName(), nobody, false},
        {"text fits, class does not", nobody, title, false},
        {"a part of the text", host.ClassName(), L"Mein", false},
        {"wildcards are literal here", host.ClassName(), L"*", false},
    };
    for (const Lookup& lookup : lookups)
    {
        SCOPED_TRACE(lookup.reason);
        const size_t before = host.ReceivedSoFar().size();
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=\"" + lookup.classSwitch + L"\" -nam=\"" +
                             lookup.textSwitch + L'"'),
                  lookup.found ? kResultCancelled : kResultWindowNotFound);
        EXPECT_EQ(host.ReceivedSoFar().size() - before, lookup.found ? 1u : 0u);
    }
}

TEST(RunFlow, HiddenDisabledAndUntitledWindowsAreFound)
{
    constexpr DWORD kStyles[] = {WS_OVERLAPPEDWINDOW,
                                 WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_DISABLED,
                                 WS_POPUP | WS_VISIBLE, WS_OVERLAPPEDWINDOW | WS_MINIMIZE};
    for (const DWORD style : kStyles)
    {
        SCOPED_TRACE(style);
        const ScriptedHost host({.className = UniqueName(L"Host"), .style = style});
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName()), kResultCancelled);
        EXPECT_EQ(host.ReceivedSoFar().size(), 1u);
    }
}

TEST(RunFlow, TextTellsWindowsOfOneClassApart)
{
    const std::wstring className = UniqueName(L"Host");
    const ScriptedHost first({className, L"First"});
    const ScriptedHost second({className, L"Second"});
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=First -kla=" + className), kResultCancelled);
    EXPECT_EQ(first.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(second.ReceivedSoFar().size(), 0u);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=Second -kla=" + className), kResultCancelled);
    EXPECT_EQ(first.ReceivedSoFar().size(), 1u);
    EXPECT_EQ(second.ReceivedSoFar().size(), 1u);
    // The class alone reaches one of them, whichever lies on top.
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + className), kResultCancelled);
    EXPECT_EQ(first.ReceivedSoFar().size() + second.ReceivedSoFar().size(), 3u);
}

TEST(RunFlow, NamesBeyondAsciiAndBeyondTheBasicPlaneAreFound)
{
    for (const wchar_t* stem : {L"Größe", L"Ωмега漢字", L"Lupe\xD83D\xDD0D", L"İstanbul"})
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(stem)));
        const ScriptedHost host({UniqueName(stem), UniqueName(stem)});
        EXPECT_EQ(
            RunQuillet(L" -nodlg -nam=\"" + host.Title() + L"\" -kla=\"" + host.ClassName() + L'"'),
            kResultCancelled);
        EXPECT_EQ(host.ReceivedSoFar().size(), 1u);
    }
}

} // namespace
