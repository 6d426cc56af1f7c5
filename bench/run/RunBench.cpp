// Measures whole runs beside bare programs that do the same. Each round starts every program once,
// in an order of its own; what counts is the median of the rounds' ratios to the bare program. That
// one is in each round twice: how far the second is from the first shows what the ratios are worth.
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"

#include <psapi.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace
{

/// How far the bare program may be from itself for the ratios to be worth anything.
constexpr double kTolerance = 0.03;

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

struct Program
{
    const char* what;
    const wchar_t* file;
    std::wstring arguments;
    /// The ratio to the bare program that it should not exceed.
    double aim = 1 + kTolerance;
};

struct Measured
{
    double milliseconds;
    double peakMegabytes;
};

/// From the start to the end of a program that asks nobody, or from the answer to the end of one
/// whose dialog waits for it.
Measured Measure(const Program& program, bool waits)
{
    constexpr double kMegabyte = 1e6;
    constexpr int kAnswer = 5;
    auto begin = Clock::now();
    const Process process(BuiltProgram(program.file), program.file + program.arguments);
    PROCESS_MEMORY_COUNTERS counters{};
    if (waits)
    {
        HWND dialog = nullptr;
        WaitUntil([&] { return (dialog = FindProcessWindow(process.Id(), L"#32770", nullptr)); });
        WaitUntil([&] { return ::IsWindowVisible(dialog) && ::GetForegroundWindow() == dialog; });
        ::WaitForInputIdle(process.Handle(), INFINITE);
        counters.cb = sizeof(counters);
        ::GetProcessMemoryInfo(process.Handle(), &counters, sizeof(counters));
        begin = Clock::now();
        ::PostMessageW(dialog, WM_USER + kAnswer, 0, 0);
    }
    if (process.WaitForExit() != (waits ? kAnswer : -1))
    {
        std::fprintf(stderr, "a measured program did not end as it should\n");
        std::exit(1);
    }
    return {Milliseconds(Clock::now() - begin).count(),
            static_cast<double>(counters.PeakWorkingSetSize) / kMegabyte};
}

double WholeRun(const Program& program)
{
    return Measure(program, false).milliseconds;
}

double AnswerToEnd(const Program& program)
{
    return Measure(program, true).milliseconds;
}

double PeakMegabytes(const Program& program)
{
    return Measure(program, true).peakMegabytes;
}

double Median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The median of the rounds' ratios, and the ranks between which it truly lies with 95 %
/// confidence.
struct Ratio
{
    Ratio(std::vector<double> values, const std::vector<double>& bareValues)
    {
        std::ranges::transform(values, bareValues, values.begin(), std::divides());
        std::ranges::sort(values);
        const auto count = static_cast<double>(values.size());
        const auto reach = static_cast<std::size_t>(0.98 * std::sqrt(count));
        low = values[values.size() / 2 - reach];
        median = values[values.size() / 2];
        high = values[values.size() / 2 + reach];
    }

    double low;
    double median;
    double high;
};

/// Prints a row for the bare program beside itself, and one for each of the others beside it.
void Compare(const char* unit, double (*measure)(const Program&), int rounds, const Program& bare,
             const std::vector<Program>& others)
{
    std::vector<Program> programs{bare, bare};
    programs.insert(programs.end(), others.begin(), others.end());
    std::vector<std::size_t> order(programs.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::for_each(programs, measure); // warms up
    std::vector<std::vector<double>> values(programs.size());
    for (std::mt19937 random{std::random_device{}()}; rounds > 0; --rounds)
    {
        std::ranges::shuffle(order, random);
        for (const std::size_t program : order)
        {
            values[program].push_back(measure(programs[program]));
        }
    }
    const bool worthless = std::abs(Ratio(values[1], values[0]).median - 1) > kTolerance;
    for (std::size_t program = 1; program < programs.size(); ++program)
    {
        const auto& [what, file, arguments, aim] = programs[program];
        const Ratio ratio(values[program], values[0]);
        const char* verdict = ratio.high <= aim ? "holds" : ratio.low > aim ? "fails" : "open";
        std::printf("| %s | %.2f %s | %.3f | %.3f to %.3f | %.2f | %s |\n", what,
                    Median(values[program]), unit, ratio.median, ratio.low, ratio.high, aim,
                    worthless ? "none: the bare program is off" : verdict);
    }
}

/// So many windows that the search outweighs the start of the process; the one searched for is the
/// last.
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
    Compare("ms", &WholeRun, 80, {"bare walk", L"bare_search.exe", L""},
            {{"search in 2,000 windows", L"quillet.exe",
              L" -nodlg -seaglob -nam=\"Akte [0-9]* - Editor\" -kla=Quillet*Last", 1.15}});
    for (const HWND window : windows)
    {
        ::DestroyWindow(window);
    }
}

} // namespace

int wmain()
{
    std::printf("| what | median | ratio | 95 %% interval | aim | verdict |\n");
    std::printf("|---|---:|---:|---:|---:|---|\n");
    const ScriptedHost host({L"QuilletBenchHost", L"Host"});
    const std::wstring notify = L" -nodlg -msg=7 -kla=QuilletBenchHost";
    const std::wstring notifyUrl = L" -url=\"demo://open?nodlg&msg=7&kla=QuilletBenchHost\"";
    const std::wstring longUrl = L" -url=demo://open?a=" + std::wstring(32'000, L'x');
    Compare("ms", &WholeRun, 240, {"bare notification", L"bare_notify.exe", L""},
            {{"notification by switches", L"quillet.exe", notify, 1.10},
             {"notification by URL", L"quillet.exe", notifyUrl, 1.15}});
    Compare("ms", &AnswerToEnd, 240, {"bare answer", L"bare_dialog.exe", L""},
            {{"answer", L"quillet.exe", L"", 1.10}});
    Compare("MB", &PeakMegabytes, 40, {"bare dialog", L"bare_dialog.exe", L""},
            {{"memory, longest URL", L"quillet.exe", longUrl, 1.15}});
    CompareSearch();
    return 0;
}
