#include "tests/support/ForegroundLock.h"

#include <iostream>

namespace
{

/// Whether the timeout is that now, set or found.
bool Set(DWORD timeout)
{
    if (ForegroundLockTimeout() != timeout)
    {
        SendEmptyInput();
        // The number itself stands where other settings have an address.
        ::SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0,
                                reinterpret_cast<void*>(static_cast<ULONG_PTR>(timeout)), 0);
    }
    return ForegroundLockTimeout() == timeout;
}

} // namespace

bool SendEmptyInput()
{
    INPUT nothing{};
    nothing.type = INPUT_MOUSE;
    return ::SendInput(1, &nothing, sizeof(nothing)) == 1;
}

DWORD ForegroundLockTimeout()
{
    DWORD timeout = 0;
    ::SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &timeout, 0);
    return timeout;
}

ForegroundLock::ForegroundLock(DWORD timeout) : m_found(ForegroundLockTimeout())
{
    Set(timeout);
}

ForegroundLock::~ForegroundLock()
{
    if (!Restore())
    {
        std::cerr << "The foreground lock timeout is " << ForegroundLockTimeout()
                  << " ms now; it was " << m_found << " ms\n";
    }
}

bool ForegroundLock::Restore() const
{
    return Set(m_found);
}

bool ForegroundIsFree()
{
    static const ForegroundLock lifted(0);
    return ForegroundLockTimeout() == 0;
}
