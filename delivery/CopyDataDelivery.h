#pragma once

#include <afxwin.h>

#include "app/ResultCode.h"

struct SendRequest;

/// Sends the request's copy-data text to the target by WM_COPYDATA, in the encoding that the
/// request names, and waits until the target's window procedure has returned; there is no time-out.
/// `waitDialog` tells the host where to answer; null when the run has no dialog. kResultAccepted,
/// or kResultSendFailed when the target refused or is gone. Throws the framework's memory or OLE
/// exception when the text cannot be converted.
ResultCode DeliverCopyData(HWND target, const SendRequest& request, HWND waitDialog);
