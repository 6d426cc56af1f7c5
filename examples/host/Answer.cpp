#include "examples/host/Answer.h"

#include <string_view>

namespace
{

constexpr wchar_t kDialogClass[] = L"#32770";

// A handle from a message may be any number, and one that was a dialog may be another window since.
bool IsDialog(HWND window)
{
    wchar_t name[16] = L"";
    GetClassNameW(window, name, 16);
    return name == std::wstring_view(kDialogClass);
}

} // namespace

HWND FindWaitDialog(HWND after)
{
    return FindWindowExW(nullptr, after, kDialogClass, L"Orvane Anwendungsweiterleitung");
}

bool PostAnswer(HWND dialog, int code)
{
    // Posted, never sent: an answer that is sent from inside the WM_COPYDATA handler reaches the
    // dialog before it waits, and is lost.
    return IsDialog(dialog) &&
           PostMessageW(dialog, WM_USER + static_cast<UINT>(code), 0, 0) != FALSE;
}
