// Bringing the target to the front, with real windows of other processes on a real desktop.
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/HostProcess.h"
#include "tests/support/InFront.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>

namespace
{

/// A window of another process, with a class name that the tests can give to the program.
class Stranger : public HostProcess
{
public:
    explicit Stranger(const std::wstring& words = L"") : Stranger(UniqueName(L"Stranger"), words) {}

    const std::wstring& ClassName() const { return m_className; }

private:
    Stranger(const std::wstring& className, const std::wstring& words)
        : HostProcess(className, className, words), m_className(className)
    {
    }

    std::wstring m_className;
};

/// Whether the window that was in front keeps its place. Under Wine the desktop itself can be in
/// front for a while, or for good, when the window manager has taken the focus from a window that
/// goes away.
bool NobodyElseIsInFront(const Stranger& stranger)
{
    return WaitUntil([&] {
        const HWND inFront = ::GetForegroundWindow();
        return inFront == stranger.Window() || inFront == nullptr ||
               (RunsUnderWine() && inFront == ::GetDesktopWindow());
    });
}

bool IsAbove(HWND upper, HWND lower)
{
    HWND below = upper;
    while (below != nullptr && below != lower)
    {
        below = ::GetWindow(below, GW_HWNDNEXT);
    }
    return below != nullptr;
}

/// Runs the program with its dialog minimised, and gives its exit code. The run's end takes one
/// message to the dialog. Windows' shell soon posts one; Wine has none, so the test does.
std::optional<int> RunMinimised(const std::wstring& arguments)
{
    MinimisedDialogGetsNoMessageByItself();
    const QuilletRun run(L" -nodlg -activatewindow" + arguments);
    ::PostMessageW(run.WaitForDialog(), WM_NULL, 0, 0);
    return run.WaitForExit();
}

/// Brings the target to the front by a run, and gives whether it got there. Whether it stays there
/// is not the program's doing: what the window manager still had to say of another window can
/// arrive a moment later.
bool ComesToFront(const Stranger& target)
{
    const std::size_t before = target.Activations();
    EXPECT_EQ(RunMinimised(L" -kla=" + target.ClassName()), kResultCancelled);
    return WaitUntil([&] {
        return target.Activations() > before || ::GetForegroundWindow() == target.Window();
    });
}

using Activation = InFront<>;

TEST_F(Activation, ACoveredTargetComesToTheFront)
{
    const Stranger target;
    const Stranger cover;
    ASSERT_TRUE(WaitForForeground(cover.Window()));
    ASSERT_TRUE(IsAbove(cover.Window(), target.Window()));
    EXPECT_TRUE(ComesToFront(target));
    // Windows raises the foreground window. Wine leaves the order of windows that are on screen
    // already to the window manager, which is not asked.
    const bool ordersNothing =
        ExpectsAsUnderWine("window-order", "windows on the screen keep their order",
                           "the foreground window is raised");
    EXPECT_NE(IsAbove(target.Window(), cover.Window()), ordersNothing);
}

TEST_F(Activation, AMinimisedTargetIsRestoredAndRaised)
{
    const Stranger target(L"minimised");
    const Stranger cover;
    ASSERT_TRUE(WaitForForeground(cover.Window()));
    ASSERT_TRUE(::IsIconic(target.Window()));
    EXPECT_TRUE(ComesToFront(target));
    EXPECT_TRUE(WaitUntil([&] { return ::IsIconic(target.Window()) == FALSE; }));
    // Under Wine the order is the window manager's; under Wine 10 it is not told to the platform.
    EXPECT_TRUE(ExpectsAsUnderWine("restored-window",
                                   "its place among the others is the window manager's",
                                   "raised above the others") ||
                WaitUntil([&] { return IsAbove(target.Window(), cover.Window()); }));
}

TEST_F(Activation, AHiddenTargetStaysHidden)
{
    const Stranger target(L"hidden");
    const Stranger cover;
    ASSERT_TRUE(WaitForForeground(cover.Window()));
    EXPECT_EQ(RunMinimised(L" -kla=" + target.ClassName()), kResultCancelled);
    EXPECT_FALSE(::IsWindowVisible(target.Window()));
    EXPECT_TRUE(NobodyElseIsInFront(cover));
}

TEST_F(Activation, ATargetThatWasInFrontEndsInFront)
{
    const Stranger other;
    const Stranger target;
    ASSERT_TRUE(WaitForForeground(target.Window()));
    EXPECT_EQ(RunMinimised(L" -kla=" + target.ClassName()), kResultCancelled);
    EXPECT_TRUE(NobodyElseIsInFront(target));
    EXPECT_FALSE(::IsIconic(target.Window()));
}

// The minimised dialog takes the foreground for itself, so it is the one target that is sure to be
// minimised and in front. The message is none that it reads as an answer.
TEST_F(Activation, AMinimisedTargetThatIsInFrontStaysMinimised)
{
    const QuilletRun run(std::wstring(L" -nodlg -activatewindow -msg=8000 -nam=\"") +
                         kWaitDialogCaption + L'"');
    const HWND dialog = run.WaitForDialog();
    const bool stays = MinimisedDialogGetsNoMessageByItself();
    const auto isMinimised = [&] { return ::IsIconic(dialog) || (!stays && !::IsWindow(dialog)); };
    ASSERT_TRUE(WaitUntil(isMinimised));
    // By now the run waits for its one message, and all else has been done.
    ASSERT_TRUE(::WaitForInputIdle(run.Handle(), 20'000) == 0u || !stays);
    EXPECT_TRUE(isMinimised());
    ::PostMessageW(dialog, WM_NULL, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST_F(Activation, WithoutTheSwitchNothingMoves)
{
    const Stranger minimised(L"minimised");
    const Stranger covered;
    const Stranger cover;
    ASSERT_TRUE(WaitForForeground(cover.Window()));
    for (const auto* target : {&minimised, &covered})
    {
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + target->ClassName()), kResultCancelled);
    }
    EXPECT_EQ(::GetForegroundWindow(), cover.Window());
    EXPECT_TRUE(IsAbove(cover.Window(), covered.Window()));
    EXPECT_TRUE(::IsIconic(minimised.Window()));
}

/// The wait dialog's state while the target handles its copy-data message.
struct DialogState
{
    bool visible = false;
    bool minimised = false;
};

/// Notes the dialog's state and posts it the answer WM_USER + 5.
ScriptedHost::Script NoteDialogAndAnswer(DialogState& state)
{
    return [&state](HWND host, const ReceivedMessage& message) {
        const HWND dialog = reinterpret_cast<HWND>(message.wParam);
        state = {::IsWindowVisible(dialog) != FALSE, ::IsIconic(dialog) != FALSE};
        return AnswerWith(5)(host, message);
    };
}

TEST(ActivationSwitch, WithoutADialogToWaitInTheOwnOneIsMinimisedMeanwhile)
{
    DialogState state;
    const ScriptedHost target({UniqueName(L"Target"), L"Target"}, NoteDialogAndAnswer(state));
    // The answer is the one message that is pumped, but nobody waits for it: 0 stays.
    EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -copydata=abc -kla=" + target.ClassName()),
              kResultAccepted);
    EXPECT_TRUE(state.visible);
    EXPECT_TRUE(state.minimised);
}

TEST(ActivationSwitch, ADialogToWaitInIsShownNormally)
{
    DialogState state;
    const ScriptedHost target({UniqueName(L"Target"), L"Target"}, NoteDialogAndAnswer(state));
    EXPECT_EQ(RunQuillet(L" -activatewindow -copydata=abc -kla=" + target.ClassName()), 5);
    EXPECT_TRUE(state.visible);
    EXPECT_FALSE(state.minimised);
}

TEST(ActivationSwitch, ARefusalEndsWithoutPumpingAMessage)
{
    const ScriptedHost target({UniqueName(L"Target"), L"Target"}, ReturnFromCopyData(0));
    EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -copydata=abc -kla=" + target.ClassName()),
              kResultSendFailed);
}

TEST_F(Activation, NoTargetEndsWithoutActivation)
{
    const Stranger cover;
    ASSERT_TRUE(WaitForForeground(cover.Window()));
    EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -kla=" + UniqueName(L"Nobody")),
              kResultWindowNotFound);
    EXPECT_TRUE(NobodyElseIsInFront(cover));
}

TEST(ActivationSwitch, WhatCannotBeActivatedStillReceives)
{
    const struct
    {
        const char* kind;
        DWORD style;
        DWORD extendedStyle;
    } kRows[] = {
        {"hidden", WS_OVERLAPPEDWINDOW, 0},
        {"disabled", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_DISABLED, 0},
        {"never activated", WS_POPUP | WS_VISIBLE, WS_EX_NOACTIVATE},
    };
    for (const auto& row : kRows)
    {
        const ScriptedHost target({UniqueName(L"Target"), L"Target", row.style, row.extendedStyle},
                                  AnswerWith(5));
        EXPECT_EQ(RunQuillet(L" -nodlg -activatewindow -copydata=abc -kla=" + target.ClassName()),
                  kResultAccepted)
            << row.kind;
        EXPECT_EQ(target.Received().size(), 1u) << row.kind;
    }
}

// Foreground rules and window managers are the home of flakes: the real thing, many times in a row.
TEST_F(Activation, ComesToTheFrontEveryTime)
{
    constexpr std::size_t kTimes = 20;
    const std::array<Stranger, 2> strangers;
    for (std::size_t i = 0; i < kTimes; ++i)
    {
        const Stranger& target = strangers[i % strangers.size()];
        const bool minimised = i % 4 > 1;
        if (minimised)
        {
            ::ShowWindow(target.Window(), SW_MINIMIZE);
        }
        ASSERT_TRUE(ComesToFront(target)) << i;
        ASSERT_FALSE(::IsIconic(target.Window())) << i;
    }
}

} // namespace
