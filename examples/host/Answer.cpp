#include "examples/host/Answer.h"

HWND FindWaitDialog()
{
    return FindWindowW(nullptr, L"Orvane Anwendungsweiterleitung");
}

bool PostAnswer(HWND dialog, int code)
{
    // Posted, never sent: an answer that is sent from inside the WM_COPYDATA handler reaches the
    // dialog before it waits, and is lost.
    return PostMessageW(dialog, WM_USER + static_cast<UINT>(code), 0, 0) != FALSE;
}
