// A leaf: delivery/ below uses it as well, so it includes nothing of this project.
#pragma once

/// What a run stores as its outcome, and callers read as the process's exit code. Beside these, the
/// host's answer WM_USER + n is stored as n (0 to 4096).
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
