#include "tests/kit/TestConditions.h"

#include <cstdlib>
#include <optional>

namespace
{

std::optional<ForegroundLock> foregroundLock;
UINT foundCodePage = 0;

/// Also called when the user breaks off; the platform's own handler then ends the process. A lock
/// that does not come back is named on the standard error stream.
BOOL WINAPI Restore(DWORD)
{
    foregroundLock.reset();
    ::SetConsoleOutputCP(foundCodePage);
    return FALSE;
}

} // namespace

const ForegroundLock& SetTestConditions()
{
    foundCodePage = ::GetConsoleOutputCP();
    foregroundLock.emplace(0);
    ::SetConsoleCtrlHandler(&Restore, TRUE);
    std::atexit([] { Restore(0); });
    ::SetConsoleOutputCP(::GetOEMCP());
    ::SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED);
    return *foregroundLock;
}
