// What the handbook tells callers of exit codes and of the C++ caller that the packages carry.
#include "tests/recipes/RecipeRun.h"
#include "tests/support/Process.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

#include <fstream>
#include <string>
#include <string_view>

namespace
{

/// Runs a copy of the caller as a package has it, two folders below the program, with the variable
/// QUILLET as it is.
Outcome RunPackagedCaller(const std::wstring& arguments)
{
    const std::filesystem::path package = ScratchPath(L"package");
    const std::filesystem::path folder = package / L"examples" / L"caller";
    const std::filesystem::path caller = folder / L"example_caller.exe";
    std::filesystem::create_directories(folder);
    ::CopyFileW(BuiltProgram(L"quillet.exe").c_str(), (package / L"quillet.exe").c_str(), FALSE);
    ::CopyFileW(BuiltProgram(L"example_caller.exe").c_str(), caller.c_str(), FALSE);
    return RunInCmd(Quoted(std::filesystem::path(caller).make_preferred().wstring()) + L' ' +
                    arguments);
}

TEST_F(Recipe, CallerFindsTheProgramOfItsPackage)
{
    ::SetEnvironmentVariableW(L"QUILLET", nullptr);
    const RecipeHost host;
    const Outcome outcome = RunPackagedCaller(
        L"15 \"quillet.exe -kla=QuilletBeispielHost -copydata=\\\"Vorgang 4711\\\"\"");
    EXPECT_EQ(outcome.output, "42\r\n");
    EXPECT_EQ(outcome.exitCode, 0);
    host.ExpectText();
}

TEST_F(Recipe, CallerTakesTheProgramThatQuilletNames)
{
    ::SetEnvironmentVariableW(L"QUILLET", L"Z:\\no\\such\\program.exe");
    const Outcome outcome = RunPackagedCaller(L"15 \"quillet.exe -nodlg\"");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.output.starts_with("keiner (nicht gestartet")) << outcome.output;
}

// The host never answers; on a busy machine the text need not even have reached it.
TEST_F(Recipe, CallerEndsAProgramThatTakesTooLongAndTellsNoAnswer)
{
    const RecipeHost host([](HWND, const ReceivedMessage&) { return std::nullopt; });
    const Outcome outcome =
        RunInCmd(Quoted(BuiltProgram(L"example_caller.exe")) +
                 L" 1 \"quillet.exe -kla=QuilletBeispielHost -copydata=\\\"Vorgang 4711\\\"\"");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "keiner (nach 1 Sekunden beendet)\r\n");
    EXPECT_EQ(::FindWindowW(nullptr, kWaitDialogCaption), nullptr);
}

TEST_F(Recipe, CallerSendsATextThatIsGivenApart)
{
    constexpr wchar_t kHarmless[] = L"Vorgang 4711 - Muster & Co";
    const RecipeHost host;
    const Outcome outcome =
        RunInCmd(Quoted(BuiltProgram(L"example_caller.exe")) +
                 L" 15 \"quillet.exe -kla=QuilletBeispielHost\" " + Quoted(kHarmless));
    EXPECT_EQ(outcome.output, "42\r\n");
    host.ExpectText(kHarmless);
}

TEST_F(Recipe, CallerRefusesATextThatCouldHoldASwitch)
{
    const RecipeHost host;
    const ForeignHost foreign;
    for (const wchar_t* text : {kHostileText, L"Was heisst -?", L"- -NODLG", L""})
    {
        const Outcome outcome =
            RunInCmd(Quoted(BuiltProgram(L"example_caller.exe")) +
                     L" 15 \"quillet.exe -kla=QuilletBeispielHost\" " + Quoted(text));
        EXPECT_EQ(outcome.exitCode, 1) << text;
        EXPECT_TRUE(outcome.output.starts_with("keiner (nicht gesendet")) << outcome.output;
    }
    const Process quote(BuiltProgram(L"example_caller.exe"),
                        L"example_caller 15 \"quillet.exe -kla=QuilletBeispielHost\" a\\\"b");
    EXPECT_EQ(quote.WaitForExit(), 1);
    EXPECT_TRUE(host.Received().empty());
    EXPECT_TRUE(foreign.Received().empty());
}

// Why the recipes refuse it: what this text does, from inside the quotes and with a class given.
TEST_F(Recipe, HostileTextHasTheProgramCloseAnotherWindow)
{
    const RecipeHost host;
    const ForeignHost foreign;
    EXPECT_EQ(RunQuillet(L" -kla=QuilletBeispielHost -copydata=" + Quoted(kHostileText)), -1);
    const auto received = foreign.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_CLOSE));
    EXPECT_TRUE(host.Received().empty());
}

// The handbook warns of it: both look like a notification that was sent.
TEST_F(Recipe, MisspeltClassEndsLikeANotificationThatWasSent)
{
    const RecipeHost host;
    EXPECT_EQ(RunQuillet(L" -nodlg --kla=QuilletBeispielHost"), -1);
    EXPECT_EQ(RunQuillet(L" -nodlg -kla QuilletBeispielHost"), -1);
    EXPECT_TRUE(host.Received().empty());
}

constexpr wchar_t kUmlauts[] = L"Gr\u00F6\u00DFe";

std::string InCodePage(UINT codePage, const std::wstring& text)
{
    std::string bytes(text.size() * 3, '\0'); // the most that a unit can take
    const int size =
        ::WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                              static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<size_t>(size));
    return bytes;
}

/// Whether nothing is lost on the way there and back.
bool HasUmlauts(UINT codePage)
{
    const std::string bytes = InCodePage(codePage, kUmlauts);
    wchar_t text[16]{};
    ::MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), text, 15);
    return std::wstring_view(text) == kUmlauts;
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
TEST_F(Recipe, BatchFileInTheCodePageOfTheConsoleSendsUmlauts)
{
    if (!HasUmlauts(::GetOEMCP()))
    {
        GTEST_SKIP() << "the console's code page " << ::GetOEMCP() << " has no umlauts";
    }
    const RecipeHost host;
    EXPECT_EQ(RunInCmd(Quoted(BatchFile(::GetOEMCP()))).exitCode, static_cast<int>(kAnswer));
    host.ExpectText(kUmlauts);
}

TEST_F(Recipe, BatchFileInUtf8SendsGarbageWithoutItsCodePage)
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
