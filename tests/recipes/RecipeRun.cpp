#include "tests/recipes/RecipeRun.h"

#include "tests/support/Process.h"
#include "tests/support/ProgramPath.h"

#include <fstream>
#include <sstream>

std::wstring Quoted(const std::wstring& text)
{
    return L'"' + text + L'"';
}

std::wstring RecipePath(const wchar_t* name)
{
    return BuiltProgram(L"recipes").append(name).make_preferred().wstring();
}

std::wstring ScratchPath(const wchar_t* name)
{
    wchar_t folder[MAX_PATH + 1];
    ::GetTempPathW(MAX_PATH + 1, folder);
    return folder + std::wstring(name);
}

std::string ContentOf(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

Outcome RunInCmd(const std::wstring& commandLine)
{
    wchar_t system[MAX_PATH];
    ::GetSystemDirectoryW(system, MAX_PATH);
    const std::filesystem::path output = ScratchPath(L"output.txt");
    const Process cmd(std::filesystem::path(system) / L"cmd.exe",
                      L"cmd /c \"" + commandLine + L" > " + Quoted(output.wstring()) + L'"');
    constexpr std::chrono::seconds kLimit{60}; // the interpreters of recipes take long to start
    const auto exitCode = cmd.WaitForExit(kLimit);
    return {exitCode, ContentOf(output)};
}

RecipeHost::RecipeHost(Script script)
    : ScriptedHost({kHostClass, L"Beispiel-Host"}, std::move(script))
{
}

void RecipeHost::ExpectText(const std::wstring& text) const
{
    const auto received = WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_COPYDATA));
    EXPECT_EQ(received[0].Text(), text);
}

ForeignHost::ForeignHost() : ScriptedHost({.className = L"HangHost", .alsoRecord = {WM_CLOSE}}) {}

Recipe::Recipe()
{
    ::SetEnvironmentVariableW(L"QUILLET", BuiltProgram(L"quillet.exe").c_str());
}
