// Fakes: the dialogs, the message box, the system menu, the icon and its painting; and the command
// line.
#include "tests/scripted/FakeHandles.h"
#include "tests/scripted/Recording.h"

#include <cstdint>
#include <string>
#include <utility>

HWND WINAPI FakeCreateDialogParamW(HINSTANCE, LPCWSTR name, HWND owner, DLGPROC procedure,
                                   LPARAM parameter)
{
    const auto idTemplate = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name));
    Record("CreateDialogParamW", std::int64_t{idTemplate}, owner);
    if (!Platform().dialogsCanBeMade)
    {
        return nullptr;
    }
    const HWND dialog = Platform().MakeDialog(idTemplate);
    Platform().answerToInitDialog = procedure(dialog, WM_INITDIALOG, 0, parameter);
    return dialog;
}

BOOL WINAPI FakeEndDialog(HWND dialog, INT_PTR result)
{
    Record("EndDialog", dialog, std::int64_t{result});
    return TRUE;
}

BOOL WINAPI FakeDestroyWindow(HWND window)
{
    Record("DestroyWindow", window);
    Platform().DestroyWindow(window);
    return TRUE;
}

BOOL WINAPI FakeEnableWindow(HWND window, BOOL enable)
{
    Record("EnableWindow", window, TrueOrFalse(enable));
    return FALSE;
}

BOOL WINAPI FakeIsWindowEnabled(HWND)
{
    return TRUE;
}

HWND WINAPI FakeGetAncestor(HWND, UINT)
{
    return nullptr;
}

/// Only owners are asked for.
HWND WINAPI FakeGetWindow(HWND window, UINT)
{
    return Platform().Window(window).owner;
}

HMONITOR WINAPI FakeMonitorFromWindow(HWND window, DWORD)
{
    Platform().onScreenOf = window;
    return nullptr;
}

/// The only value that anybody sets here is the window's procedure.
LONG_PTR WINAPI FakeSetWindowLongPtrW(HWND window, int, LONG_PTR value)
{
    return reinterpret_cast<LONG_PTR>(
        std::exchange(Platform().Window(window).procedure, reinterpret_cast<WNDPROC>(value)));
}

LRESULT WINAPI FakeCallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam,
                                   LPARAM lParam)
{
    return procedure(window, message, wParam, lParam);
}

int WINAPI FakeMessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type)
{
    Record("MessageBoxW", owner, std::string("text"), Quoted(caption), Hexadecimal(type));
    Platform().messageBoxText = text;
    return IDOK;
}

BOOL WINAPI FakeGetGUIThreadInfo(DWORD thread, PGUITHREADINFO info)
{
    EXPECT_EQ(thread, ::GetCurrentThreadId());
    EXPECT_EQ(info->cbSize, sizeof(*info));
    info->hwndMenuOwner = Platform().menuOwner;
    info->hwndMoveSize = Platform().moving;
    return TRUE;
}

HMENU WINAPI FakeGetSystemMenu(HWND window, BOOL revert)
{
    Record("GetSystemMenu", window, TrueOrFalse(revert));
    return Platform().hasSystemMenu ? kSystemMenu : nullptr;
}

BOOL WINAPI FakeAppendMenuW(HMENU menu, UINT flags, UINT_PTR id, LPCWSTR text)
{
    Record("AppendMenuW", std::string(menu == kSystemMenu ? "system menu" : "?"),
           Hexadecimal(flags), static_cast<std::int64_t>(id), Quoted(text));
    return TRUE;
}

/// With no room for the text, the platform gives a pointer to it.
int WINAPI FakeLoadStringW(HINSTANCE, UINT id, LPWSTR buffer, int capacity)
{
    Record("LoadStringW", std::int64_t{id}, std::int64_t{capacity});
    const std::wstring& text = Platform().aboutText;
    *reinterpret_cast<LPCWSTR*>(buffer) = text.c_str();
    return static_cast<int>(text.size());
}

HICON WINAPI FakeLoadIconW(HINSTANCE, LPCWSTR name)
{
    Record("LoadIconW", static_cast<std::int64_t>(reinterpret_cast<ULONG_PTR>(name)));
    return Platform().Icon();
}

int WINAPI FakeGetSystemMetrics(int index)
{
    return index == SM_CXICON   ? Platform().iconSize.cx
           : index == SM_CYICON ? Platform().iconSize.cy
                                : 0;
}

/// Not at the origin: only the size may count.
BOOL WINAPI FakeGetClientRect(HWND, LPRECT rect)
{
    const SIZE size = Platform().clientSize;
    *rect = {5, 7, 5 + size.cx, 7 + size.cy};
    return TRUE;
}

HDC WINAPI FakeBeginPaint(HWND window, LPPAINTSTRUCT paint)
{
    Record("BeginPaint", window);
    paint->hdc = kPaintContext;
    return paint->hdc;
}

BOOL WINAPI FakeEndPaint(HWND window, const PAINTSTRUCT*)
{
    Record("EndPaint", window);
    return TRUE;
}

BOOL WINAPI FakeDrawIcon(HDC context, int x, int y, HICON icon)
{
    Record("DrawIcon", std::string(context == kPaintContext ? "dc" : "?"), std::int64_t{x},
           std::int64_t{y}, std::string(icon == Platform().Icon() ? "icon" : "?"));
    return TRUE;
}

LPWSTR WINAPI FakeGetCommandLineW()
{
    return Platform().commandLine.data();
}
