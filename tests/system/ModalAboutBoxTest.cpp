// Several About boxes at once, and where they appear.
#include "res/resource.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

namespace
{

RECT RectOf(HWND window)
{
    RECT rect{};
    ::GetWindowRect(window, &rect);
    return rect;
}

/// Compares twice the centres; an odd extent leaves one pixel.
bool IsCentred(const RECT& box, const RECT& owner)
{
    return std::abs((owner.left + owner.right) - (box.left + box.right)) <= 1 &&
           std::abs((owner.top + owner.bottom) - (box.top + box.bottom)) <= 1;
}

class ModalAboutBox : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(WaitForPostedMessages(dialog));
    }

    /// The boxes that are shown.
    std::vector<HWND> Boxes() const
    {
        std::vector<HWND> boxes = FindProcessWindows(run.Id(), L"#32770", kAboutBoxCaption);
        std::erase_if(boxes, [](HWND box) { return !::IsWindowVisible(box); });
        return boxes;
    }
    void AskForBox() const { ::PostMessageW(dialog, WM_SYSCOMMAND, IDM_ABOUTBOX, 0); }
    bool WaitForBoxes(std::size_t count) const
    {
        return WaitUntil([&] { return Boxes().size() == count; });
    }
    static void Close(HWND box) { ::PostMessageW(box, WM_COMMAND, IDOK, 0); }
    /// Opens a box and closes it.
    bool ABoxAppearsCentred() const
    {
        AskForBox();
        if (!WaitForBoxes(1))
        {
            return false;
        }
        const HWND box = Boxes().front();
        const bool centred =
            WaitUntil([&] { return IsCentred(RectOf(box), RectOf(dialog)); }, kRepeatHeldAfter);
        Close(box);
        return WaitForBoxes(0) && centred;
    }

    const QuilletRun run{L""};
    const HWND dialog = run.WaitForWaitingDialog();
};

// With the vendor's framework, each box enables the dialog when it closes.
#ifndef _MSC_VER
/// Which of the two is closed first; both orders leave the dialog disabled until the other one
/// goes.
class TwoAboutBoxes : public ModalAboutBox, public testing::WithParamInterface<bool>
{
};

TEST_P(TwoAboutBoxes, KeepTheDialogDisabledUntilBothAreClosed)
{
    AskForBox();
    ASSERT_TRUE(WaitForBoxes(1));
    const HWND earlier = Boxes().front();
    AskForBox();
    ASSERT_TRUE(WaitForBoxes(2));
    std::vector<HWND> boxes = Boxes();
    if ((boxes.front() == earlier) != GetParam())
    {
        std::swap(boxes.front(), boxes.back());
    }

    Close(boxes.front());
    ASSERT_TRUE(WaitForBoxes(1));
    // After whatever closing the box has led to.
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    EXPECT_FALSE(::IsWindowEnabled(dialog));
    EXPECT_TRUE(::IsWindowEnabled(boxes.back()));

    Close(boxes.back());
    ASSERT_TRUE(WaitForBoxes(0));
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    EXPECT_TRUE(IsWaiting(run, dialog));
    ::PostMessageW(dialog, WM_USER + 7, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 7);
}

INSTANTIATE_TEST_SUITE_P(ModalAboutBox, TwoAboutBoxes, testing::Bool(), [](const auto& order) {
    return order.param ? "EarlierFirst" : "LaterFirst";
});
#endif

TEST_F(ModalAboutBox, AnswerIsKeptUntilTwoOfThemAreClosed)
{
    AskForBox();
    AskForBox();
    ASSERT_TRUE(WaitForBoxes(2));
    ::PostMessageW(dialog, WM_USER + 12, 0, 0);
    ASSERT_TRUE(WaitUntil([this] { return !::IsWindowVisible(dialog); }));
    EXPECT_TRUE(run.IsRunning());
    for (const HWND box : Boxes())
    {
        Close(box);
    }
    EXPECT_EQ(run.WaitForExit(), 12);
}

// Where the window manager put the dialog at first can arrive late, and move it while a box
// appears; then the next box shows it.
TEST_F(ModalAboutBox, AppearsOverTheDialogsCentre)
{
    ::SetWindowPos(dialog, nullptr, 320, 280, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_TRUE(WaitUntil([this] { return ABoxAppearsCentred(); }));
}

// The dialog itself appears in the screen's corner, and is narrower than the box.
TEST_F(ModalAboutBox, AppearsInsideTheWorkArea)
{
    RECT work{};
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    ::SetWindowPos(dialog, nullptr, work.left, work.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    AskForBox();
    ASSERT_TRUE(WaitForBoxes(1));
    // Wine places the frame first, and the window manager then puts the frame where the box was
    // meant to be.
    EXPECT_TRUE(WaitUntil([&] {
        const RECT box = RectOf(Boxes().front());
        return box.left >= work.left && box.top >= work.top && box.right <= work.right &&
               box.bottom <= work.bottom;
    }));
}

} // namespace
