// The least that waiting for an answer can cost: a dialog with a button, a message loop, the answer
// as exit code, without a run-time library.
#include <windows.h>

namespace
{

// A template without controls, in the classic form; the button is added by hand.
struct
{
    DLGTEMPLATE header{WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME,
                       WS_EX_APPWINDOW,
                       0,
                       0,
                       0,
                       185,
                       78};
    WORD menu = 0;
    WORD windowClass = 0;
    WCHAR title[2]{L'B', 0};
} dialogTemplate;

INT_PTR CALLBACK DialogProc(HWND, UINT message, WPARAM, LPARAM)
{
    constexpr UINT kHighestAnswer = 4096;
    if (message - WM_USER <= kHighestAnswer)
    {
        ::PostQuitMessage(static_cast<int>(message - WM_USER));
    }
    return message == WM_INITDIALOG;
}

} // namespace

extern "C" [[noreturn]] void Start()
{
    const HWND dialog = ::CreateDialogIndirectParamW(
        ::GetModuleHandleW(nullptr), &dialogTemplate.header, nullptr, &DialogProc, 0);
    const HWND button =
        ::CreateWindowExW(0, L"BUTTON", L"Abbrechen", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 80, 80,
                          90, 26, dialog, reinterpret_cast<HMENU>(IDCANCEL), nullptr, nullptr);
    ::SetFocus(button);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        ::DispatchMessageW(&message);
    }
    ::DestroyWindow(dialog);
    ::ExitProcess(static_cast<UINT>(message.wParam));
}
