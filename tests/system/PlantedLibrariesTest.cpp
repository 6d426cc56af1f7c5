// Libraries planted beside the program, as a download folder may hold them, are never loaded.
#include "app/ResultCode.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/PlantedLibrary.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

namespace
{

// The imported ones, those that these bring along, and favourites of attackers: libraries that
// parts of the platform ask for at run time. (What is asked for by a name that no library of the
// system has is the unit tests' subject.)
constexpr std::array kNames{
    L"kernel32.dll",    L"user32.dll",        L"msvcrt.dll",  L"gdi32.dll",     L"gdi32full.dll",
    L"advapi32.dll",    L"sechost.dll",       L"rpcrt4.dll",  L"ole32.dll",     L"combase.dll",
    L"oleaut32.dll",    L"imm32.dll",         L"shell32.dll", L"comctl32.dll",  L"version.dll",
    L"uxtheme.dll",     L"dwmapi.dll",        L"msctf.dll",   L"cryptbase.dll", L"bcrypt.dll",
    L"textshaping.dll", L"coremessaging.dll", L"winmm.dll",   L"oleacc.dll"};

/// A folder with copies of programs and the planted library under all names; gone with this object.
class PlantedFolder
{
public:
    PlantedFolder()
        : m_path(std::filesystem::temp_directory_path() / UniqueName(L"PlantedLibraries"))
    {
        std::filesystem::create_directory(m_path);
        for (const wchar_t* name : kNames)
        {
            std::filesystem::copy_file(BuiltProgram(L"planted_library.dll"), m_path / name);
        }
    }

    ~PlantedFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    PlantedFolder(const PlantedFolder&) = delete;
    PlantedFolder& operator=(const PlantedFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    std::filesystem::path Copy(const wchar_t* program) const
    {
        std::filesystem::copy_file(BuiltProgram(program), m_path / program);
        return m_path / program;
    }

private:
    std::filesystem::path m_path;
};

std::wstring CommandLine(const std::filesystem::path& program, const std::wstring& arguments)
{
    return L'"' + program.wstring() + L'"' + arguments;
}

TEST(PlantedLibraries, DoNotDisturbAWholeRun)
{
    const PlantedFolder folder;
    const auto program = folder.Copy(L"quillet.exe");
    const ScriptedHost host({UniqueName(L"PlantedHost"), L"Host"}, AnswerWith(7));
    const Process run(program,
                      CommandLine(program, L" -activatewindow -copydata=x -url=\"demo://open?kla=" +
                                               host.ClassName() + L"\""));
    EXPECT_EQ(run.WaitForExit(), 7);
}

TEST(PlantedLibraries, DoNotDisturbADialogThatIsShownAndCancelled)
{
    const PlantedFolder folder;
    const auto program = folder.Copy(L"quillet.exe");
    const Process run(program, CommandLine(program, L""));
    const HWND dialog = WaitForBox(run.Id(), kWaitDialogCaption);
    ASSERT_NE(dialog, nullptr);
    ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    EXPECT_EQ(run.WaitForExit(), kResultCancelled);
}

// The counterpart, without which the tests above would show nothing: a program that does not keep
// to the system's libraries loads them. On Windows the first may be loaded before it asks for one.
TEST(PlantedLibraries, EndAProgramThatTakesThem)
{
    const PlantedFolder folder;
    const auto program = folder.Copy(L"test_host.exe");
    std::filesystem::copy_file(BuiltProgram(L"planted_library.dll"),
                               folder.Path() / kLibraryToLoad);
    const std::wstring name = UniqueName(L"PlantedHost");
    const Process host(program, L"test_host " + name + L" Host load");
    EXPECT_EQ(host.WaitForExit(), kLoadedPlantedLibrary);
}

} // namespace
