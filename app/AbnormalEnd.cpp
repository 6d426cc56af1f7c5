#include "app/AbnormalEnd.h"

#include <windows.h>

#include <exception>

namespace
{

void EndAbnormally()
{
    // Nothing is cleaned up: the run has no state that outlives the process.
    ::TerminateProcess(::GetCurrentProcess(), kAbnormalEndExitCode);
}

} // namespace

void EndAbnormallyOnUncaughtException() noexcept
{
    std::set_terminate(&EndAbnormally);
}

#ifdef __GLIBCXX__
/// What this library does until a handler is set. Its own one would print the exception's name, and
/// brings 48 KB of code along that can read such names.
void __gnu_cxx::__verbose_terminate_handler()
{
    EndAbnormally();
}
#endif
