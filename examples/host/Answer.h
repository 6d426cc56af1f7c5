#pragma once

#include <windows.h>

// The dialog of a caller that waits after a notification, found by its caption; null when nobody
// waits. A notification does not tell the dialog's handle. (WM_COPYDATA does: it is the message's
// wParam.)
HWND FindWaitDialog();

// Answers the waiting dialog with `code`, which becomes the exit code that the caller sees. False
// when the dialog no longer exists: its user has cancelled.
//
// Codes reach from 0 to 4096. Answer with 2 or more: the system's dialog manager itself sends
// WM_USER + 0 and WM_USER + 1 to dialogs, so those two say less than they seem to.
bool PostAnswer(HWND dialog, int code);
