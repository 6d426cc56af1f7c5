#pragma once

#include "tests/support/QuilletRun.h"

/// Waits until the dialog's thread has taken everything out of its queue that was posted to it
/// before this call: a message posted before it has had its effect. Also shows that a message loop
/// is running, so that from now on the dialog may be *sent* what ends it. The dialog may be any
/// with a push button IDCANCEL or IDOK. False when it never does.
bool WaitForPostedMessages(HWND dialog);

/// The same for keys and mouse: the dialog's button is pressed with the mouse, which shows that all
/// input before it has been handled, and the mouse is released elsewhere, so that it is no click.
/// Leaves the focus on the button.
bool WaitForInput(HWND dialog);

/// The process's box of the platform's dialog class with this caption (null: any), once it is shown
/// and its loop handles what is posted. Null when that never is.
HWND WaitForBox(DWORD processId, const wchar_t* caption);

/// Opens the dialog's system menu by the command that Alt+Space gives, after all input before, and
/// waits until it is open; the keys themselves are not used, since Alt may be let go in between
/// (see RealInput.h) and space alone presses the button. False when it does not open.
bool OpenSystemMenu(HWND dialog);
bool IsInMenuMode(HWND dialog);

/// Whether the run still waits for its answer: running, its dialog shown (or minimised) and
/// enabled.
bool IsWaiting(const QuilletRun& run, HWND dialog);
