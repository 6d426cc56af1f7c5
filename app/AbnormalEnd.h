#pragma once

/// The process's exit code after an exception that nobody caught: no result code, so that no caller
/// can take it for one. It is the code by which the platform itself knows an uncaught C++
/// exception. (The run-time library's own abort() would end with 3, which reads as the host's
/// answer 3.)
inline constexpr unsigned kAbnormalEndExitCode = 0xE06D7363;

/// Lets an uncaught exception end the process at once with kAbnormalEndExitCode, without a dialog.
void EndAbnormallyOnUncaughtException() noexcept;
