#include "tests/kit/TestRun.h"

#include "tests/support/ExpectedDifference.h"
#include "tests/support/Process.h"
#include "tests/support/UniqueHandle.h"
#include "tests/support/UniqueName.h"

#include <regex>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace
{

struct Run
{
    /// Nothing when the program had to be ended.
    std::optional<int> exitCode;
    std::string output;
};

/// An inheritable file without a trace: it goes with its last handle.
KernelHandle MakeFile()
{
    const auto path = std::filesystem::temp_directory_path() / UniqueName(L"quillet-selftest");
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const HANDLE file =
        ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, &inheritable,
                      CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    return file == INVALID_HANDLE_VALUE
               ? throw std::runtime_error("the folder for temporary files takes no file")
               : KernelHandle(file);
}

std::string ContentOf(HANDLE file)
{
    std::string text(::GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    ::SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    ::ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &read, nullptr);
    std::erase(text, '\r');
    return text;
}

/// What keeps a program from being started, by the platform's error; not all have names in headers.
std::string ReasonOf(int startError)
{
    return startError == 225 || startError == 226 ? " (the virus scanner)"
           : startError == 1260                   ? " (a policy)"
           : startError == 4551                   ? " (Smart App Control)"
                                                  : "";
}

/// Throws std::runtime_error when the program cannot be started, with what is in the way.
Run Start(const TestProgram& program, const std::string& arguments)
try
{
    const KernelHandle output = MakeFile();
    Process process(program.file,
                    L'"' + program.file.wstring() + L"\" " +
                        std::wstring(arguments.begin(), arguments.end()),
                    std::nullopt, output.get());
    const auto exitCode = process.WaitForExit(program.limit);
    process.Kill();
    return {exitCode, ContentOf(output.get())};
}
catch (const std::system_error& error)
{
    const int number = error.code().value();
    throw std::runtime_error("cannot be started: error " + std::to_string(number) +
                             ReasonOf(number));
}

std::string HowItEnded(const Run& run, const TestProgram& program)
{
    if (!run.exitCode)
    {
        return "took more than " + std::to_string(program.limit.count()) +
               " seconds and was ended\n";
    }
    std::ostringstream text;
    text << "ended with 0x" << std::hex << std::uppercase << *run.exitCode << '\n';
    return text.str();
}

/// SUITE.TEST of each.
std::vector<std::string> ListTests(const TestProgram& program)
{
    const Run run = Start(program, "--gtest_list_tests --gtest_filter=" + program.filter);
    if (run.exitCode != 0)
    {
        throw std::runtime_error(HowItEnded(run, program) + run.output);
    }
    std::vector<std::string> names;
    std::string suite;
    const std::regex line("( *)(\\S+).*\n"); // a comment may follow
    for (std::sregex_iterator at(run.output.begin(), run.output.end(), line), end; at != end; ++at)
    {
        if (at->length(1) > 0)
        {
            names.push_back(suite + at->str(2));
        }
        else
        {
            suite = at->str(2);
        }
    }
    return names;
}

std::vector<std::string> NotesIn(const std::string& output)
{
    const std::string difference = kDifferenceMark;
    const std::regex note("(: Skipped\n|\n" + difference + ")(.*)");
    std::vector<std::string> notes;
    for (std::sregex_iterator at(output.begin(), output.end(), note), end; at != end; ++at)
    {
        notes.push_back((at->str(1).front() == ':' ? "SKIPPED " : difference) + at->str(2));
    }
    return notes;
}

/// A test that has not printed its end has none, whatever the exit code: a stack that overflows
/// under Wine ends with 0.
TestResult RunTest(const TestProgram& program, const std::string& test)
{
    const Run run = Start(program, "--gtest_brief=0 --gtest_filter=" + test);
    const auto tells = [&](const char* mark, int exitCode) {
        return run.exitCode == exitCode && run.output.find(mark + test) != test.npos;
    };
    const Outcome outcome = tells("[       OK ] ", 0)   ? Outcome::Passed
                            : tells("[  SKIPPED ] ", 0) ? Outcome::Skipped
                            : tells("[  FAILED  ] ", 1) ? Outcome::Failed
                                                        : Outcome::Broken;
    // Between the lines of its begin and its end.
    const std::string begin = "[ RUN      ] " + test + "\n";
    const std::size_t at = run.output.find(begin);
    std::string text = at == test.npos ? run.output : run.output.substr(at + begin.size());
    text.erase(std::min(text.find("[  FAILED  ] " + test), text.size()));
    return {program.level + "." + test, outcome,
            outcome == Outcome::Broken ? HowItEnded(run, program) + text : text,
            NotesIn(run.output)};
}

} // namespace

std::vector<TestResult> RunTests(const TestProgram& program, const std::string& only)
{
    std::vector<TestResult> results;
    try
    {
        for (const std::string& test : ListTests(program))
        {
            if ((program.level + "." + test).find(only) != test.npos)
            {
                results.push_back(RunTest(program, test));
            }
        }
    }
    catch (const std::runtime_error& error)
    {
        results.push_back({.name = program.file.filename().string(), .text = error.what()});
    }
    return results;
}
