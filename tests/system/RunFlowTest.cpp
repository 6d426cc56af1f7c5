// One request from the command line to the exit code, with the real program and real host windows.
#include "app/AbnormalEnd.h"
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/ForegroundLock.h"
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
TEST(RunFlow, HostThatDiesByBeingActivatedIsASendFailure)
{
    for (const auto* request : {L"", L" -copydata=abc"})
    {
        SCOPED_TRACE(testing::PrintToString(request));
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
        // Where nobody may take it, some other program has it, which does as well.
        ASSERT_TRUE(!ForegroundIsFree() || WaitForForeground(inFront.Handle()));
        EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -kla=" + host.ClassName() + request),
                  kResultSendFailed);
    }
}

// The numbers of the system's own messages that carry pointers cannot be sent without waiting for
// their end.
TEST(RunFlow, NotificationWithANumberThatCarriesAPointerEndsWithMinusThree)
{
    ScriptedHostOptions options = UniqueHost();
    options.alsoRecord = {WM_SETTEXT, WM_GETTEXT};
    const ScriptedHost host(options);
    for (const UINT message : {WM_SETTEXT, WM_GETTEXT, WM_COPYDATA})
    {
        SCOPED_TRACE(message);
        const int offset = static_cast<int>(message) - WM_USER;
        EXPECT_EQ(
            RunQuillet(L" -nodlg -msg=" + std::to_wstring(offset) + L" -kla=" + host.ClassName()),
            kResultSendFailed);
    }
    EXPECT_EQ(host.ReceivedSoFar().size(), 0u);
}

// --- The one message that a minimised dialog waits for
// --------------------------------------------

TEST(RunFlow, QuitAsTheOneMessageLeavesTheStoredResult)
{
    MinimisedDialogGetsNoMessageByItself();
    const ScriptedHost host(UniqueHost());
    const std::wstring switches = L" -nodlg -activatewindow -kla=" + host.ClassName();
    for (const auto& [request, code] :
         {std::pair(L"", kResultCancelled), std::pair(L" -copydata=abc", kResultAccepted)})
    {
        SCOPED_TRACE(code);
        const std::size_t before = host.ReceivedSoFar().size();
        const QuilletRun run(switches + request);
        ASSERT_TRUE(host.WaitForAnswers(before + 1));
        ::PostThreadMessageW(run.MainThreadId(), WM_QUIT, 17, 0);
        EXPECT_EQ(run.WaitForExit(), code);
    }
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
        const std::size_t before = host.ReceivedSoFar().size();
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

// They are no top-level windows, but the platform's lookup by name sees them.
TEST(RunFlow, MessageOnlyWindowsAreFound)
{
    const ScriptedHost host({.className = UniqueName(L"Host"),
                             .title = UniqueName(L"Inner"),
                             .style = 0,
                             .owner = HWND_MESSAGE});
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName()), kResultCancelled);
    EXPECT_EQ(RunQuillet(L" -nodlg -nam=" + host.Title()), kResultCancelled);
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=abc -kla=" + host.ClassName()), kResultAccepted);
    EXPECT_EQ(host.ReceivedSoFar().size(), 3u);
}

// The documented numbers that stand for a text end below those of registered classes.
TEST(RunFlow, ClassByItsNumber)
{
    const ScriptedHost host(UniqueHost());
    const std::wstring number = L'#' + std::to_wstring(::GetClassLongPtrW(host.Handle(), GCW_ATOM));
    const bool found = ExpectsAsUnderWine("class-by-number", "finds the window",
                                          "not tried; by its documentation it finds none");
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + number),
              found ? kResultCancelled : kResultWindowNotFound);
    EXPECT_EQ(RunQuillet(L" -nodlg -seaglob -kla=" + number), kResultWindowNotFound);
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
    // The last two are halves of a pair, which are no characters.
    for (const wchar_t* stem :
         {L"Größe", L"Ωмега漢字", L"Lupe\xD83D\xDD0D", L"İstanbul", L"High\xD83D-", L"Low\xDD0D-"})
    {
        SCOPED_TRACE(testing::PrintToString(std::wstring(stem)));
        const ScriptedHost host({UniqueName(stem), UniqueName(stem)});
        const std::wstring names =
            L" -nodlg -nam=\"" + host.Title() + L"\" -kla=\"" + host.ClassName() + L'"';
        EXPECT_EQ(RunQuillet(names), kResultCancelled);
        EXPECT_EQ(RunQuillet(names + L" -seaglob"), kResultCancelled);
        EXPECT_EQ(host.ReceivedSoFar().size(), 2u);
    }
}

} // namespace
