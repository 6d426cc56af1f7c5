// The page that builds calls (examples/call-builder/) against the program: its copy of the
// program's rules, and its calls down to what a host receives. make_calls.js has written the cases.
#include <afxwin.h>

#include "target/GlobMatch.h"
#include "tests/support/CodePage.h"
#include "tests/support/HexUnits.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RequestOf.h"
#include "tests/support/ScriptedHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace
{

constexpr wchar_t kHostClass[] = L"QuilletCallTest"; // as the calls name it
constexpr wchar_t kHostTitle[] = L"Aufrufe -kla=x; 100%";

std::ifstream OpenCases(const wchar_t* name)
{
    return std::ifstream(BuiltProgram(L"calls").append(name));
}

/// As make_calls.js writes it.
std::wstring ReadingOf(const std::wstring& line)
{
    if (AsksForHelp(CommandLine(line.c_str())))
    {
        return L"help";
    }
    try
    {
        return TextOf(RequestOf(line));
    }
    catch (CInvalidArgException* exception)
    {
        exception->Delete();
        return L"abnormal end";
    }
}

TEST(CallBuilder, ReadsCommandLinesAsTheProgramDoes)
{
    std::ifstream cases = OpenCases(L"readings.txt");
    std::string line;
    std::string expected;
    std::size_t count = 0;
    for (; cases >> line >> expected; ++count)
    {
        const std::wstring text = TextOfHexUnits(line);
        ASSERT_EQ(ReadingOf(text), TextOfHexUnits(expected)) << text;
    }
    EXPECT_GE(count, 3000u) << "make_calls.js writes them";
}

TEST(CallBuilder, MatchesPatternsAsTheProgramDoes)
{
    std::ifstream cases = OpenCases(L"globs.txt");
    std::string text;
    std::string pattern;
    int expected = 0;
    std::size_t count = 0;
    for (; cases >> text >> pattern >> expected; ++count)
    {
        const std::wstring title = TextOfHexUnits(text);
        const std::wstring glob = TextOfHexUnits(pattern);
        ASSERT_EQ(GlobMatch(title.c_str(), glob.c_str()), expected) << title << L" / " << glob;
    }
    EXPECT_GE(count, 10000u) << "make_calls.js writes them";
}

/// One call, and what a host receives by it: see make_calls.js.
struct Call
{
    std::wstring source;
    std::wstring received;
};

std::vector<Call> CallsOf(const std::string& form)
{
    std::ifstream cases = OpenCases(L"runs.txt");
    std::vector<Call> calls;
    std::string name;
    std::string source;
    std::string received;
    while (cases >> name >> source >> received)
    {
        if (name == form)
        {
            calls.push_back({TextOfHexUnits(source), TextOfHexUnits(received)});
        }
    }
    return calls;
}

std::wstring Received(const ReceivedMessage& message)
{
    if (message.message != WM_COPYDATA)
    {
        return std::to_wstring(message.message) + L' ' +
               std::to_wstring(static_cast<std::int64_t>(message.wParam)) + L' ' +
               std::to_wstring(message.lParam);
    }
    std::wstring digits;
    for (const std::byte byte : message.bytes)
    {
        constexpr wchar_t kDigits[] = L"0123456789abcdef";
        digits += kDigits[std::to_integer<unsigned>(byte) >> 4];
        digits += kDigits[std::to_integer<unsigned>(byte) & 0xF];
    }
    return L"74 " + std::to_wstring(static_cast<std::int64_t>(message.data)) + L' ' + digits;
}

/// A file's content: each call in lines of its own.
std::string ContentOf(const std::vector<Call>& calls, UINT codePage)
{
    std::string content;
    for (const Call& call : calls)
    {
        content += InCodePage(codePage, call.source) + "\r\n";
    }
    return content;
}

class CallBuilderCalls : public testing::Test
{
protected:
    /// That the calls have arrived, each in its turn.
    void ExpectReceived(const std::vector<Call>& calls) const
    {
        const auto received = m_host.WaitForMessages(calls.size());
        for (std::size_t index = 0; index < std::min(received.size(), calls.size()); ++index)
        {
            ASSERT_EQ(Received(received[index]), calls[index].received) << calls[index].source;
        }
        EXPECT_EQ(received.size(), calls.size());
    }

    /// Has an interpreter run all the calls, one after another, from one file.
    void RunFile(const std::vector<Call>& calls, const wchar_t* name, const std::string& content,
                 const std::wstring& interpreter, const std::wstring& option) const
    {
        constexpr std::chrono::seconds kStart{60};
        constexpr std::chrono::seconds kEachCall{3}; // far beyond what one takes
        ASSERT_FALSE(calls.empty());
        const std::filesystem::path file = std::filesystem::temp_directory_path() / name;
        std::ofstream(file, std::ios::binary) << content;
        wchar_t system[MAX_PATH];
        ::GetSystemDirectoryW(system, MAX_PATH);
        const Process process(std::filesystem::path(system) / interpreter,
                              interpreter + L' ' + option + L" \"" + file.wstring() + L'"');
        EXPECT_TRUE(process.WaitForExit(kStart + calls.size() * kEachCall).has_value());
        ExpectReceived(calls);
    }

    ScriptedHost m_host{{.className = kHostClass, .title = kHostTitle}};
};

TEST_F(CallBuilderCalls, ArriveFromACommandLine)
{
    const std::vector<Call> calls = CallsOf("line");
    ASSERT_FALSE(calls.empty());
    for (const Call& call : calls)
    {
        const Process run(BuiltProgram(L"quillet.exe"), call.source);
        ASSERT_TRUE(run.WaitForExit().has_value()) << call.source;
    }
    ExpectReceived(calls);
}

TEST_F(CallBuilderCalls, ArriveFromABatchFile)
{
    const std::vector<Call> calls = CallsOf("batch");
    const std::string content = "@echo off\r\n" + ContentOf(calls, ::GetOEMCP());
    RunFile(calls, L"calls.cmd", content, L"cmd.exe", L"/c");
}

TEST_F(CallBuilderCalls, ArriveFromVBScript)
{
    const std::vector<Call> calls = CallsOf("vbscript");
    const std::string content = "Dim commandLine, code\r\n" + ContentOf(calls, CP_UTF8); // ASCII
    RunFile(calls, L"calls.vbs", content, L"cscript.exe", L"//nologo");
}

} // namespace
