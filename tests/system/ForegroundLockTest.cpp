// What the platform's foreground lock makes of a request. To be run last and by itself: it changes
// what holds for the whole session.
#include "tests/support/ForegroundLock.h"

#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/HostProcess.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

namespace
{

// Windows may refuse the foreground here, since neither the program nor who started it is in front,
// and flash the target's taskbar button instead; Wine refuses nobody. The request goes out either
// way, with the same exit code. Here nobody asks with an empty input before, for that is not
// refused.
TEST(ForegroundLock, RefusedOrNotTheRequestGoesOut)
{
    const ScriptedHost target(UniqueHost());
    ASSERT_TRUE(target.WaitForFocus());
    const std::wstring name = UniqueName(L"Cover");
    const HostProcess cover(name, name);
    // Where the lock stays, another program is in front, which does as well.
    ASSERT_TRUE(!ForegroundIsFree() || ActInFront(cover.Window(), [] { PressKey(VK_CONTROL); }));

    constexpr DWORD kUsual = 200'000; // milliseconds
    const ForegroundLock lock(kUsual);
    ASSERT_NE(ForegroundLockTimeout(), 0u);
    MinimisedDialogGetsNoMessageByItself();
    const QuilletRun run(L" -nodlg -activatewindow -msg=5 -kla=" + target.ClassName());
    ::PostMessageW(run.WaitForDialog(), WM_NULL, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
    const auto received = target.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 5u);
    ExpectsAsUnderWine("foreground-lock", "there is none",
                       ::GetForegroundWindow() == target.Handle()
                           ? "the target came to the front all the same"
                           : "the target was refused the foreground");
    EXPECT_TRUE(lock.Restore());
}

} // namespace
