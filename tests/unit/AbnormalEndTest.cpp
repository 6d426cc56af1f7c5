#include "app/AbnormalEnd.h"

#include "app/QuilletApp.h"
#include "tests/unit/DeathTest.h"
#include "tests/unit/WindowFixture.h"

namespace
{

constexpr UINT kThrow = WM_APP + 1;

class ThrowingWindow : public PlainWindow
{
protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == kThrow)
        {
            AfxThrowMemoryException();
        }
        return PlainWindow::WindowProc(message, wParam, lParam);
    }
};

/// GoogleTest would catch what leaves the statement of a death test.
void NobodyCatches(void (*raise)()) noexcept
{
    raise();
}

testing::ExitedWithCode EndedAbnormally()
{
    return testing::ExitedWithCode(static_cast<int>(kAbnormalEndExitCode));
}

TEST(AbnormalEnd, CodeIsNoResultCode)
{
    constexpr int kCode = static_cast<int>(kAbnormalEndExitCode);
    EXPECT_TRUE(kCode < -3 || kCode > 4096) << kCode;
}

using AbnormalEndDeathTest = DeathTest;

TEST_F(AbnormalEndDeathTest, UncaughtExceptionEndsWithTheCode)
{
    EXPECT_EXIT(
        {
            EndAbnormallyOnUncaughtException();
            NobodyCatches(&AfxThrowInvalidArgException);
        },
        EndedAbnormally(), "");
}

TEST_F(AbnormalEndDeathTest, ApplicationObjectArrangesForIt)
{
    EXPECT_EXIT(
        {
            CQuilletApp app;
            NobodyCatches(&AfxThrowMemoryException);
        },
        EndedAbnormally(), "");
}

// ... and so that it does not cross the platform's frames.
TEST_F(AbnormalEndDeathTest, ExceptionOfAWindowProcedureEndsTheProcess)
{
    EXPECT_EXIT(
        {
            CQuilletApp app;
            ThrowingWindow window;
            window.SendMessage(kThrow);
        },
        EndedAbnormally(), "");
}

} // namespace
