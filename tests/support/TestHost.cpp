// A host in a process of its own, for what a window of the test process cannot show: it can be
// killed, it can hang, and the platform's foreground rules see it as a stranger. It reports what
// happens to it (see HostReport.h). Called as: test_host CLASS TITLE [minimised|hidden] [hang]
// [load]
#include "tests/support/HostReport.h"
#include "tests/support/PlantedLibrary.h"
#include "tests/support/ScriptedHost.h"

#include <shellapi.h>

#include <string_view>

namespace
{

std::optional<LRESULT> ReportAndHandle(HWND window, const ReceivedMessage& message, bool hangs)
{
    if (message.message == WM_ACTIVATE)
    {
        // A minimised window is made the active one when its restoring begins; what counts is that
        // it is in front for its user.
        const bool active = LOWORD(message.wParam) != WA_INACTIVE && HIWORD(message.wParam) == 0;
        if (active)
        {
            Report(window, kReportActivated);
        }
        return std::nullopt;
    }
    Report(window, kReportReceived);
    if (hangs && message.message == WM_COPYDATA)
    {
        ::Sleep(INFINITE);
    }
    return std::nullopt;
}

} // namespace

int wmain()
{
    int count = 0;
    wchar_t** arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (count < 3)
    {
        return 2;
    }
    ScriptedHostOptions options{arguments[1], arguments[2]};
    options.alsoRecord = {WM_ACTIVATE};
    bool hangs = false;
    for (int i = 3; i < count; ++i)
    {
        const std::wstring_view word = arguments[i];
        options.style |= word == L"minimised" ? WS_MINIMIZE : 0;
        options.style &= word == L"hidden" ? ~DWORD{WS_VISIBLE} : ~DWORD{0};
        hangs = hangs || word == L"hang";
        if (word == L"load")
        {
            ::LoadLibraryW(kLibraryToLoad);
        }
    }
    const ScriptedHost host(options, [hangs](HWND window, const ReceivedMessage& message) {
        return ReportAndHandle(window, message, hangs);
    });
    const bool getsFocus = (options.style & (WS_VISIBLE | WS_MINIMIZE)) == WS_VISIBLE;
    if (getsFocus && !host.WaitForFocus())
    {
        return 3;
    }
    Report(host.Handle(), kReportReady);
    // Ended by whoever started it.
    constexpr std::chrono::hours kForever{24};
    for (std::size_t answers = 1; host.WaitForAnswers(answers, kForever); ++answers)
    {
        Report(host.Handle(), kReportAnswered);
    }
    return 0;
}
