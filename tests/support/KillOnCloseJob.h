#pragma once

#include <windows.h>

/// A job object without a name that takes all processes in it along when its last handle is closed,
/// as the end of the process that holds it does, whatever kind of end that is. The caller owns the
/// handle; null when there is none to be had.
inline HANDLE MakeKillOnCloseJob()
{
    const HANDLE job = ::CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
    return job;
}
