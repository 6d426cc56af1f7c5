// The recipes that ask whether the host runs, or start it.
#include "tests/recipes/RecipeRun.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

namespace
{

constexpr wchar_t kHostClass[] = L"QuilletBeispielHost";

TEST_F(Recipe, HostIsFoundRunningWithoutBeingTroubled)
{
    const RecipeHost host;
    const Outcome outcome = RunInCmd(Quoted(RecipePath(L"batch\\is-host-running.cmd")));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "Der Host laeuft.\r\n");
    EXPECT_TRUE(host.Received().empty()); // nothing from WM_USER up, and no text
}

TEST_F(Recipe, HostIsFoundMissing)
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

TEST_F(Recipe, MissingHostIsStartedAndGetsTheText)
{
    ASSERT_EQ(::FindWindowW(kHostClass, nullptr), nullptr);
    const Outcome outcome = StartAndSend(BuiltProgram(L"example_host.exe").wstring(), L"30");
    EXPECT_EQ(outcome.exitCode, 2); // what the example host answers
    const HWND host = ::FindWindowW(kHostClass, nullptr);
    ASSERT_NE(host, nullptr);
    ::PostMessageW(host, WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitUntil([host] { return !::IsWindow(host); }));
}

TEST_F(Recipe, HostThatRunsIsNotStartedAgain)
{
    const RecipeHost host;
    const Outcome outcome = StartAndSend(L"Z:\\no\\such\\host.exe", L"30");
    EXPECT_EQ(outcome.exitCode, static_cast<int>(kAnswer));
    EXPECT_EQ(outcome.output, "");
    host.ExpectText();
}

TEST_F(Recipe, HostIsNotStartedForATextThatCouldHoldASwitch)
{
    const ForeignHost foreign;
    const Outcome outcome = StartAndSend(L"Z:\\no\\such\\host.exe", L"1", kHostileText);
    EXPECT_EQ(outcome.exitCode, -101);
    EXPECT_TRUE(outcome.output.starts_with("Nicht gesendet: ")) << outcome.output;
    EXPECT_TRUE(foreign.Received().empty());
}

TEST_F(Recipe, HostThatNeverAppearsIsGivenUp)
{
    wchar_t system[MAX_PATH];
    ::GetSystemDirectoryW(system, MAX_PATH);
    const Outcome outcome = StartAndSend(std::wstring(system) + L"\\hostname.exe", L"2");
    EXPECT_EQ(outcome.exitCode, -2);
    EXPECT_NE(outcome.output.find("Der Host ist nicht erschienen.\r\n"), std::string::npos)
        << outcome.output;
}

/// The small host of the host guide, in a process of its own.
class SmallHost : public testing::Test
{
protected:
    SmallHost() : m_process(BuiltProgram(L"small_host.exe"), L"small_host.exe")
    {
        EXPECT_TRUE(WaitUntil([this] { return Window() != nullptr; }));
    }

    HWND Window() const { return FindProcessWindow(m_process.Id(), L"SmallHost", nullptr); }

    std::wstring Title() const
    {
        wchar_t title[64];
        ::GetWindowTextW(Window(), title, 64);
        return title;
    }

private:
    Process m_process;
};

TEST_F(SmallHost, ShowsTheTextAndAnswers)
{
    EXPECT_EQ(RunQuillet(L" -kla=SmallHost -copydata=\"Vorgang 4711\""), 2);
    EXPECT_EQ(Title(), L"SmallHost: Vorgang 4711");
}

TEST_F(SmallHost, TakesATextThatNobodyWaitsFor)
{
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=SmallHost -copydata=a"), 0);
    EXPECT_EQ(Title(), L"SmallHost: a");
}

TEST_F(SmallHost, RefusesWhatIsTooLongOrNoText)
{
    const std::wstring text(1001, L'a');
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=SmallHost -copydata=" + text), -3);
    EXPECT_EQ(RunQuillet(L" -nodlg -kla=SmallHost -copydata=a -copydataencoding=UTF-8"), -3);
    EXPECT_EQ(Title(), L"SmallHost");
}

} // namespace
