// A run writes nothing: neither registry nor files differ afterwards, the folder of the program and
// the current one included.
//
// Under Wine only, where a prefix belongs to the tests alone: seen there, neither Wine nor its
// services change anything while nobody does (60 seconds from the start of a desktop), so nothing
// is left out. On Windows the system and other programs write all the time; who wrote what is told
// there by a monitor of processes only.
#include "app/AbnormalEnd.h"
#include "app/ResultCode.h"
#include "res/resource.h"
#include "tests/support/DialogProbe.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/RunsUnderWine.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/Traces.h"
#include "tests/support/UniqueHandle.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace
{

/// A new folder with a copy of the program, and the current folder until the end of this object.
class OwnFolder
{
public:
    OwnFolder()
    {
        std::filesystem::create_directory(m_path);
        std::filesystem::copy_file(BuiltProgram(L"quillet.exe"), Program());
        std::filesystem::current_path(m_path);
    }

    ~OwnFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }

    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    std::filesystem::path Program() const { return m_path / L"quillet.exe"; }

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
    const std::filesystem::path m_path =
        std::filesystem::temp_directory_path() / UniqueName(L"QuilletLeavesNothing");
};

/// A run of that copy.
class RunOfCopy : public Process
{
public:
    RunOfCopy(const OwnFolder& folder, const std::wstring& arguments)
        : Process(folder.Program(), L"quillet.exe" + arguments)
    {
    }
};

void JustWait(const RunOfCopy&) {}

void CancelWaiting(const RunOfCopy& run)
{
    ::PostMessageW(WaitForBox(run.Id(), kWaitDialogCaption), WM_COMMAND, IDCANCEL, 0);
}

void CloseHelp(const RunOfCopy& run)
{
    ::PostMessageW(WaitForBox(run.Id(), L"Orvane"), WM_COMMAND, IDOK, 0);
}

void LookAtTheAboutBoxAndCancel(const RunOfCopy& run)
{
    ::PostMessageW(WaitForBox(run.Id(), kWaitDialogCaption), WM_SYSCOMMAND, IDM_ABOUTBOX, 0);
    ::PostMessageW(WaitForBox(run.Id(), kAboutBoxCaption), WM_COMMAND, IDOK, 0);
    CancelWaiting(run);
}

struct Shape
{
    const char* name;
    /// What goes before the host's class.
    std::wstring arguments;
    std::function<void(const RunOfCopy&)> user;
    int exitCode;
};

const Shape kShapes[] = {
    {"notification", L" -nodlg -msg=7 -lparam=0x10 -kla=", JustWait, kResultCancelled},
    {"answered text", L" -copydata=Größe -copydataencoding=UTF-8 -kla=", JustWait, 42},
    {"text in the ANSI code page", L" -nodlg -copydata=Größe -copydataencoding=ANSI -kla=",
     JustWait, kResultAccepted},
    {"notification, cancelled", L" -msg=7 -kla=", CancelWaiting, kResultCancelled},
    {"About box", L" -kla=", LookAtTheAboutBoxAndCancel, kResultCancelled},
    {"URL", L" -url=x:y?copydata=a%C3%A4&copydataencoding=UTF-8&kla=", JustWait, 42},
    {"pattern and activation", L" -seaglob -activatewindow -copydata=abc -kla=*", JustWait, 42},
    {"no such window", L" -kla=Nobody", JustWait, kResultWindowNotFound},
    {"help", L" -? -kla=", CloseHelp, kResultCancelled},
    {"uncaught exception", L" -url=x?nam=%&kla=", JustWait, static_cast<int>(kAbnormalEndExitCode)},
};

class LeavesNothing : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!RunsUnderWine())
        {
            GTEST_SKIP()
                << "Other programs write at the same time, and nothing tells theirs from ours";
        }
    }
};

// Two looks around all runs, since one takes seconds on a busy machine.
TEST_F(LeavesNothing, InRegistryAndFiles)
{
    const OwnFolder folder;
    const ScriptedHost host(UniqueHost(), AnswerWith(42));
    ASSERT_TRUE(host.WaitForFocus());
    const Traces before = AllTraces();
    for (const Shape& shape : kShapes)
    {
        SCOPED_TRACE(shape.name);
        const RunOfCopy run(folder, shape.arguments + host.ClassName());
        shape.user(run);
        EXPECT_EQ(run.WaitForExit(), shape.exitCode);
    }
    EXPECT_EQ(Differences(before, AllTraces()), std::vector<std::wstring>{});
    EXPECT_TRUE(before.contains(folder.Program().wstring()));
}

// --- That the comparison sees what there is to see --------------------------------------------

/// A key below the user's settings, with one value; gone with this object.
class PlantedKey
{
public:
    PlantedKey()
    {
        HKEY key = nullptr;
        ::RegCreateKeyExW(HKEY_CURRENT_USER, m_path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                          &key, nullptr);
        m_key.reset(key);
        Write(1);
    }
    ~PlantedKey() { ::RegDeleteKeyW(HKEY_CURRENT_USER, m_path.c_str()); }
    PlantedKey(const PlantedKey&) = delete;
    PlantedKey& operator=(const PlantedKey&) = delete;

    void Write(DWORD number) const
    {
        ::RegSetValueExW(m_key.get(), L"Number", 0, REG_DWORD,
                         reinterpret_cast<const BYTE*>(&number), sizeof(number));
    }
    const std::wstring& Name() const { return m_name; }

private:
    const std::wstring m_name = UniqueName(L"QuilletPlantedKey");
    const std::wstring m_path = L"Software\\" + m_name;
    UniqueHandle<HKEY, &::RegCloseKey> m_key;
};

/// Whether one of the differences is of this kind and ends with this name.
bool Has(const std::vector<std::wstring>& differences, const std::wstring& kind,
         const std::wstring& name)
{
    return std::any_of(differences.begin(), differences.end(), [&](const std::wstring& line) {
        return line.starts_with(kind + L' ') && line.ends_with(L'\\' + name);
    });
}

TEST_F(LeavesNothing, IsNotSaidWhenThereIsAKeyOrAFileMore)
{
    const Traces before = AllTraces();
    const PlantedKey key;
    const OwnFolder folder;
    const auto differences = Differences(before, AllTraces());
    EXPECT_TRUE(Has(differences, L"new", key.Name()));
    EXPECT_TRUE(Has(differences, L"changed", L"Software"));
    EXPECT_TRUE(Has(differences, L"new", L"quillet.exe"));
    EXPECT_TRUE(Has(differences, L"changed", L"Temp"));
}

TEST_F(LeavesNothing, IsNotSaidWhenAValueHasChanged)
{
    const PlantedKey key;
    const auto look = [] {
        Traces traces;
        AddKeys(HKEY_CURRENT_USER, L"HKEY_CURRENT_USER", traces);
        return traces;
    };
    const Traces before = look();
    EXPECT_EQ(Differences(before, look()), std::vector<std::wstring>{});
    key.Write(2);
    EXPECT_TRUE(Has(Differences(before, look()), L"changed", key.Name()));
}

// Again when the file system's clock, which ticks every few milliseconds, still stands where it
// did.
TEST_F(LeavesNothing, IsNotSaidOfAFileThatWasThereForAMoment)
{
    const OwnFolder folder;
    const std::filesystem::path path = folder.Program().parent_path();
    const auto look = [&] {
        Traces traces;
        AddFiles(path.wstring(), traces);
        return traces;
    };
    const Traces before = look();
    EXPECT_EQ(Differences(before, look()), std::vector<std::wstring>{});
    const std::vector<std::wstring> changed{L"changed " + path.wstring()};
    EXPECT_TRUE(WaitUntil([&] {
        std::ofstream(path / L"moment.txt") << "x";
        std::filesystem::remove(path / L"moment.txt");
        return Differences(before, look()) == changed;
    }));
}

} // namespace
