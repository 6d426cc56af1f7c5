#pragma once

#include <windows.h>

/// One empty mouse input. Who has sent the last input may set the foreground window and the lock's
/// timeout; others are refused. False when the platform does not take it.
bool SendEmptyInput();

/// For so many milliseconds after the user's last input, programs that the user does not work with
/// are refused the foreground. One number for the whole session, 0: never.
DWORD ForegroundLockTimeout();

/// Sets that timeout while it lives; what was found comes back with its end. Never written to the
/// user's profile.
class ForegroundLock
{
public:
    explicit ForegroundLock(DWORD timeout);
    /// Complains on the standard error stream when what was found does not come back.
    ~ForegroundLock();
    ForegroundLock(const ForegroundLock&) = delete;
    ForegroundLock& operator=(const ForegroundLock&) = delete;

    DWORD Found() const { return m_found; }
    /// Puts back what was found, before the object's end, and gives whether it is back.
    bool Restore() const;

private:
    DWORD m_found;
};

/// Whether programs may take the foreground. If not yet, lifts the lock for as long as this process
/// lives. False when the lock stays.
bool ForegroundIsFree();
