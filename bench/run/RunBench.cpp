// Measures whole runs beside bare programs that do the same, in turn in one run, and prints medians
// and their ratio: from CreateProcessW to the end of the process, from the host's post to the end
// of the process, and the memory that a waiting process has needed at most.
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"

#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

constexpr int kWarmUpPairs = 5;
constexpr int kPairs = 150;

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Program
{
    const wchar_t* file;
    const wchar_t* arguments;
};

Process Start(const Program& program)
{
    return {BuiltProgram(program.file), std::wstring(program.file) + program.arguments};
}

void RequireEnd(const Process& process, int code)
{
    if (process.WaitForExit() != code)
    {
        std::fprintf(stderr, "a measured program did not end as it should\n");
        std::exit(1);
    }
}

double WholeRun(const Program& program)
{
    const auto begin = Clock::now();
    const Process process = Start(program);
    RequireEnd(process, -1);
    return Milliseconds(Clock::now() - begin).count();
}

constexpr int kAnswer = 5;

/// The dialog of a process that shows it and waits.
HWND WaitingDialog(const Process& process)
{
    HWND dialog = nullptr;
    WaitUntil(
        [&] { return (dialog = FindProcessWindow(process.Id(), L"#32770", nullptr)) != nullptr; });
    WaitUntil([&] { return ::IsWindowVisible(dialog) && ::GetForegroundWindow() == dialog; });
    ::WaitForInputIdle(process.Handle(), INFINITE);
    return dialog;
}

double AnswerToEnd(const Program& program)
{
    const Process process = Start(program);
    const HWND dialog = WaitingDialog(process);
    const auto begin = Clock::now();
    ::PostMessageW(dialog, WM_USER + kAnswer, 0, 0);
    RequireEnd(process, kAnswer);
    return Milliseconds(Clock::now() - begin).count();
}

double PeakMegabytes(const Program& program)
{
    constexpr double kMegabyte = 1e6;
    const Process process = Start(program);
    const HWND dialog = WaitingDialog(process);
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    ::GetProcessMemoryInfo(process.Handle(), &counters, sizeof(counters));
    ::PostMessageW(dialog, WM_USER + kAnswer, 0, 0);
    RequireEnd(process, kAnswer);
    return static_cast<double>(counters.PeakWorkingSetSize) / kMegabyte;
}

double Median(std::vector<double> values)
{
    std::ranges::nth_element(values,
                             values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

void Compare(const char* what, const char* unit, double (*measure)(const Program&),
             const Program& bare, const Program& quillet)
{
    std::vector<double> bareTimes;
    std::vector<double> quilletTimes;
    for (int pair = -kWarmUpPairs; pair < kPairs; ++pair)
    {
        // Each goes first in every other pair.
        const bool bareFirst = pair % 2 == 0;
        const double first = measure(bareFirst ? bare : quillet);
        const double second = measure(bareFirst ? quillet : bare);
        if (pair >= 0)
        {
            bareTimes.push_back(bareFirst ? first : second);
            quilletTimes.push_back(bareFirst ? second : first);
        }
    }
    const double bareMedian = Median(bareTimes);
    const double quilletMedian = Median(quilletTimes);
    std::printf("%-28s bare %7.2f %s   quillet %7.2f %s   ratio %.3f   (%d pairs)\n", what,
                bareMedian, unit, quilletMedian, unit, quilletMedian / bareMedian, kPairs);
}

} // namespace

// So many windows that the search outweighs the start of the process; the one searched for is the
// last.
void CompareSearch()
{
    constexpr int kWindows = 2000;
    const ScriptedHost last({L"QuilletBenchLast", L"Akte 4711 - Editor"});
    ::SetWindowPos(last.Handle(), HWND_BOTTOM, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    std::vector<HWND> windows;
    for (int i = 0; i < kWindows; ++i)
    {
        windows.push_back(::CreateWindowExW(0, L"STATIC", L"Eins von vielen - Editor", WS_POPUP, 0,
                                            0, 1, 1, nullptr, nullptr, nullptr, nullptr));
    }
    Compare("search in 2,000 windows", "ms", &WholeRun, {L"bare_search.exe", L""},
            {L"quillet.exe", L" -nodlg -seaglob -nam=\"Akte [0-9]* - Editor\" -kla=Quillet*Last"});
    for (const HWND window : windows)
    {
        ::DestroyWindow(window);
    }
}

int wmain()
{
    const ScriptedHost host({L"QuilletBenchHost", L"Host"});
    constexpr Program kBareNotify{L"bare_notify.exe", L""};
    constexpr Program kBareDialog{L"bare_dialog.exe", L""};
    Compare("run, two bare programs", "ms", &WholeRun, kBareNotify, kBareNotify);
    Compare("run with switches", "ms", &WholeRun, kBareNotify,
            {L"quillet.exe", L" -nodlg -msg=7 -kla=QuilletBenchHost"});
    Compare("run with a URL", "ms", &WholeRun, kBareNotify,
            {L"quillet.exe", L" -url=\"demo://open?nodlg&msg=7&kla=QuilletBenchHost\""});
    Compare("answer to end", "ms", &AnswerToEnd, kBareDialog, {L"quillet.exe", L""});
    const std::wstring longUrl = L" -url=demo://open?a=" + std::wstring(32'000, L'x');
    Compare("memory", "MB", &PeakMegabytes, kBareDialog, {L"quillet.exe", L""});
    Compare("memory, longest URL", "MB", &PeakMegabytes, kBareDialog,
            {L"quillet.exe", longUrl.c_str()});
    CompareSearch();
    return 0;
}
