// The self-test: runs the tests of the programs that lie beside it, and reports. It needs nothing
// but what is in its folder.
#include <windows.h>

#include "tests/kit/Machine.h"
#include "tests/kit/Report.h"
#include "tests/kit/TestConditions.h"
#include "tests/support/KillOnCloseJob.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/Utf8.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <regex>

namespace
{

struct Options
{
    /// /only:TEXT, a part of the names of the tests to run.
    std::string only;
    /// /limit:SECONDS, for each test.
    std::optional<std::chrono::seconds> limit;
};

/// Nothing when there is a word that is neither; /quiet is for selftest.cmd.
std::optional<Options> ReadOptions(int count, wchar_t** words)
{
    Options options;
    for (const std::wstring& word : std::vector<std::wstring>(words + 1, words + count))
    {
        std::wsmatch found;
        if (std::regex_match(word, found, std::wregex(L"/only:(.*)")))
        {
            options.only = Utf8(found.str(1));
        }
        else if (std::regex_match(word, found, std::wregex(L"/limit:([0-9]{1,6})")))
        {
            options.limit = std::chrono::seconds(std::stoi(found.str(1)));
        }
        else if (word != L"/quiet")
        {
            return std::nullopt;
        }
    }
    return options;
}

/// As CTest has them, level by level. Last, and by itself, the one that locks the foreground again.
std::vector<TestProgram> AllPrograms()
{
    constexpr std::chrono::seconds kLoadLimit{300};
    return {{"unit", L"unit_tests.exe"},
            {"scripted", L"scripted_tests.exe"},
            {"program_file", L"program_file_tests.exe"},
            {"recipes", L"recipe_tests.exe"},
            {"system", L"system_tests.exe", "-Load.*:ForegroundLock.*"},
            {"system", L"system_tests.exe", "Load.*", kLoadLimit},
            {"system", L"system_tests.exe", "ForegroundLock.*"}};
}

/// What the kit was packed with and is not there: not unpacked, or taken away by a virus scanner.
std::vector<TestResult> MissingFiles(const std::filesystem::path& folder)
{
    std::vector<TestResult> missing;
    std::ifstream sums(folder / L"SHA256SUMS");
    for (std::string sum, name; sums >> sum >> name;)
    {
        if (!std::filesystem::exists(folder / name))
        {
            missing.push_back({.name = name, .text = "is missing"});
        }
    }
    return missing;
}

/// The report's file, in `folder`, or in the user's folder for temporary files when it cannot be
/// written there.
std::filesystem::path ReportFile(const std::filesystem::path& folder)
{
    const std::filesystem::path name = L"selftest-report.txt";
    return std::ofstream(folder / name) ? folder / name
                                        : std::filesystem::temp_directory_path() / name;
}

int RunAll(const Options& options)
{
    const std::filesystem::path folder = BuiltProgram(L"").parent_path();
    const std::filesystem::path file = ReportFile(folder);
    const ForegroundLock& lock = SetTestConditions();
    const DWORD timeout = ForegroundLockTimeout();
    const std::string facts = "Foreground lock timeout: " + std::to_string(lock.Found()) +
                              " ms found, " + std::to_string(timeout) + " ms now" +
                              (timeout == 0 ? "\n" : ": what needs the foreground is skipped\n") +
                              DescribeMachine();
    std::vector<TestResult> results = MissingFiles(folder);
    std::string verdict;
    // Again and again, so that what is known is there when the self-test is broken off.
    const auto report = [&](const char* word) {
        verdict = "Self-test of Quillet " QUILLET_VERSION ": " + std::string(word) + ", " +
                  CountOutcomes(results);
        std::ofstream(file) << MakeReport(verdict, facts, results);
    };
    for (TestProgram program : AllPrograms())
    {
        program.file = folder / program.file;
        program.limit = options.limit.value_or(program.limit);
        report("BROKEN OFF");
        if (std::filesystem::exists(program.file))
        {
            const std::vector<TestResult> more = RunTests(program, options.only);
            std::cout << program.level << ": " << CountOutcomes(more) << std::endl;
            std::ranges::copy(more, std::back_inserter(results));
        }
    }
    if (!lock.Restore())
    {
        results.push_back({.name = "foreground lock timeout", .text = "does not come back"});
    }
    report(AllIsWell(results) ? "PASSED" : "FAILED");
    std::cout << verdict << std::endl;
    return AllIsWell(results) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int wmain(int count, wchar_t** words)
try
{
    const auto options = ReadOptions(count, words);
    if (!options)
    {
        std::cout << "selftest.cmd [/quiet] [/only:TEXT] [/limit:SEKUNDEN]\n";
        return 2;
    }
    // What this has started ends with it, whatever kind of end that is.
    ::AssignProcessToJobObject(MakeKillOnCloseJob(), ::GetCurrentProcess());
    // A test program that crashes must not wait for somebody to close a box; it inherits this.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    const int code = RunAll(*options);
    // Keys that tests have pressed are not for whoever waits for one next.
    ::FlushConsoleInputBuffer(::GetStdHandle(STD_INPUT_HANDLE));
    return code;
}
catch (const std::exception& exception)
{
    std::cout << "Der Selbsttest ist gescheitert: " << exception.what() << '\n';
    return EXIT_FAILURE;
}
