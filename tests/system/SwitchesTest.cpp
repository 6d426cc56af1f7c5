// How switches are found and read, from the raw command line to what a real host window receives.
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/Replace.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace
{

// The forms that numbers and texts can have are rows of the unit tests; here some of them take the
// way through a real command line.
TEST(Switches, NumbersAreRead)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=" + host.ClassName() +
                         L" -msg=0x10 -wparam=\t 010 -lparam=-3abc"),
              kResultCancelled);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 16u);
    EXPECT_EQ(received[0].wParam, 8u);
    EXPECT_EQ(received[0].lParam, -3);
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

TEST(Switches, AreSearchedInOneText)
{
    // clang-format off
    constexpr struct
    {
        const char* reason;
        const wchar_t* arguments;
        const wchar_t* copyData;
    } kRows[] = {
        {"a flag inside a quoted value", L" -KLA=HOST -CopyData=\"x -nodlg\"", L"x -nodlg"},
        {"a quoted value keeps blanks and tabs", L" -nodlg -kla=HOST -copydata=\" a \t b \"", L" a \t b "},
        {"units beyond ASCII move no position", L" İßﬁÄ\xD83D\xDD0D -nodlg -kla=HOST -copydata=Ä", L"Ä"},
    };
    // clang-format on
    for (const auto& row : kRows)
    {
        SCOPED_TRACE(row.reason);
        const ScriptedHost host(UniqueHost());
        std::wstring arguments = row.arguments;
        Replace(arguments, L"HOST", host.ClassName());
        EXPECT_EQ(RunQuillet(arguments), kResultAccepted);
        const auto received = host.ReceivedSoFar();
        ASSERT_EQ(received.size(), 1u);
        EXPECT_EQ(received[0].Text(), row.copyData);
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
    const HWND dialog = WaitForBox(run.Id(), kWaitDialogCaption);
    ASSERT_NE(dialog, nullptr);
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
