// A caller of a lower integrity level than the host's, such as a browser's sandbox.
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueHandle.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <utility>

namespace
{

/// This process's own rights at the low level; null when the platform refuses.
KernelHandle MakeLowToken()
{
    HANDLE opened = nullptr;
    ::OpenProcessToken(::GetCurrentProcess(), MAXIMUM_ALLOWED, &opened);
    const KernelHandle own(opened);
    HANDLE duplicate = nullptr;
    ::DuplicateTokenEx(own.get(), 0, nullptr, SecurityImpersonation, TokenPrimary, &duplicate);
    KernelHandle low(duplicate);
    std::array<std::byte, SECURITY_MAX_SID_SIZE> level{};
    DWORD size = level.size();
    ::CreateWellKnownSid(WinLowLabelSid, nullptr, level.data(), &size);
    TOKEN_MANDATORY_LABEL label{{level.data(), SE_GROUP_INTEGRITY}};
    const BOOL isLow =
        ::SetTokenInformation(low.get(), TokenIntegrityLevel, &label, sizeof(label) + size);
    return isLow ? std::move(low) : nullptr;
}

/// The exit code of a run at the low level; nothing when it cannot be started or does not end.
std::optional<int> RunAtLowLevel(const std::wstring& arguments)
{
    const KernelHandle low = MakeLowToken();
    std::wstring line = QuilletRun::CommandLine(arguments);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION information{};
    const BOOL started = ::CreateProcessAsUserW(low.get(), BuiltProgram(L"quillet.exe").c_str(),
                                                line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                                nullptr, &startup, &information);
    if (!started)
    {
        return std::nullopt;
    }
    const KernelHandle thread(information.hThread);
    return Process(KernelHandle(information.hProcess)).WaitForExit();
}

// The host is found either way. One that is to be reached from below has to allow the messages.
TEST(Integrity, AHostAboveTheCallerIsFoundButNotReached)
{
    const bool blocksNothing =
        ExpectsAsUnderWine("integrity-levels", "block no message",
                           "block messages from WM_USER up and texts to a higher one");
    const ScriptedHost host(UniqueHost());
    const std::wstring target = L" -nodlg -kla=" + host.ClassName();
    EXPECT_EQ(RunAtLowLevel(target + L" -copydata=abc"),
              blocksNothing ? kResultAccepted : kResultSendFailed);
    EXPECT_EQ(RunAtLowLevel(target + L" -msg=5"),
              blocksNothing ? kResultCancelled : kResultSendFailed);
    EXPECT_EQ(host.ReceivedSoFar().size(), blocksNothing ? 2u : 0u);
}

} // namespace
