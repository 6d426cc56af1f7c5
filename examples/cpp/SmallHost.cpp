// The smallest host: takes texts (UTF-16), shows them in its title, and answers with 2.
//   cl /std:c++17 /utf-8 SmallHost.cpp user32.lib
//   x86_64-w64-mingw32-g++ -std=c++17 -municode -mwindows -static SmallHost.cpp -o SmallHost.exe
//   quillet.exe -kla=SmallHost -copydata="Vorgang 4711"
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>

constexpr DWORD kLongestText = 2000; // bytes; more is refused: any web page may be the sender

// Control characters, ends of lines, and marks that turn the direction of writing: not to be shown.
bool IsControl(wchar_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x61C || unit == 0x200E ||
           unit == 0x200F || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

// The dialog that waits for WM_USER + n. The handle may be any number: see that it is a dialog.
void Answer(HWND dialog, UINT n)
{
    wchar_t name[16] = L"";
    GetClassNameW(dialog, name, 16);
    if (std::wcscmp(name, L"#32770") == 0)
    {
        PostMessageW(dialog, WM_USER + n, 0, 0); // posted and never sent
    }
}

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COPYDATA)
    {
        const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        if (data->cbData % sizeof(wchar_t) != 0 || data->cbData > kLongestText)
        {
            return FALSE; // refused: the caller sees -3
        }
        std::wstring text(data->cbData / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), data->lpData, data->cbData); // no terminator, gone on return
        std::replace_if(text.begin(), text.end(), IsControl, L'.');
        SetWindowTextW(window, (L"SmallHost: " + text).c_str());
        Answer(reinterpret_cast<HWND>(wParam), 2); // no window when nobody waits
        return TRUE;
    }
    if (message == WM_DESTROY)
    {
        PostQuitMessage(0);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int)
{
    const wchar_t* const name = L"SmallHost";
    const WNDCLASSW hostClass{0,       WindowProc, 0,       0,       instance,
                              nullptr, nullptr,    nullptr, nullptr, name};
    RegisterClassW(&hostClass);
    if (CreateWindowW(name, name, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 480, 200, nullptr,
                      nullptr, instance, nullptr) == nullptr)
    {
        return 1;
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        DispatchMessageW(&message);
    }
    return 0;
}
