// One request from the command line to the exit code, with the real program and real host windows.
#include "app/ResultCode.h"
#include "tests/support/HostWindow.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

namespace
{

TEST(RunFlow, NoDialogAloneEndsAtOnceWithMinusOne)
{
    EXPECT_EQ(RunQuillet(L" -nodlg"), kResultCancelled);
}

TEST(RunFlow, NotificationArrivesAndEndsWithMinusOne)
{
    const HostWindow host({UniqueName(L"Host"), L"Host"});
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=7 -wparam=-1 -lparam=0x10 -kla=" + host.ClassName()),
              kResultCancelled);
    const auto received = host.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 7u);
    EXPECT_EQ(received[0].wParam, static_cast<WPARAM>(-1));
    EXPECT_EQ(received[0].lParam, 0x10);
}

TEST(RunFlow, AcceptedCopyDataEndsWithTheHostsAnswer)
{
    const HostWindow host({UniqueName(L"Host"), L"Host"}, AnswerWith(42));
    EXPECT_EQ(RunQuillet(L" -copydata=abc -kla=" + host.ClassName()), 42);
}

} // namespace
