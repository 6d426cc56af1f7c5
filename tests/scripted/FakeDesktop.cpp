// Fakes: how the run finds its target and brings it to the foreground.
#include "tests/scripted/Recording.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace
{

/// Writes as much as fits, as the platform does. The record says when the buffer came with
/// something in it.
int Query(const char* name, HWND window, const std::wstring& text, wchar_t* buffer, int capacity)
{
    const bool zeroed = static_cast<std::size_t>(std::count(buffer, buffer + capacity, L'\0')) ==
                        static_cast<std::size_t>(capacity);
    Record(name, window, std::string(zeroed ? "zeroed buffer" : "USED BUFFER"),
           std::int64_t{capacity});
    if (Platform().Window(window).dying)
    {
        return 0;
    }
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity) - 1);
    buffer[text.copy(buffer, length)] = L'\0';
    return static_cast<int>(length);
}

std::string NameOfShow(int command)
{
    switch (command)
    {
    case SW_SHOWNORMAL:
        return "SW_SHOWNORMAL";
    case SW_SHOWMINIMIZED:
        return "SW_SHOWMINIMIZED";
    case SW_SHOW:
        return "SW_SHOW";
    case SW_RESTORE:
        return "SW_RESTORE";
    default:
        return std::to_string(command);
    }
}

} // namespace

HWND WINAPI FakeFindWindowW(LPCWSTR windowClass, LPCWSTR text)
{
    Record("FindWindowW", Quoted(windowClass), Quoted(text));
    return Platform().found;
}

BOOL WINAPI FakeEnumWindows(WNDENUMPROC callback, LPARAM context)
{
    Record("EnumWindows");
    const auto windows = Platform().ZOrder();
    for (const HWND window : windows)
    {
        if (!callback(window, context))
        {
            return FALSE;
        }
    }
    return TRUE;
}

int WINAPI FakeGetWindowTextW(HWND window, LPWSTR buffer, int capacity)
{
    return Query("GetWindowTextW", window, Platform().Window(window).text, buffer, capacity);
}

UINT WINAPI FakeRealGetWindowClassW(HWND window, LPWSTR buffer, UINT capacity)
{
    return static_cast<UINT>(Query("RealGetWindowClassW", window,
                                   Platform().Window(window).windowClass, buffer,
                                   static_cast<int>(capacity)));
}

LONG WINAPI FakeGetWindowLongW(HWND window, int index)
{
    Record("GetWindowLongW", window, std::string(index == GWL_STYLE ? "GWL_STYLE" : "?"));
    return Platform().Window(window).style;
}

HWND WINAPI FakeGetForegroundWindow()
{
    Record("GetForegroundWindow");
    return Platform().foreground;
}

DWORD WINAPI FakeGetWindowThreadProcessId(HWND window, LPDWORD process)
{
    Record("GetWindowThreadProcessId", window, std::string(process == nullptr ? "NULL" : "?"));
    return Platform().Window(window).thread;
}

BOOL WINAPI FakeAttachThreadInput(DWORD thread, DWORD toThread, BOOL attach)
{
    Record("AttachThreadInput", std::int64_t{thread}, std::int64_t{toThread}, TrueOrFalse(attach));
    return !attach || Platform().attachRefusals-- <= 0;
}

void WINAPI FakeSleep(DWORD milliseconds)
{
    Record("Sleep", std::int64_t{milliseconds});
}

BOOL WINAPI FakeSetForegroundWindow(HWND window)
{
    Record("SetForegroundWindow", window);
    return FALSE;
}

BOOL WINAPI FakeIsIconic(HWND window)
{
    Record("IsIconic", window);
    return Platform().Window(window).minimised;
}

BOOL WINAPI FakeShowWindow(HWND window, int command)
{
    Record("ShowWindow", window, NameOfShow(command));
    return FALSE;
}
