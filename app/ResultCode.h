// A leaf: delivery/ below uses it as well, so it includes nothing of this project.
#pragma once

/// The messages that are a host's answer: WM_USER + n with n from 0 to 4,096.
inline constexpr unsigned kFirstAnswer = 0x400;
inline constexpr unsigned kLastAnswer = kFirstAnswer + 4096;

/// A run's outcome, which callers read as the process's exit code. Beside these, it is the n of the
/// host's answer.
enum ResultCode : int
{
    /// The copy-data message was accepted; the host's answer may replace it.
    kResultAccepted = 0,
    /// Cancelled by the user, help shown, or nothing else stored.
    kResultCancelled = -1,
    kResultWindowNotFound = -2,
    /// The notification call failed, or the host refused the copy-data message.
    kResultSendFailed = -3,
};
