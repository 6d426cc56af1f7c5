// An example of a host application: a window that takes requests and answers them. Meant to be
// lifted from; start with HostWindow.cpp.

#include <windows.h>

#include "examples/host/HostOptions.h"
#include "examples/host/HostWindow.h"

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, PWSTR, int nShowCmd)
{
    // Sharp text on large screens. A real host says this in its manifest.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE);

    const HostOptions options = ReadHostOptions();
    if (options.showsHelp)
    {
        MessageBoxW(nullptr, kHostUsage, L"Beispiel-Host", MB_OK | MB_ICONINFORMATION);
        return 1;
    }
    HostWindow window(options);
    if (!window.Create(hInstance, nShowCmd))
    {
        return 1;
    }

    // Without IsDialogMessage, on purpose: it would send the window messages from the start of the
    // WM_USER range, and those are the callers' here.
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
