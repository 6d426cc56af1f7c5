// The recipes that ask whether the host runs, or start it.
#include "tests/recipes/RecipeRun.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/Waiting.h"

namespace
{

using HostRecipes = Recipe;

TEST_F(HostRecipes, HostIsFoundRunningWithoutBeingTroubled)
{
    const RecipeHost host;
    const Outcome outcome = RunInCmd(Quoted(RecipePath(L"batch\\is-host-running.cmd")));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "Der Host laeuft.\r\n");
    EXPECT_TRUE(host.Received().empty()); // nothing from WM_USER up, and no text
}

TEST_F(HostRecipes, HostIsFoundMissing)
{
    const Outcome outcome = RunInCmd(Quoted(RecipePath(L"batch\\is-host-running.cmd")));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "Der Host laeuft nicht.\r\n");
}

/// The recipe that starts the host, with the program that it starts and the attempts that it has.
Outcome StartAndSend(const std::wstring& program, const wchar_t* attempts,
                     const std::wstring& text = kText)
{
    ::SetEnvironmentVariableW(L"HOST", program.c_str());
    ::SetEnvironmentVariableW(L"ATTEMPTS", attempts);
    return RunInCmd(Quoted(RecipePath(L"batch\\start-and-send.cmd")) + L' ' + Quoted(text));
}

TEST_F(HostRecipes, MissingHostIsStartedAndGetsTheText)
{
    ASSERT_EQ(::FindWindowW(kHostClass, nullptr), nullptr);
    const Outcome outcome = StartAndSend(BuiltProgram(L"example_host.exe").wstring(), L"30");
    EXPECT_EQ(outcome.exitCode, 2); // what the example host answers
    const HWND host = ::FindWindowW(kHostClass, nullptr);
    ASSERT_NE(host, nullptr);
    ::PostMessageW(host, WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitUntil([host] { return !::IsWindow(host); }));
}

TEST_F(HostRecipes, HostThatRunsIsNotStartedAgain)
{
    const RecipeHost host;
    const Outcome outcome = StartAndSend(L"Z:\\no\\such\\host.exe", L"30");
    EXPECT_EQ(outcome.exitCode, static_cast<int>(kAnswer));
    EXPECT_EQ(outcome.output, "");
    host.ExpectText();
}

TEST_F(HostRecipes, HostIsNotStartedForATextThatCouldHoldASwitch)
{
    const ForeignHost foreign;
    const Outcome outcome = StartAndSend(L"Z:\\no\\such\\host.exe", L"1", kHostileText);
    EXPECT_EQ(outcome.exitCode, -101);
    EXPECT_TRUE(outcome.output.starts_with("Nicht gesendet: ")) << outcome.output;
    EXPECT_TRUE(foreign.Received().empty());
}

TEST_F(HostRecipes, HostThatNeverAppearsIsGivenUp)
{
    wchar_t system[MAX_PATH];
    ::GetSystemDirectoryW(system, MAX_PATH);
    const Outcome outcome = StartAndSend(std::wstring(system) + L"\\hostname.exe", L"2");
    EXPECT_EQ(outcome.exitCode, -2);
    EXPECT_NE(outcome.output.find("Der Host ist nicht erschienen.\r\n"), std::string::npos)
        << outcome.output;
}

} // namespace
