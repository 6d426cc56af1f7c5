// What the handbook warns callers of.
#include "app/ResultCode.h"
#include "tests/recipes/RecipeRun.h"
#include "tests/support/CodePage.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

#include <fstream>
#include <string>

namespace
{

using HandbookWarnings = Recipe;

// Why the recipes refuse it: what this text does, from inside the quotes and with a class given.
TEST_F(HandbookWarnings, HostileTextHasTheProgramCloseAnotherWindow)
{
    const RecipeHost host;
    const ForeignHost foreign;
    EXPECT_EQ(RunQuillet(L" -kla=QuilletBeispielHost -copydata=" + Quoted(kHostileText)), -1);
    const auto received = foreign.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_CLOSE));
    EXPECT_TRUE(host.Received().empty());
}

// Both look like a notification that was sent.
TEST_F(HandbookWarnings, MisspeltClassEndsLikeANotificationThatWasSent)
{
    const RecipeHost host;
    EXPECT_EQ(RunQuillet(L" -nodlg --kla=QuilletBeispielHost"), -1);
    EXPECT_EQ(RunQuillet(L" -nodlg -kla QuilletBeispielHost"), -1);
    EXPECT_TRUE(host.Received().empty());
}

// Programs that build the command line from a list put the quotes around the whole argument, and a
// dash after a quote begins no switch.
TEST_F(HandbookWarnings, SwitchInsideQuotesIsNotFound)
{
    const RecipeHost host;
    const Outcome outcome =
        RunInCmd(Quoted(BuiltProgram(L"quillet.exe")) +
                 L" -nodlg -kla=QuilletBeispielHost \"-copydata=Vorgang 4711\"");
    EXPECT_EQ(outcome.exitCode, kResultCancelled);
    const auto received = host.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_USER));
}

constexpr wchar_t kUmlauts[] = L"Gr\u00F6\u00DFe";

/// Whether nothing is lost on the way there and back.
bool HasUmlauts(UINT codePage)
{
    return FromCodePage(codePage, InCodePage(codePage, kUmlauts)) == kUmlauts;
}

/// A batch file that sends a text with umlauts, saved in a code page.
std::wstring BatchFile(UINT codePage)
{
    const std::filesystem::path file = ScratchPath(L"umlaut.cmd");
    std::ofstream(file, std::ios::binary)
        << InCodePage(codePage, L"@\"%QUILLET%\" -kla=QuilletBeispielHost -copydata=\"" +
                                    std::wstring(kUmlauts) + L"\"\r\n");
    return file.wstring();
}

// A console begins with the system's OEM code page.
TEST_F(HandbookWarnings, BatchFileInTheCodePageOfTheConsoleSendsUmlauts)
{
    if (!HasUmlauts(::GetOEMCP()))
    {
        GTEST_SKIP() << "the console's code page " << ::GetOEMCP() << " has no umlauts";
    }
    const RecipeHost host;
    EXPECT_EQ(RunInCmd(Quoted(BatchFile(::GetOEMCP()))).exitCode, static_cast<int>(kAnswer));
    host.ExpectText(kUmlauts);
}

TEST_F(HandbookWarnings, BatchFileInUtf8SendsGarbageWithoutItsCodePage)
{
    if (::GetOEMCP() == CP_UTF8)
    {
        GTEST_SKIP() << "UTF-8 is the console's code page";
    }
    const RecipeHost host;
    EXPECT_EQ(RunInCmd(Quoted(BatchFile(CP_UTF8))).exitCode, static_cast<int>(kAnswer));
    const auto received = host.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_NE(received[0].Text(), kUmlauts);
}

} // namespace
