#pragma once

/// The process's exit code after an exception that nobody caught. Its 32 bits are no result code,
/// and callers on Windows see all of them. It is the code by which the platform itself knows an
/// uncaught C++ exception. (The run-time library's own abort() would end with 3, which reads as the
/// host's answer 3.) A caller that sees the low eight bits only, such as a Unix shell in front of
/// Wine, reads it as 99, which is the host's answer 99 as well.
inline constexpr unsigned kAbnormalEndExitCode = 0xE06D7363;

/// Lets an uncaught exception end the process at once with kAbnormalEndExitCode, without a dialog.
void EndAbnormallyOnUncaughtException() noexcept;
