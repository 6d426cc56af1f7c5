#include "app/AbnormalEnd.h"

#include <windows.h>

#include <cstdlib>
#include <exception>

namespace
{

[[noreturn]] void EndAbnormally()
{
    // Nothing is cleaned up: the run has no state that outlives the process.
    ::TerminateProcess(::GetCurrentProcess(), kAbnormalEndExitCode);
    std::abort();
}

} // namespace

void EndAbnormallyOnUncaughtException() noexcept
{
    std::set_terminate(&EndAbnormally);
}
