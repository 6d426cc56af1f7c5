// The smallest host: takes texts (UTF-16), shows them in its title, and answers with 2.
//   cl /std:c++17 /utf-8 SmallHost.cpp user32.lib
//   x86_64-w64-mingw32-g++ -std=c++17 -municode -mwindows -static SmallHost.cpp -o SmallHost.exe
//   quillet.exe -kla=SmallHost -copydata="Vorgang 4711"
#include <windows.h>

#include <cstring>
#include <string>

constexpr DWORD kLongestText = 2000; // bytes; more is refused: any web page may be the sender

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
        SetWindowTextW(window, (L"SmallHost: " + text).c_str());
        if (wParam != 0) // the dialog that waits for WM_USER + n, posted and never sent
        {
            PostMessageW(reinterpret_cast<HWND>(wParam), WM_USER + 2, 0, 0);
        }
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
