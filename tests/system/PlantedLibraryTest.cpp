// Libraries planted beside the program, as a download folder may hold them, are never loaded.
#include "tests/support/PlantedLibrary.h"

#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <optional>
#include <string>

namespace
{

// No library of the system, so that only a planted one can answer to it.
constexpr const wchar_t* kForeignName = L"quillet_planted.dll";

// The imported ones, those that these bring along, and favourites of attackers: libraries that
// parts of the platform ask for at run time.
constexpr std::array kNames{
    L"kernel32.dll",    L"user32.dll",        L"msvcrt.dll",  L"gdi32.dll",     L"gdi32full.dll",
    L"advapi32.dll",    L"sechost.dll",       L"rpcrt4.dll",  L"ole32.dll",     L"combase.dll",
    L"oleaut32.dll",    L"imm32.dll",         L"shell32.dll", L"comctl32.dll",  L"version.dll",
    L"uxtheme.dll",     L"dwmapi.dll",        L"msctf.dll",   L"cryptbase.dll", L"bcrypt.dll",
    L"textshaping.dll", L"coremessaging.dll", L"winmm.dll",   L"oleacc.dll",    kForeignName};

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

    std::filesystem::path Copy(const wchar_t* program) const
    {
        std::filesystem::copy_file(BuiltProgram(program), m_path / program,
                                   std::filesystem::copy_options::skip_existing);
        return m_path / program;
    }

private:
    std::filesystem::path m_path;
};

/// Makes a thread of the process ask for a library by its bare name, as any part of the platform
/// might. Gives whether the process survived without having got one.
bool AsksInVain(const Process& process, const std::wstring& name)
{
    const size_t bytes = (name.size() + 1) * sizeof(wchar_t);
    void* const theirs = ::VirtualAllocEx(process.Handle(), nullptr, bytes,
                                          MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
    ::WriteProcessMemory(process.Handle(), theirs, name.c_str(), bytes, nullptr);
    // The system's libraries lie at the same addresses in every process.
    const auto load = reinterpret_cast<LPTHREAD_START_ROUTINE>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32"), "LoadLibraryW")));
    const HANDLE thread =
        ::CreateRemoteThread(process.Handle(), nullptr, 0, load, theirs, 0, nullptr);
    ::WaitForSingleObject(thread,
                          static_cast<DWORD>(std::chrono::milliseconds(kWaitLimit).count()));
    DWORD module = 1;
    ::GetExitCodeThread(thread, &module);
    ::CloseHandle(thread);
    return module == 0 && process.IsRunning();
}

HWND WaitForDialogOf(const Process& process)
{
    HWND dialog = nullptr;
    WaitUntil([&] {
        dialog = FindProcessWindow(process.Id(), L"#32770", nullptr);
        return ::IsWindowVisible(dialog) != FALSE || !process.IsRunning();
    });
    return dialog;
}

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

TEST(PlantedLibraries, CannotBeLoadedByTheirNames)
{
    const PlantedFolder folder;
    const auto program = folder.Copy(L"quillet.exe");
    const Process run(program, CommandLine(program, L""));
    ASSERT_NE(WaitForDialogOf(run), nullptr);
    EXPECT_TRUE(AsksInVain(run, kForeignName));
}

// The counterpart, without which the tests above would show nothing: a program that does not keep
// to the system's libraries loads them.
TEST(PlantedLibraries, EndAProgramThatTakesThem)
{
    const PlantedFolder folder;
    const auto program = folder.Copy(L"test_host.exe");
    const std::wstring name = UniqueName(L"PlantedHost");
    const Process host(program, L"test_host " + name + L" Host");
    ASSERT_TRUE(
        WaitUntil([&] { return FindProcessWindow(host.Id(), name.c_str(), nullptr) != nullptr; }));
    EXPECT_FALSE(AsksInVain(host, kForeignName));
    EXPECT_EQ(host.WaitForExit(), kLoadedPlantedLibrary);
}

} // namespace
