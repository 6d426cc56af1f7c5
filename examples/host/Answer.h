#pragma once

#include <windows.h>

// The dialog of a caller that waits, found by its class and caption: the topmost, or the next one
// below `after`; null when there is none. A notification does not tell the dialog's handle.
// (WM_COPYDATA does: it is the message's wParam.)
HWND FindWaitDialog(HWND after);

// Answers the waiting dialog with `code`, which becomes the exit code that the caller sees. False
// when the dialog no longer exists (its user has cancelled) or the window is no dialog.
//
// Codes reach from 0 to 4096. Answer with 2 or more: the system's dialog manager itself sends
// WM_USER + 0 and WM_USER + 1 to dialogs, so those two say less than they seem to.
bool PostAnswer(HWND dialog, int code);
