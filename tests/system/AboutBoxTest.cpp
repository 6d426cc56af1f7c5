// The wait dialog's system-menu entry and the About box that it opens.
#include "app/ResultCode.h"
#include "res/resource.h"
#include "tests/support/InFront.h"
#include "tests/support/WaitingRun.h"

#include <gtest/gtest.h>

namespace
{

/// A waiting run, to whose dialog system commands are given.
class AboutBox : public WaitingRun
{
protected:
    void GiveSystemCommand(WPARAM command) const { Post(WM_SYSCOMMAND, command); }
    HWND Box() const { return FindProcessWindow(run.Id(), L"#32770", kAboutBoxCaption); }
    /// The box, once it waits for its user, and the dialog disabled behind it.
    HWND WaitForBox() const { return ::WaitForBox(run.Id(), kAboutBoxCaption); }
    HWND OpenBox() const
    {
        GiveSystemCommand(IDM_ABOUTBOX);
        return WaitForBox();
    }
    bool WaitUntilClosed() const
    {
        return WaitUntil([this] { return Box() == nullptr; });
    }
    /// The dialog is enabled and waits for an answer as if there had been no box.
    void ExpectDialogAsBefore() const
    {
        ASSERT_TRUE(WaitUntilClosed());
        ASSERT_TRUE(WaitForPostedMessages(dialog));
        EXPECT_TRUE(IsWaiting(run, dialog));
        Post(WM_USER + 7);
        EXPECT_EQ(run.WaitForExit(), 7);
    }
};

TEST_F(AboutBox, BelongsToTheDisabledDialog)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(::GetWindow(box, GW_OWNER), dialog);
    EXPECT_FALSE(::IsWindowEnabled(dialog));
    EXPECT_TRUE(::IsWindowVisible(dialog));
}

TEST_F(AboutBox, OkButtonClosesIt)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    ::SendMessageW(::GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
    ExpectDialogAsBefore();
}

TEST_F(AboutBox, CaptionsCloseClosesIt)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    ::PostMessageW(box, WM_SYSCOMMAND, SC_CLOSE, 0);
    ExpectDialogAsBefore();
}

class AboutBoxKey : public InFront<AboutBox>, public testing::WithParamInterface<WORD>
{
};

TEST_P(AboutBoxKey, ClosesIt)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(
        ActInFront(box, [] { PressKey(GetParam()); }, [box] { return !::IsWindowVisible(box); }));
    ExpectDialogAsBefore();
}

// Enter, Escape and space; and Execute, which the platform takes for Enter.
INSTANTIATE_TEST_SUITE_P(AboutBox, AboutBoxKey,
                         testing::Values(VK_RETURN, VK_ESCAPE, VK_SPACE, VK_EXECUTE));

using AboutBoxEntry = InFront<AboutBox>;

// Its mnemonic is the "o" of "Inf&o".
TEST_F(AboutBoxEntry, OpensTheBoxByItsMnemonic)
{
    const auto choose = [this] {
        OpenSystemMenu(dialog);
        PressKey('O');
    };
    ASSERT_TRUE(ActInFront(dialog, choose, [this] { return Box() != nullptr; }, kRepeatHeldAfter));
    const HWND box = WaitForBox();
    ASSERT_NE(box, nullptr);
    ::PostMessageW(box, WM_CLOSE, 0, 0);
    ExpectDialogAsBefore();
}

struct SystemCommand
{
    WPARAM id;
    bool opensTheBox;
};

void PrintTo(const SystemCommand& command, std::ostream* stream)
{
    *stream << command.id;
}

class AboutCommand : public AboutBox, public testing::WithParamInterface<SystemCommand>
{
};

TEST_P(AboutCommand, IsComparedWithoutItsLowFourBits)
{
    GiveSystemCommand(GetParam().id);
    if (GetParam().opensTheBox)
    {
        const HWND box = WaitForBox();
        ASSERT_NE(box, nullptr);
        ::PostMessageW(box, WM_CLOSE, 0, 0);
    }
    else
    {
        ASSERT_TRUE(WaitForPostedMessages(dialog));
        EXPECT_EQ(Box(), nullptr);
    }
    ExpectDialogAsBefore();
}

// Bits above the low sixteen do not count either.
INSTANTIATE_TEST_SUITE_P(AboutBox, AboutCommand,
                         testing::Values(SystemCommand{15, false}, SystemCommand{16, true},
                                         SystemCommand{17, true}, SystemCommand{31, true},
                                         SystemCommand{32, false}, SystemCommand{0, false},
                                         SystemCommand{0x10010, true},
                                         SystemCommand{0x10020, false}));

// --- Ends of the wait while the box is open ---------------------------------------------------

TEST_F(AboutBox, AnswerIsKeptUntilItCloses)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    Post(WM_USER + 12);
    // The answer hides the dialog; the wait ends with the box.
    ASSERT_TRUE(WaitUntil([this] { return !::IsWindowVisible(dialog); }));
    EXPECT_TRUE(run.IsRunning());
    EXPECT_TRUE(::IsWindowVisible(box));
    ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    EXPECT_EQ(run.WaitForExit(), 12);
}

TEST_F(AboutBox, FirstOfTwoAnswersIsKept)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    Post(WM_USER + 12);
    Post(WM_USER + 13);
    ::PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
    EXPECT_EQ(run.WaitForExit(), 12);
}

TEST_F(AboutBox, AnswerNumbersSentToTheBoxAreNoAnswers)
{
    const HWND box = OpenBox();
    ASSERT_NE(box, nullptr);
    ::SendMessageW(box, WM_USER + 12, 0, 0);
    EXPECT_TRUE(::IsWindowVisible(box));
    ::PostMessageW(box, WM_COMMAND, IDOK, 0);
    ExpectDialogAsBefore();
}

TEST_F(AboutBox, QuitMessageEndsBothLoops)
{
    ASSERT_NE(OpenBox(), nullptr);
    ::PostThreadMessageW(run.MainThreadId(), WM_QUIT, 0, 0);
    EXPECT_EQ(run.WaitForExit(), -1);
}

} // namespace
