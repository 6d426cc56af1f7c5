// The stack protector's guard value and its alarm. The compiler's own support library has both, but
// fills the guard through the cryptography service, which costs every start the loading of further
// DLLs.
#include <windows.h>

#include <bit>
#include <cstdint>

extern "C" {
/// What the compiler's checks compare with. The highest byte is set, so that an unset guard is
/// never compared.
std::uintptr_t __stack_chk_guard = UINTPTR_MAX;

[[noreturn]] void __stack_chk_fail();
}

namespace
{

/// The platform's own code for this fault; no result code of a run.
constexpr UINT kStackBufferOverrun = 0xC0000409;

/// Mixes what an attacker cannot know beforehand: times, the process's identity, and an address
/// that differs from start to start. The factor spreads what differs in few bits over all.
std::uintptr_t UnpredictableValue()
{
    FILETIME time;
    ::GetSystemTimeAsFileTime(&time);
    LARGE_INTEGER counter;
    ::QueryPerformanceCounter(&counter);
    const auto ticks = static_cast<std::uintptr_t>(counter.QuadPart) ^ ::GetCurrentProcessId();
    return ticks * 0x9E3779B97F4A7C15 ^ std::bit_cast<std::uintptr_t>(time) ^
           reinterpret_cast<std::uintptr_t>(&time);
}

/// Runs before every other initialiser, so that no guarded function is active while the guard
/// changes; this one must not be guarded itself. The zero lowest byte stops a text that is copied
/// over the guard.
__attribute__((constructor(101), no_stack_protector)) void SetGuard()
{
    constexpr std::uintptr_t kLowestByte = 0xFF;
    __stack_chk_guard = UnpredictableValue() & ~kLowestByte;
}

} // namespace

void __stack_chk_fail()
{
    ::TerminateProcess(::GetCurrentProcess(), kStackBufferOverrun);
    __builtin_trap();
}
