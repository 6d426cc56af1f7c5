// Hosts that die or hang at the worst moment, and a process that is asked to end: the run always
// ends, with the code that says what happened.
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/HostProcess.h"
#include "tests/support/InFront.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace
{

void Cancel(HWND dialog)
{
    ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

TEST(Fault, HostKilledBeforeTheSearchIsNotFound)
{
    const std::wstring name = UniqueName(L"FaultHost");
    HostProcess host(name, L"Host");
    ASSERT_NE(host.Window(), nullptr);
    host.Kill();
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=abc -kla=" + name), kResultWindowNotFound);
}

TEST(Fault, HostKilledInsideItsHandlerIsASendFailure)
{
    const std::wstring name = UniqueName(L"FaultHost");
    HostProcess host(name, L"Host", L"hang");
    const QuilletRun run(L" -copydata=abc -kla=" + name);
    ASSERT_NE(run.WaitForDialog(), nullptr);
    ASSERT_TRUE(host.WaitUntilReceived());
    EXPECT_TRUE(run.IsRunning());
    host.Kill();
    EXPECT_EQ(run.WaitForExit(), kResultSendFailed);
}

TEST(Fault, HostKilledDuringTheWaitLeavesTheUserToCancel)
{
    const std::wstring name = UniqueName(L"FaultHost");
    HostProcess host(name, L"Host");
    const QuilletRun run(L" -copydata=abc -kla=" + name);
    ASSERT_TRUE(host.WaitUntilAnswered());
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    host.Kill();
    EXPECT_TRUE(run.IsRunning());
    Cancel(dialog);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// Killed again and again at random moments of the run: found or not, sent or not, the run must end
// with one of the codes that say so.
TEST(Fault, HostKilledAtAnyMomentEndsTheRun)
{
    constexpr int kRounds = 12;
    for (int round = 0; round < kRounds; ++round)
    {
        const std::wstring name = UniqueName(L"FaultHost");
        HostProcess host(name, L"Host");
        const QuilletRun run(L" -nodlg -copydata=abc -kla=" + name);
        // The only sleep that is meant: it moves the kill through the run.
        std::this_thread::sleep_for(std::chrono::milliseconds(4 * round));
        host.Kill();
        const auto code = run.WaitForExit();
        ASSERT_TRUE(code.has_value()) << "round " << round;
        EXPECT_TRUE(*code == kResultAccepted || *code == kResultWindowNotFound ||
                    *code == kResultSendFailed)
            << "round " << round << " ended with " << *code;
    }
}

TEST(Fault, NotificationToAHungHostDoesNotWait)
{
    const std::wstring name = UniqueName(L"FaultHost");
    const HostProcess host(name, L"Host", L"hang");
    const QuilletRun hanging(L" -nodlg -copydata=abc -kla=" + name);
    ASSERT_TRUE(host.WaitUntilReceived());
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=5 -kla=" + name), kResultCancelled);
    EXPECT_TRUE(hanging.IsRunning());
}

/// A host that hangs, behind another one, and a run that activates it.
class FaultInFront : public InFront<>
{
protected:
    /// The run's dialog is cancelled at once: what still holds it up is the activation.
    void ActivateHungHost(const wchar_t* script)
    {
        const std::wstring name = UniqueName(L"FaultHost");
        host.emplace(name, L"Host", script);
        hanging.emplace(L" -nodlg -copydata=abc -kla=" + name);
        ASSERT_TRUE(host->WaitUntilReceived());
        inFront.emplace(UniqueHost());
        ASSERT_TRUE(WaitForForeground(inFront->Handle()));
        run.emplace(L" -activatewindow -msg=5 -kla=" + name);
        const HWND dialog = run->WaitForDialog();
        ASSERT_NE(dialog, nullptr);
        Cancel(dialog);
    }

    std::optional<HostProcess> host;
    std::optional<QuilletRun> hanging;
    std::optional<ScriptedHost> inFront;
    std::optional<QuilletRun> run;
};

// Showing a window of another thread waits until that thread has dealt with it. The platform does
// so for one that is restored, and not for one that is only shown once more.
TEST_F(FaultInFront, ActivatingAHungHostDoesNotWait)
{
    ASSERT_NO_FATAL_FAILURE(ActivateHungHost(L"hang"));
    EXPECT_EQ(run->WaitForExit(), kResultCancelled);
}

TEST_F(FaultInFront, ActivatingAMinimisedHungHostWaitsForIt)
{
    constexpr std::chrono::milliseconds kAMoment{500};
    ASSERT_NO_FATAL_FAILURE(ActivateHungHost(L"minimised hang"));
    EXPECT_EQ(run->WaitForExit(kAMoment), std::nullopt);
    host->Kill();
    // It goes on then, and the notification finds no window; nor does the search, should it not
    // have got that far on a busy machine.
    const auto code = run->WaitForExit();
    EXPECT_TRUE(code == kResultSendFailed || code == kResultWindowNotFound)
        << testing::PrintToString(code);
}

// Windows puts a window of its own, of the class Ghost, in the place of one that has not looked for
// messages for some seconds; its text begins like the other's. Wine does not. The class finds the
// host.
TEST(Fault, AHostThatHangsForLongIsFoundByItsClass)
{
    const std::wstring name = UniqueName(L"FaultHost");
    const HostProcess host(name, name, L"hang");
    const QuilletRun hanging(L" -nodlg -copydata=abc -kla=" + name);
    ASSERT_TRUE(host.WaitUntilReceived());
    constexpr std::chrono::seconds kUntilReplaced{10};
    const bool replaced =
        !RunsUnderWine() &&
        WaitUntil([] { return ::FindWindowW(L"Ghost", nullptr) != nullptr; }, kUntilReplaced);
    ExpectsAsUnderWine("ghost-window", "there are none",
                       replaced ? "one stood in for the host" : "none came within ten seconds");
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=5 -kla=" + name), kResultCancelled);
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=5 -seaglob -nam=* -kla=" + name), kResultCancelled);
    EXPECT_TRUE(hanging.IsRunning());
}

TEST(Fault, TheLastOfManyWindowsIsFound)
{
    // Many more than a desktop has. Wine's cost of making them grows with the square.
    constexpr int kWindows = 500;
    const ScriptedHost host({UniqueName(L"FaultHost"), L"Der letzte von vielen"}, AnswerWith(9));
    ::SetWindowPos(host.Handle(), HWND_BOTTOM, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    std::vector<HWND> windows;
    for (int i = 0; i < kWindows; ++i)
    {
        windows.push_back(::CreateWindowExW(0, L"STATIC", L"Eins von vielen", WS_POPUP, 0, 0, 1, 1,
                                            nullptr, nullptr, nullptr, nullptr));
    }
    EXPECT_EQ(RunQuillet(L" -seaglob -copydata=x -nam=\"Der letzte*\" -kla=*" +
                         host.ClassName().substr(5)),
              9);
    for (const HWND window : windows)
    {
        ::DestroyWindow(window);
    }
}

struct EndRequest
{
    const char* name;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    /// Whether the wait goes on afterwards.
    bool waits;
};

class AskedToEnd : public testing::TestWithParam<EndRequest>
{
};

TEST_P(AskedToEnd, EndsWithMinusOneOrWaits)
{
    const QuilletRun run(L"");
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    ::SendMessageW(dialog, GetParam().message, GetParam().wParam, GetParam().lParam);
    if (GetParam().waits)
    {
        // It still answers its messages, and is there.
        ::SendMessageW(dialog, WM_NULL, 0, 0);
        EXPECT_TRUE(run.IsRunning());
        EXPECT_TRUE(::IsWindowVisible(dialog));
        Cancel(dialog);
    }
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// A logoff is granted, and the platform then ends the process by itself; the dialog does
// nothing of its own.
INSTANTIATE_TEST_SUITE_P(Fault, AskedToEnd,
                         testing::Values(EndRequest{"Close", WM_CLOSE, 0, 0, false},
                                         EndRequest{"QueryEndSession", WM_QUERYENDSESSION, 0, 0,
                                                    true},
                                         EndRequest{"EndSession", WM_ENDSESSION, TRUE, 0, true}),
                         [](const auto& request) { return std::string(request.param.name); });

TEST(Fault, QuitPostedToTheThreadEndsTheWait)
{
    const QuilletRun run(L"");
    ASSERT_NE(run.WaitForWaitingDialog(), nullptr);
    ::PostThreadMessageW(run.MainThreadId(), WM_QUIT, 17, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

} // namespace
