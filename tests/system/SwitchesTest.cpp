// How switches are found and read, from the raw command line to what a real host window receives.
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace
{

struct Number
{
    const wchar_t* text;
    long long value;
};

// clang-format off
constexpr Number kNumbers[] = {
    {L"0", 0},
    {L"12", 12},
    {L"+12", 12},
    {L"-3", -3},
    {L"0x10", 16},
    {L"0X1f", 31},
    {L"-0x10", -16},
    {L"010", 8},
    {L"09", 0},      // octal: stops at the 9
    {L"7abc", 7},    // stops at the first letter
    {L"1.5", 1},
    {L" 9", 9},      // white space is skipped,
    {L"\t \t9", 9},  // of any kind,
    {L" -wrong", 0}, // but another switch is no number
    {L"\"5\"", 0},   // no quotes
    {L"abc", 0},
    {L"", 0},
    {L"-", 0},
    {L"--5", 0},
};
// clang-format on

TEST(Switches, NumbersAreReadInEveryForm)
{
    ScriptedHostOptions options = UniqueHost();
    options.alsoRecord = {WM_USER - 3, WM_USER - 16};
    const ScriptedHost host(options);
    size_t runs = 0;
    for (const auto& [text, value] : kNumbers)
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(text)));
        const std::wstring number = text;
        EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName() + L" -msg=" + number +
                             L" -lparam=" + number + L" -wparam=" + number),
                  kResultCancelled);
        const auto received = host.ReceivedSoFar();
        ASSERT_EQ(received.size(), ++runs);
        EXPECT_EQ(received.back().message, static_cast<UINT>(WM_USER + value));
        EXPECT_EQ(received.back().wParam, static_cast<WPARAM>(value));
        EXPECT_EQ(received.back().lParam, value);
    }
}

TEST(Switches, ParametersHave64Bits)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(L" -nodlg -lparam=-9223372036854775807 -wparam=0x7edcba9876543210 -kla=" +
                         host.ClassName()),
              kResultCancelled);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].wParam, 0x7edcba9876543210u);
    EXPECT_EQ(received[0].lParam, -9223372036854775807);
}

// No range check: an offset can name a message below WM_USER.
TEST(Switches, NegativeOffsetGivesANumberBelowWmUser)
{
    constexpr WPARAM kMark = 4711;
    ScriptedHostOptions options = UniqueHost();
    options.alsoRecord = {WM_NULL};
    const ScriptedHost host(options);
    EXPECT_EQ(RunQuillet(L" -nodlg -msg=-1024 -wparam=4711 -kla=" + host.ClassName()),
              kResultCancelled);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_NULL));
    EXPECT_EQ(received[0].wParam, kMark);
}

/// A raw line's end and what it makes of a host window called by `{class}`: the exit code, and the
/// copy-data text that arrives.
struct Line
{
    const char* reason;
    std::wstring arguments;
    int exitCode;
    std::wstring copyData;
};

class RawLine : public ::testing::Test
{
protected:
    void Expect(const Line& line)
    {
        SCOPED_TRACE(line.reason);
        const ScriptedHost host(UniqueHost(L"x -nodlg"));
        std::wstring arguments = line.arguments;
        for (size_t place; (place = arguments.find(L"{class}")) != arguments.npos;)
        {
            arguments.replace(place, 7, host.ClassName());
        }
        EXPECT_EQ(RunQuillet(arguments), line.exitCode);
        const auto received = host.ReceivedSoFar();
        if (line.exitCode == kResultAccepted)
        {
            ASSERT_EQ(received.size(), 1u);
            EXPECT_EQ(received[0].Text(), line.copyData);
        }
        else
        {
            EXPECT_EQ(received.size(), line.exitCode == kResultWindowNotFound ? 0u : 1u);
        }
    }
};

TEST_F(RawLine, IsSearchedAsOneText)
{
    // clang-format off
    const Line lines[] = {
        {"names in any case", L" -NODLG -KLA={class} -CopyData=ABC", kResultAccepted, L"ABC"},
        {"the first of a repeated switch", L" -nodlg -copydata=a -copydata=b -kla={class} -kla=x", kResultAccepted, L"a"},
        {"a value ends at its first blank", L" -nodlg -copydata=abc def -kla={class}", kResultAccepted, L"abc"},
        {"a switch at the end of the line", L" -kla={class} -copydata=abc -nodlg", kResultAccepted, L"abc"},
        {"a flag's text needs nothing after it", L" -kla={class} -copydata=a -nodlgxyz", kResultAccepted, L"a"},
        {"a flag inside a quoted value", L" -kla={class} -copydata=\"x -nodlg\"", kResultAccepted, L"x -nodlg"},
        {"a flag inside a window text", L" -kla={class} -nam=\"x -nodlg\"", kResultCancelled, {}},
        {"a quoted value keeps blanks and tabs", L" -nodlg -kla={class} -copydata=\" a \t b \"", kResultAccepted, L" a \t b "},
        {"a tab does not end a value", L" -nodlg -kla={class} -copydata=a\tb c", kResultAccepted, L"a\tb"},
        {"a quote inside a value is kept", L" -nodlg -kla={class} -copydata=a\"b c\"", kResultAccepted, L"a\"b"},
        {"an unclosed quote takes the rest", L" -nodlg -kla={class} -copydata=\"a b -msg=5", kResultAccepted, L"a b -msg=5"},
        {"a lone quote is empty: a notification", L" -nodlg -kla={class} -copydata=\"", kResultCancelled, {}},
        {"an empty value is none", L" -nodlg -kla={class} -copydata=\"\"", kResultCancelled, {}},
        {"an empty text is none", L" -nodlg -kla={class} -nam= -copydata=a", kResultAccepted, L"a"},
        {"a quoted empty text is none", L" -nodlg -kla={class} -nam=\"\" -copydata=a", kResultAccepted, L"a"},
        {"a dash after a quote is no switch", L" -nodlg -kla={class} \"-copydata=a\"", kResultCancelled, {}},
        {"a longer name is another switch", L" -nodlg -kla={class} -copydataencoding=a", kResultCancelled, {}},
        {"unknown switches and words are ignored", L" -nodlg /kla=x --kla=y -what word -kla={class}", kResultCancelled, {}},
        {"units beyond ASCII move no position", L" İßﬁÄ\xD83D\xDD0D -nodlg -kla={class} -copydata=Ä", kResultAccepted, L"Ä"},
    };
    // clang-format on
    for (const Line& line : lines)
    {
        Expect(line);
    }
}

TEST(Switches, TextSwitchInsideAnothersValueIsFound)
{
    const ScriptedHost host(UniqueHost());
    const std::wstring text = L"to -kla=" + host.ClassName() + L" now";
    EXPECT_EQ(RunQuillet(L" -nodlg -copydata=\"" + text + L'"'), kResultAccepted);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].Text(), text);
}

TEST(Switches, NothingToSearchForEndsWithoutSending)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=\"\" -nam= -copydata=abc"), kResultCancelled);
    EXPECT_EQ(RunQuillet(L" -nodlg \t-kla=" + host.ClassName()), kResultCancelled);
    EXPECT_TRUE(host.ReceivedSoFar().empty());
}

// Only a blank makes a switch.
TEST(Switches, AfterATabIsNoSwitch)
{
    const ScriptedHost host(UniqueHost());
    const QuilletRun run(L"\t-nodlg\t-kla=" + host.ClassName());
    const HWND dialog = run.WaitForWaitingDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(host.ReceivedSoFar().empty());
    ::PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

TEST(Switches, FirstInTheLineNeedsABlankBeforeIt)
{
    const Process run(BuiltProgram(L"quillet.exe"), L"-nodlg");
    HWND dialog = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        dialog = FindProcessWindow(run.Id(), L"#32770", kWaitDialogCaption);
        return dialog != nullptr;
    }));
    ASSERT_TRUE(WaitForPostedMessages(dialog));
    ::PostMessageW(dialog, WM_CLOSE, 0, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// The program's own path is part of the line.
TEST(Switches, InTheProgramsPathAreFound)
{
    const auto folder =
        std::filesystem::temp_directory_path() / (UniqueName(L"Quillet") + L" -nodlg -msg=5 x");
    std::filesystem::create_directories(folder);
    const auto program = folder / L"quillet.exe";
    std::filesystem::copy_file(BuiltProgram(L"quillet.exe"), program);
    const ScriptedHost host(UniqueHost());
    {
        const Process run(program, L'"' + program.wstring() + L"\" -kla=" + host.ClassName());
        EXPECT_EQ(run.WaitForExit(), kResultCancelled);
    }
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 5u);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

} // namespace
