#include "target/WindowActivation.h"

#include "tests/scripted/ScriptedPlatform.h"

namespace
{

constexpr DWORD kTargetThread = 9;
constexpr DWORD kForegroundThread = 7;

const Calls kLookedAt = {"GetWindowLongW(target, GWL_STYLE)", "GetForegroundWindow()"};
const Calls kThreadsAsked = kLookedAt + Calls{"GetWindowThreadProcessId(target, NULL)",
                                              "GetWindowThreadProcessId(foreground, NULL)"};
const Calls kBroughtForward = {"SetForegroundWindow(target)"};
const Calls kAttached = {"AttachThreadInput(7, 9, TRUE)", "SetForegroundWindow(target)",
                         "AttachThreadInput(7, 9, FALSE)"};
const Calls kRefused = {"AttachThreadInput(7, 9, TRUE)", "Sleep(0)"};
const Calls kShown = {"IsIconic(target)", "ShowWindow(target, SW_SHOW)"};
const Calls kRestored = {"IsIconic(target)", "ShowWindow(target, SW_RESTORE)"};

class WindowActivation : public testing::Test
{
protected:
    WindowActivation() { m_platform.foreground = m_foreground; }

    ScriptedWindow& Target() { return m_platform.Window(m_target); }

    testing::AssertionResult ActivationMakes(const Calls& calls)
    {
        ActivateTarget(m_target);
        return m_platform.Made(calls);
    }

    ScriptedPlatform m_platform;
    HWND m_foreground = m_platform.AddWindow({.name = "foreground", .thread = kForegroundThread});
    HWND m_target = m_platform.AddWindow({.name = "target", .thread = kTargetThread});
};

TEST_F(WindowActivation, HiddenTargetIsLeftAlone)
{
    Target().style = ~WS_VISIBLE;
    EXPECT_TRUE(ActivationMakes({"GetWindowLongW(target, GWL_STYLE)"}));
}

TEST_F(WindowActivation, EndsWithoutAForegroundWindow)
{
    m_platform.foreground = nullptr;
    EXPECT_TRUE(ActivationMakes(kLookedAt));
}

TEST_F(WindowActivation, TargetInFrontIsLeftAlone)
{
    m_platform.foreground = m_target;
    EXPECT_TRUE(ActivationMakes(kLookedAt));
}

TEST_F(WindowActivation, MinimisedTargetInFrontStaysMinimised)
{
    m_platform.foreground = m_target;
    Target().minimised = true;
    EXPECT_TRUE(ActivationMakes(kLookedAt));
}

TEST_F(WindowActivation, EndsWhenTheTargetsThreadIsUnknown)
{
    Target().thread = 0;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked));
}

TEST_F(WindowActivation, EndsWhenTheForegroundThreadIsUnknown)
{
    m_platform.Window(m_foreground).thread = 0;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked));
}

TEST_F(WindowActivation, EndsWhenBothThreadsAreUnknown)
{
    Target().thread = 0;
    m_platform.Window(m_foreground).thread = 0;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked));
}

TEST_F(WindowActivation, SameThreadNeedsNoAttachment)
{
    Target().thread = kForegroundThread;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kBroughtForward + kShown));
}

TEST_F(WindowActivation, MinimisedTargetOfTheSameThreadIsRestored)
{
    Target().thread = kForegroundThread;
    Target().minimised = true;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kBroughtForward + kRestored));
}

TEST_F(WindowActivation, ForegroundThreadIsAttachedToTheTargets)
{
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kAttached + kShown));
}

TEST_F(WindowActivation, MinimisedTargetIsRestoredInFront)
{
    Target().minimised = true;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kAttached + kRestored));
}

// The usual case: the wait dialog has just come to the front, so it is this process's own thread
// that owns the foreground and is attached.
TEST_F(WindowActivation, OwnThreadIsAttachedWhileItOwnsTheForeground)
{
    const DWORD own = ::GetCurrentThreadId();
    m_platform.Window(m_foreground).thread = own;
    const std::string threads = "AttachThreadInput(" + std::to_string(own) + ", 9, ";
    EXPECT_TRUE(ActivationMakes(
        kThreadsAsked +
        Calls{threads + "TRUE)", "SetForegroundWindow(target)", threads + "FALSE)"} + kShown));
}

TEST_F(WindowActivation, ThirdAttemptSucceeds)
{
    m_platform.attachRefusals = 2;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kRefused + kRefused + kAttached + kShown));
}

TEST_F(WindowActivation, FifthAttemptSucceeds)
{
    m_platform.attachRefusals = 4;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kRefused + kRefused + kRefused + kRefused +
                                kAttached + kShown));
}

TEST_F(WindowActivation, AfterFiveRefusalsComesForwardWithoutAttachment)
{
    m_platform.attachRefusals = 5;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kRefused + kRefused + kRefused + kRefused +
                                kRefused + kBroughtForward + kShown));
}

TEST_F(WindowActivation, MinimisedTargetIsRestoredAfterFiveRefusalsToo)
{
    m_platform.attachRefusals = 5;
    Target().minimised = true;
    EXPECT_TRUE(ActivationMakes(kThreadsAsked + kRefused + kRefused + kRefused + kRefused +
                                kRefused + kBroughtForward + kRestored));
}

} // namespace
