// The C++ caller that the packages carry.
#include "tests/recipes/RecipeRun.h"
#include "tests/support/Process.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

#include <string>

namespace
{

using Caller = Recipe;

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

TEST_F(Caller, FindsTheProgramOfItsPackageAndPassesTheLineOnUnchanged)
{
    ::SetEnvironmentVariableW(L"QUILLET", nullptr);
    const RecipeHost host;
    const Outcome outcome = RunPackagedCaller(
        L"15 \"quillet.exe -kla=QuilletBeispielHost -copydata=\\\"Vorgang 4711\\\"\"");
    EXPECT_EQ(outcome.output, "42\r\n");
    EXPECT_EQ(outcome.exitCode, 0);
    host.ExpectText();
}

TEST_F(Caller, TakesTheProgramThatQuilletNames)
{
    ::SetEnvironmentVariableW(L"QUILLET", L"Z:\\no\\such\\program.exe");
    const Outcome outcome = RunPackagedCaller(L"15 \"quillet.exe -nodlg\"");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.output.starts_with("keiner (nicht gestartet")) << outcome.output;
}

// The host never answers; on a busy machine the text need not even have reached it.
TEST_F(Caller, EndsAProgramThatTakesTooLongAndTellsNoAnswer)
{
    const RecipeHost host([](HWND, const ReceivedMessage&) { return std::nullopt; });
    const Outcome outcome =
        RunInCmd(Quoted(BuiltProgram(L"example_caller.exe")) +
                 L" 1 \"quillet.exe -kla=QuilletBeispielHost -copydata=\\\"Vorgang 4711\\\"\"");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "keiner (nach 1 Sekunden beendet)\r\n");
    EXPECT_EQ(::FindWindowW(nullptr, kWaitDialogCaption), nullptr);
}

TEST_F(Caller, SendsATextThatIsGivenApart)
{
    constexpr wchar_t kHarmless[] = L"Vorgang 4711 - Muster & Co";
    const RecipeHost host;
    const Outcome outcome =
        RunInCmd(Quoted(BuiltProgram(L"example_caller.exe")) +
                 L" 15 \"quillet.exe -kla=QuilletBeispielHost\" " + Quoted(kHarmless));
    EXPECT_EQ(outcome.output, "42\r\n");
    host.ExpectText(kHarmless);
}

TEST_F(Caller, RefusesATextThatCouldHoldASwitch)
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

} // namespace
