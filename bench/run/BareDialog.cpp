// The least that waiting for an answer can cost: a dialog with the same contents, a message loop,
// the answer as exit code, without a run-time library.
#include <windows.h>

namespace
{

// A template without controls, in the classic form; they are added by hand.
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

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM, LPARAM)
{
    constexpr UINT kHighestAnswer = 4096;
    if (message - WM_USER <= kHighestAnswer)
    {
        ::EndDialog(dialog, 0);
        ::PostQuitMessage(static_cast<int>(message - WM_USER));
    }
    return message == WM_INITDIALOG;
}

HWND AddControl(HWND dialog, const WCHAR* windowClass, const WCHAR* text, DWORD style, int y,
                INT_PTR id)
{
    return ::CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, 80, y, 180, 26,
                             dialog, reinterpret_cast<HMENU>(id), nullptr, nullptr);
}

void Decorate(HWND dialog)
{
    constexpr UINT_PTR kAboutCommand = 16;
    const HMENU menu = ::GetSystemMenu(dialog, FALSE);
    ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    ::AppendMenuW(menu, MF_STRING, kAboutCommand, L"Info");
    const auto icon = reinterpret_cast<LPARAM>(::LoadIconW(nullptr, IDI_APPLICATION));
    ::SendMessageW(dialog, WM_SETICON, ICON_BIG, icon);
    ::SendMessageW(dialog, WM_SETICON, ICON_SMALL, icon);
}

} // namespace

extern "C" [[noreturn]] void Start()
{
    const HWND dialog = ::CreateDialogIndirectParamW(
        ::GetModuleHandleW(nullptr), &dialogTemplate.header, nullptr, &DialogProc, 0);
    AddControl(dialog, L"STATIC", L"Warte", 0, 20, -1);
    const HWND button = AddControl(dialog, L"BUTTON", L"Abbrechen", WS_TABSTOP, 80, IDCANCEL);
    Decorate(dialog);
    ::SetFocus(button);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        ::DispatchMessageW(&message);
    }
    ::DestroyWindow(dialog);
    ::ExitProcess(static_cast<UINT>(message.wParam));
}
