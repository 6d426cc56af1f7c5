// The self-test: runs the test programs that lie beside it, one after the other, and reports. It
// needs nothing but what is in its folder.
#include <windows.h>

#include "tests/kit/Machine.h"
#include "tests/kit/Options.h"
#include "tests/kit/Report.h"
#include "tests/kit/Suite.h"
#include "tests/kit/Utf8.h"
#include "tests/support/ProgramPath.h"

#include <algorithm>
#include <array>
#include <exception>

namespace
{

/// What the whole takes on an ordinary machine, rounded up.
constexpr int kMinutes = 6;

enum ExitCode
{
    kNothingFailed = 0,
    kSomethingFailed = 1,
    kNotUnderstood = 2,
};

std::vector<Suite> AllSuites()
{
    const std::vector<std::wstring> host{L"quillet.exe", L"test_host.exe", L"planted_library.dll"};
    return {{.name = "unit", .program = L"unit_tests.exe"},
            {.name = "scripted", .program = L"scripted_tests.exe"},
            {.name = "program", .program = L"program_file_tests.exe", .needs = {L"quillet.exe"}},
            {.name = "system", .program = L"system_tests.exe", .without = "Load.*", .needs = host},
            {.name = "recipes",
             .program = L"recipe_tests.exe",
             .needs = {L"quillet.exe", L"example_host.exe", L"example_caller.exe",
                       L"small_host.exe", L"recipes"}},
            {.name = "load", .program = L"system_tests.exe", .only = "Load.*", .needs = host}};
}

/// Empty when a name stands for none.
std::vector<Suite> SuitesOf(const Options& options)
{
    std::vector<Suite> suites = AllSuites();
    if (options.suites.empty())
    {
        return suites;
    }
    const auto isWanted = [&](const Suite& suite) {
        return std::ranges::find(options.suites, suite.name) != options.suites.end();
    };
    std::erase_if(suites, [&](const Suite& suite) { return !isWanted(suite); });
    return suites.size() == options.suites.size() ? suites : std::vector<Suite>();
}

/// Prints to the console as it is, and to a file or pipe in UTF-8.
void Say(const std::wstring& text)
{
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD done = 0;
    if (::WriteConsoleW(output, text.data(), static_cast<DWORD>(text.size()), &done, nullptr))
    {
        return;
    }
    const std::string bytes = Utf8(text);
    ::WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr);
}

void WaitForEnter()
{
    std::array<char, 256> line;
    DWORD read = 0;
    ::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), line.data(), line.size(), &read, nullptr);
}

void Announce(const Options& options)
{
    Say(L"Selbsttest von Quillet " QUILLET_VERSION L"\r\n\r\n"
        L"Rund " +
        std::to_wstring(kMinutes) +
        L" Minuten lang (auf langsamen Rechnern länger) kommen und gehen jetzt Fenster, und Tasten "
        L"und Maus werden vom Test "
        L"bedient.\r\n"
        L"Bitte so lange Tastatur und Maus ruhen lassen und den Bildschirm nicht sperren.\r\n\r\n");
    if (!options.quiet)
    {
        Say(L"Beginnen mit der Eingabetaste, abbrechen mit Strg+C. ");
        WaitForEnter();
    }
}

std::wstring InGerman(const Totals& totals)
{
    return std::to_wstring(totals.passed) + L" bestanden, " + std::to_wstring(totals.failed) +
           L" fehlgeschlagen, " + std::to_wstring(totals.skipped) + L" übersprungen";
}

Totals RunAndTell(const Suite& suite, const Options& options, Report& report)
{
    Say(std::wstring(suite.name.begin(), suite.name.end()) +
        std::wstring(10 - suite.name.size(), L' '));
    const auto begin = std::chrono::steady_clock::now();
    const SuiteResult result = RunSuite(suite, BuiltProgram(L"").parent_path(),
                                        report.Path().parent_path(), options.patience);
    const auto seconds = static_cast<int>(
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin)
            .count());
    report.WriteSuite(suite, result, seconds);
    const Totals totals = TotalsOf(result);
    Say(InGerman(totals) + L" (" + std::to_wstring(seconds) + L" s)\r\n");
    return totals;
}

int Run(const Options& options, const std::vector<Suite>& suites)
{
    Report report(BuiltProgram(L"").parent_path());
    report.Write({"Self-test of Quillet " QUILLET_VERSION_NARROW});
    report.Write(DescribeMachine());
    const TestConditions conditions;
    report.Write({conditions.DescribeForeground()});
    Totals totals;
    for (const Suite& suite : suites)
    {
        totals += RunAndTell(suite, options, report);
    }
    // Tests that were never run have not passed.
    totals.failed += totals.passed + totals.failed == 0 ? 1 : 0;
    report.Write({"", Describe(totals)});
    Say(L"\r\n" + InGerman(totals) + L"\r\nBericht: " + report.Path().wstring() + L"\r\n");
    return totals.failed == 0 ? kNothingFailed : kSomethingFailed;
}

} // namespace

int wmain(int count, wchar_t** words)
try
{
    const auto options = ReadOptions({words + 1, words + count});
    const auto suites = options ? SuitesOf(*options) : std::vector<Suite>();
    if (suites.empty())
    {
        Say(L"selftest.cmd [/quiet] [/suite:NAME]... [/patience:SEKUNDEN]\r\n"
            L"NAME: unit, scripted, program, system, recipes, load\r\n");
        return kNotUnderstood;
    }
    // A test program that crashes must not wait for somebody to close a box; it inherits this.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    Announce(*options);
    const int code = Run(*options, suites);
    if (!options->quiet)
    {
        Say(L"Fertig. Weiter mit der Eingabetaste. ");
        WaitForEnter();
    }
    return code;
}
catch (const std::exception& exception)
{
    const std::string what = exception.what();
    Say(L"Der Selbsttest ist gescheitert: " + std::wstring(what.begin(), what.end()) + L"\r\n");
    return kSomethingFailed;
}
