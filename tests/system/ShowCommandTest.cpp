// Callers that want the program's window hidden, minimised or otherwise: scripts say so when they
// start it, and the platform may obey them when the process shows its first window.
#include "tests/support/DialogProbe.h"
#include "tests/support/ExpectedDifference.h"

#include <gtest/gtest.h>

namespace
{

class ShowCommand : public testing::TestWithParam<WORD>
{
};

TEST_P(ShowCommand, OfTheCallerDoesNotHideTheDialogUnderWine)
{
    const QuilletRun run(L"", GetParam());
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    const bool shown = ::IsWindowVisible(dialog) && !::IsIconic(dialog);
    if (ExpectsAsUnderWine("show-command", "the dialog is shown",
                           shown ? "the dialog is shown" : "the dialog is not shown"))
    {
        EXPECT_TRUE(shown);
    }
    ::PostMessageW(dialog, WM_USER + 5, 0, 0);
    EXPECT_EQ(run.WaitForExit(), 5);
}

INSTANTIATE_TEST_SUITE_P(All, ShowCommand, testing::Range(WORD{SW_HIDE}, WORD{SW_MAX + 1}));

} // namespace
