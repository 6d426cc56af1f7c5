// The wait dialog as its user and its host see it: the real program, real windows, real input.
//
// Whatever a user does first, Enter and Execute cancel: the dialog manager would ask the dialog for
// its default button then, by a message with the number of the answer 0 (CDialog::PressButton).
#include "app/ResultCode.h"
#include "tests/support/InFront.h"
#include "tests/support/RandomSeed.h"
#include "tests/support/RealInput.h"
#include "tests/support/RunsUnderWine.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"
#include "tests/support/WaitingRun.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

namespace
{

class WaitDialog : public WaitingRun
{
protected:
    /// Works keys or mouse until they have ended the wait.
    void EndBy(const std::function<void()>& act,
               std::chrono::milliseconds repeatAfter = kWaitLimit) const
    {
        EXPECT_TRUE(ActInFront(dialog, act, [this] { return HasEnded(); }, repeatAfter));
    }

    /// The same for several steps, the last of which is to end the wait. They are repeated from the
    /// first one on, so that it is never a second try of the last one alone that ends it.
    void EndBySteps(const std::function<void()>& steps) const
    {
        bool ended = false;
        for (auto tries = kWaitLimit / kRepeatHeldAfter; tries > 0 && !ended && !HasFatalFailure();
             --tries)
        {
            steps();
            ended = WaitUntil([this] { return HasEnded(); }, kRepeatHeldAfter);
        }
        EXPECT_TRUE(ended);
    }

private:
    bool HasEnded() const { return !::IsWindowVisible(dialog); }
};

// --- Answers ---------------------------------------------------------------------------------

TEST_F(WaitDialog, LowestAnswerEndsWithZero)
{
    Post(kFirstAnswer);
    EXPECT_EQ(run.WaitForExit(), 0);
}

TEST_F(WaitDialog, HighestAnswerEndsWithItsOffset)
{
    Post(kLastAnswer);
    EXPECT_EQ(run.WaitForExit(), static_cast<int>(kLastAnswer - kFirstAnswer));
}

// The number of the cancel command, as an answer, is not a cancel.
TEST_F(WaitDialog, AnswerTwoIsNotACancel)
{
    Post(WM_USER + IDCANCEL);
    EXPECT_EQ(run.WaitForExit(), IDCANCEL);
}

TEST_F(WaitDialog, ParametersOfAnAnswerAreIgnored)
{
    Post(WM_USER + 9, static_cast<WPARAM>(-1), 0x123456789);
    EXPECT_EQ(run.WaitForExit(), 9);
}

TEST_F(WaitDialog, NumbersBesideTheRangeAreNoAnswers)
{
    Post(kLastAnswer + 1);
    Post(kFirstAnswer - 1);
    Post(WM_APP);
    Post(::RegisterWindowMessageW(L"QuilletTestNoAnswer"));
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    EXPECT_TRUE(IsWaiting(run, dialog));
    Post(WM_USER + 3);
    EXPECT_EQ(run.WaitForExit(), 3);
}

TEST_F(WaitDialog, FirstOfTwoPostedAnswersDecides)
{
    Post(WM_USER + 5);
    Post(WM_USER + 6);
    EXPECT_EQ(run.WaitForExit(), 5);
}

// Both are handled before the loop looks at its result.
TEST_F(WaitDialog, FirstOfTwoSentAnswersDecides)
{
    ::SendNotifyMessageW(dialog, WM_USER + 5, 0, 0);
    ::SendNotifyMessageW(dialog, WM_USER + 6, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 5);
}

TEST_F(WaitDialog, AnswerBeforeACancelDecides)
{
    Post(WM_USER + 5);
    Post(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(run.WaitForExit(), 5);
}

TEST_F(WaitDialog, CancelBeforeAnAnswerDecides)
{
    Post(WM_COMMAND, IDCANCEL);
    Post(WM_USER + 5);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// A sent message does not end the wait for a posted one by itself; the answer still does.
TEST_F(WaitDialog, SentAnswerEndsTheWait)
{
    ::SendMessageW(dialog, WM_USER + 8, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 8);
}

// Only what is addressed to the dialog counts.
TEST_F(WaitDialog, AnswerPostedToTheThreadIsNone)
{
    ::PostThreadMessageW(run.MainThreadId(), WM_USER + 5, 0, 0);
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    EXPECT_TRUE(IsWaiting(run, dialog));
    Post(WM_USER + 3);
    EXPECT_EQ(run.WaitForExit(), 3);
}

TEST_F(WaitDialog, AnswerEndsADialogThatAnotherProgramHasDisabled)
{
    ::EnableWindow(dialog, FALSE);
    ASSERT_FALSE(::IsWindowEnabled(dialog));
    Post(WM_USER + 5);
    EXPECT_EQ(run.WaitForExit(), 5);
}

// A notification to the dialog's caption is an answer like any other.
TEST_F(WaitDialog, AnotherRunCanAnswer)
{
    EXPECT_EQ(RunQuillet(std::wstring(L" -nodlg -msg=12 -nam=\"") + kWaitDialogCaption + L'"'),
              kResultCancelled);
    EXPECT_EQ(run.WaitForExit(), 12);
}

// --- Other ends ------------------------------------------------------------------------------

// A result below WM_USER other than the cancel command is the exit code itself.
TEST_F(WaitDialog, OkCommandEndsWithOne)
{
    Post(WM_COMMAND, IDOK);
    EXPECT_EQ(run.WaitForExit(), IDOK);
}

TEST_F(WaitDialog, CloseMessageCancels)
{
    Post(WM_CLOSE);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST_F(WaitDialog, CloseFromTheSystemMenuCancels)
{
    Post(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST_F(WaitDialog, QuitMessageEndsWithMinusOne)
{
    ::PostThreadMessageW(run.MainThreadId(), WM_QUIT, 0, 0);
    EXPECT_EQ(run.WaitForExit(), -1);
}

TEST_F(WaitDialog, UnknownCommandsAreIgnored)
{
    constexpr WPARAM kUnknownCommand = 4711;
    Post(WM_COMMAND, kUnknownCommand);
    Post(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_SETFOCUS), reinterpret_cast<LPARAM>(Button()));
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    EXPECT_TRUE(IsWaiting(run, dialog));
}

// --- How it looks ----------------------------------------------------------------------------

TEST_F(WaitDialog, HasATaskbarButtonOfItsOwn)
{
    EXPECT_TRUE(::GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_APPWINDOW);
    EXPECT_EQ(::GetWindow(dialog, GW_OWNER), nullptr);
}

TEST_F(WaitDialog, ShowsItsTextAndButton)
{
    wchar_t text[64] = {};
    ::SendMessageW(Button(), WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, L"Abbrechen");
    const HWND label = ::GetWindow(Button(), GW_HWNDNEXT);
    ::SendMessageW(label, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, L"Warte auf Rückmeldung von Hostanwendung");
}

TEST_F(WaitDialog, MinimisesAndRestoresFromTheSystemMenu)
{
    Post(WM_SYSCOMMAND, SC_MINIMIZE);
    EXPECT_TRUE(WaitUntil([&] { return ::IsIconic(dialog) != FALSE; }));
    EXPECT_TRUE(IsWaiting(run, dialog));
    Post(WM_SYSCOMMAND, SC_RESTORE);
    EXPECT_TRUE(WaitUntil([&] { return ::IsIconic(dialog) == FALSE; }));
    Post(WM_USER + 4);
    EXPECT_EQ(run.WaitForExit(), 4);
}

// The key is posted: right after a restore the window manager still moves the focus about, and real
// input may go astray.
TEST_F(WaitDialog, EnterCancelsARestoredDialog)
{
    Post(WM_SYSCOMMAND, SC_MINIMIZE);
    ASSERT_TRUE(WaitUntil([&] { return ::IsIconic(dialog) != FALSE; }));
    Post(WM_SYSCOMMAND, SC_RESTORE);
    ASSERT_TRUE(WaitUntil([&] { return ::IsIconic(dialog) == FALSE; }));
    ::PostMessageW(Button(), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// The dialog itself has the focus then, and no button. The vendor's framework leaves the key to the
// dialog manager, whose question for the default button is an answer to the dialog.
#ifndef _MSC_VER
TEST_F(WaitDialog, EnterCancelsAMinimisedDialog)
{
    Post(WM_SYSCOMMAND, SC_MINIMIZE);
    ASSERT_TRUE(WaitUntil([&] { return ::IsIconic(dialog) != FALSE; }));
    Post(WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}
#endif

TEST_F(WaitDialog, AnswerEndsAMinimisedDialog)
{
    Post(WM_SYSCOMMAND, SC_MINIMIZE);
    ASSERT_TRUE(WaitUntil([&] { return ::IsIconic(dialog) != FALSE; }));
    Post(WM_USER + 4);
    EXPECT_EQ(run.WaitForExit(), 4);
}

// Again when it does not stay there: where the window manager put it at first can arrive late.
TEST_F(WaitDialog, CanBeMoved)
{
    constexpr POINT kPlace{20, 30};
    EXPECT_TRUE(WaitUntil([&] {
        ::SetWindowPos(dialog, nullptr, kPlace.x, kPlace.y, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        RECT area{};
        return WaitForPostedMessages(dialog) && ::GetWindowRect(dialog, &area) &&
               area.left == kPlace.x && area.top == kPlace.y;
    }));
    EXPECT_TRUE(IsWaiting(run, dialog));
}

// --- Keys and mouse --------------------------------------------------------------------------

/// Something that a user does to the dialog.
struct UserAction
{
    const char* name;
    std::function<void(HWND dialog)> act;
    std::chrono::milliseconds repeatAfter = kWaitLimit;
};

void PrintTo(const UserAction& action, std::ostream* stream)
{
    *stream << action.name;
}

UserAction Key(const char* name, WORD key, WORD modifier = 0)
{
    return {name, [key, modifier](HWND) { PressKey(key, modifier); }};
}

POINT BesideTheButton(HWND dialog)
{
    RECT button{};
    ::GetWindowRect(::GetDlgItem(dialog, IDCANCEL), &button);
    return {button.left - 20, button.bottom - 2};
}

POINT OnTheText(HWND dialog)
{
    return CentreOf(::GetWindow(::GetDlgItem(dialog, IDCANCEL), GW_HWNDNEXT));
}

POINT OnTheButton(HWND dialog)
{
    return CentreOf(::GetDlgItem(dialog, IDCANCEL));
}

void DragFromTo(POINT from, POINT to)
{
    PressMouseAt(from);
    ReleaseMouseAt(to);
}

void OpenAndCloseSystemMenu(HWND dialog)
{
    EXPECT_TRUE(OpenSystemMenu(dialog));
    ::SendMessageW(dialog, WM_CANCELMODE, 0, 0);
    EXPECT_TRUE(WaitUntil([dialog] { return !IsInMenuMode(dialog); }));
}

// On Windows the foreground has to be asked for. Under Wine the window manager gives it back by
// itself, and asking as well would start a race between the two.
void LoseFocusAndGetItBack(HWND dialog)
{
    {
        const ScriptedHost other({UniqueName(L"Other"), L"Other"});
        EXPECT_TRUE(RunsUnderWine() ? other.WaitForFocus() : WaitForForeground(other.Handle()));
    }
    EXPECT_TRUE(RunsUnderWine() ? WaitUntil([dialog] { return ::GetForegroundWindow() == dialog; })
                                : WaitForForeground(dialog));
}

/// An action that holds something down (see RealInput.h).
UserAction Held(UserAction action)
{
    action.repeatAfter = kRepeatHeldAfter;
    return action;
}

const UserAction kCancellingActions[] = {
    Key("Enter", VK_RETURN),
    Key("Execute", VK_EXECUTE),
    Key("Escape", VK_ESCAPE),
    Held(Key("Space", VK_SPACE)),
    Held(Key("AltF4", VK_F4, VK_MENU)),
    Held({"ClickOnTheButton", [](HWND dialog) { ClickAt(OnTheButton(dialog)); }}),
};

const UserAction kHarmlessActions[] = {
    Key("Tab", VK_TAB),
    Key("ShiftTab", VK_TAB, VK_SHIFT),
    Key("Left", VK_LEFT),
    Key("Right", VK_RIGHT),
    Key("Up", VK_UP),
    Key("Down", VK_DOWN),
    Key("Home", VK_HOME),
    Key("Letter", 'A'),
    Key("Digit", '2'),
    // The button's caption names no mnemonic.
    Key("AltLetter", 'A', VK_MENU),
#ifndef _MSC_VER // the vendor's framework looks for a help file, and tells that there is none
    Key("F1", VK_F1),
#endif
    {"SystemMenuOpenedAndClosed", OpenAndCloseSystemMenu},
    {"ClickBesideTheButton", [](HWND dialog) { ClickAt(BesideTheButton(dialog)); }},
    {"ClickOnTheText", [](HWND dialog) { ClickAt(OnTheText(dialog)); }},
    {"PressOnTheButtonAndReleaseBesideIt",
     [](HWND dialog) { DragFromTo(OnTheButton(dialog), BesideTheButton(dialog)); }},
    {"PressBesideTheButtonAndReleaseOnIt",
     [](HWND dialog) { DragFromTo(BesideTheButton(dialog), OnTheButton(dialog)); }},
    {"LoseFocusAndGetItBack", LoseFocusAndGetItBack},
};

std::string NameOfAction(const testing::TestParamInfo<UserAction>& info)
{
    return info.param.name;
}

class CancellingAction : public InFront<WaitDialog>, public testing::WithParamInterface<UserAction>
{
};

TEST_P(CancellingAction, EndsWithMinusOne)
{
    EndBy([this] { GetParam().act(dialog); }, GetParam().repeatAfter);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

INSTANTIATE_TEST_SUITE_P(WaitDialog, CancellingAction, testing::ValuesIn(kCancellingActions),
                         NameOfAction);

class HarmlessAction : public InFront<WaitDialog>, public testing::WithParamInterface<UserAction>
{
};

TEST_P(HarmlessAction, KeepsTheDialogWaiting)
{
    ASSERT_TRUE(ActInFront(dialog, [this] { GetParam().act(dialog); }));
    ASSERT_TRUE(WaitForInput(dialog));
    EXPECT_TRUE(IsWaiting(run, dialog));
    Post(WM_USER + 7);
    EXPECT_EQ(run.WaitForExit(), 7);
}

TEST_P(HarmlessAction, KeepsEnterACancel)
{
    EndBySteps([this] {
        ASSERT_TRUE(ActInFront(dialog, [this] { GetParam().act(dialog); }));
        PressKey(VK_RETURN);
    });
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

INSTANTIATE_TEST_SUITE_P(WaitDialog, HarmlessAction, testing::ValuesIn(kHarmlessActions),
                         NameOfAction);

class RandomActions : public InFront<WaitDialog>, public testing::WithParamInterface<int>
{
};

TEST_P(RandomActions, KeepEnterACancel)
{
    constexpr int kActions = 6;
    std::mt19937 random(RandomSeed() + static_cast<unsigned>(GetParam()));
    std::uniform_int_distribution<std::size_t> choose(0, std::size(kHarmlessActions) - 1);
    std::vector<const UserAction*> actions(kActions);
    std::string names;
    for (const UserAction*& action : actions)
    {
        action = &kHarmlessActions[choose(random)];
        names += std::string(action->name) + ' ';
    }
    EndBySteps([&] {
        for (const UserAction* const action : actions)
        {
            ASSERT_TRUE(ActInFront(dialog, [&] { action->act(dialog); })) << names;
            ASSERT_TRUE(run.IsRunning()) << names;
        }
        PressKey(VK_RETURN);
    });
    EXPECT_EQ(run.WaitForExit(), kResultCancelled) << names;
}

INSTANTIATE_TEST_SUITE_P(WaitDialog, RandomActions, testing::Range(0, 5));

} // namespace
