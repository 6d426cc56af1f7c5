// A host in a process of its own, for what a window of the test process cannot show: it can be
// killed, it can hang, and the platform's foreground rules see it as a stranger. Its text becomes
// "received" when a message has arrived. Called as: test_host CLASS TITLE [minimised|hidden] [hang]
#include "tests/support/HostWindow.h"

#include <shellapi.h>

#include <string_view>

int wmain()
{
    int count = 0;
    wchar_t** arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (count < 3)
    {
        return 2;
    }
    HostOptions options{arguments[1], arguments[2]};
    bool hangs = false;
    for (int i = 3; i < count; ++i)
    {
        const std::wstring_view word = arguments[i];
        options.style |= word == L"minimised" ? WS_MINIMIZE : 0;
        options.style &= word == L"hidden" ? ~DWORD{WS_VISIBLE} : ~DWORD{0};
        hangs = hangs || word == L"hang";
    }
    const auto script = [hangs](HWND window,
                                const ReceivedMessage& message) -> std::optional<LRESULT> {
        ::SetWindowTextW(window, L"received");
        if (hangs && message.message == WM_COPYDATA)
        {
            ::Sleep(INFINITE);
        }
        return std::nullopt;
    };
    const HostWindow host(options, script);
    // Ended by whoever started it.
    ::Sleep(INFINITE);
    return 0;
}
