#include "tests/kit/Suite.h"

#include <windows.h>

#include "tests/kit/Utf8.h"
#include "tests/kit/WatchedProgram.h"
#include "tests/support/Journal.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace
{

/// A program that crashes more often is given up.
constexpr int kMostStarts = 20;

std::string SuiteOf(const std::string& test)
{
    return test.substr(0, test.rfind('.'));
}

/// The filter that leaves out every test that has begun. GoogleTest runs suite after suite, so all
/// but the last one's can be named by their suites, and the line stays short.
std::string FilterWithout(const Suite& suite, const std::vector<TestRecord>& begun)
{
    std::vector<std::string> left{suite.without};
    for (const TestRecord& test : begun)
    {
        const bool inLastSuite = SuiteOf(test.name) == SuiteOf(begun.back().name);
        const std::string pattern = inLastSuite ? test.name : SuiteOf(test.name) + ".*";
        if (left.back() != pattern)
        {
            left.push_back(pattern);
        }
    }
    std::string filter = suite.only + "-";
    for (const std::string& pattern : left)
    {
        filter += pattern + ":";
    }
    return filter;
}

std::wstring Widened(const std::string& ascii)
{
    return {ascii.begin(), ascii.end()};
}

std::string Describe(const ProgramEnd& end, std::chrono::seconds patience)
{
    std::ostringstream text;
    if (end.hung)
    {
        text << "told nothing for " << patience.count() << " seconds and was ended";
    }
    else
    {
        text << "the program ended with 0x" << std::hex << std::uppercase << end.exitCode;
    }
    return text.str();
}

std::vector<std::string> MissingFiles(const Suite& suite, const std::filesystem::path& folder)
{
    std::vector<std::string> faults;
    std::vector<std::wstring> files = suite.needs;
    files.push_back(suite.program);
    for (const std::wstring& file : files)
    {
        if (!std::filesystem::exists(folder / file))
        {
            faults.push_back(Utf8(file) + " is missing");
        }
    }
    return faults;
}

/// A file that the test program writes and this one reads, gone with this object.
class JournalFile
{
public:
    JournalFile()
        : m_path(std::filesystem::temp_directory_path() /
                 (L"quillet-selftest-" + std::to_wstring(::GetCurrentProcessId()) + L".txt"))
    {
        ::SetEnvironmentVariableW(kJournalVariable, m_path.c_str());
    }
    ~JournalFile()
    {
        ::SetEnvironmentVariableW(kJournalVariable, nullptr);
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

    RunRecord Read() const
    {
        std::ifstream journal(m_path);
        return ReadJournal(journal);
    }

private:
    std::filesystem::path m_path;
};

/// Whether the program came to its end, with a code that its tests account for.
bool EndedWell(const RunRecord& run, const ProgramEnd& end)
{
    const bool failed = std::ranges::any_of(
        run.tests, [](const TestRecord& test) { return test.outcome == Outcome::Failed; });
    return run.done && !end.hung && (end.exitCode == 0 || failed);
}

/// Takes over what one start of the program has told. Gives whether another start is to run the
/// tests after it.
bool TakeOver(RunRecord run, const ProgramEnd& end, std::chrono::seconds patience,
              SuiteResult& result)
{
    const bool inTest = !run.tests.empty() && run.tests.back().outcome == Outcome::Unfinished;
    if (inTest)
    {
        run.tests.back().messages.push_back(Describe(end, patience));
    }
    else if (!EndedWell(run, end))
    {
        std::string fault = "outside any test: " + Describe(end, patience);
        for (const std::string& line : run.messages)
        {
            fault += "\n    " + line;
        }
        result.faults.push_back(fault);
    }
    std::ranges::move(run.tests, std::back_inserter(result.tests));
    return inTest;
}

} // namespace

SuiteResult RunSuite(const Suite& suite, const std::filesystem::path& folder,
                     const std::filesystem::path& outputFolder, std::chrono::seconds patience)
{
    const std::filesystem::path output = outputFolder / Widened(suite.name + "-output.txt");
    std::error_code ignored;
    std::filesystem::remove(output, ignored); // an earlier self-test's
    SuiteResult result;
    result.faults = MissingFiles(suite, folder);
    bool again = result.faults.empty();
    for (int start = 0; again; ++start)
    {
        if (start == kMostStarts)
        {
            result.faults.push_back("crashed too often: the tests after that were not run");
            break;
        }
        const JournalFile journal;
        const std::wstring program = (folder / suite.program).wstring();
        const std::wstring line =
            L'"' + program + L"\" --gtest_filter=" + Widened(FilterWithout(suite, result.tests));
        const ProgramEnd end = RunWatched(program, line, output, journal.Path(), patience);
        if (end.startError != 0)
        {
            result.faults.push_back("the program cannot be started: error " +
                                    std::to_string(end.startError));
            break;
        }
        again = TakeOver(journal.Read(), end, patience, result);
    }
    return result;
}
