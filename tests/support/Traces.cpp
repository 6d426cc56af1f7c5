#include "tests/support/Traces.h"

#include "tests/support/UniqueHandle.h"

#include <array>
#include <filesystem>

namespace
{

std::uint64_t Joined(DWORD high, DWORD low)
{
    return std::uint64_t{high} << 32 | low;
}

std::uint64_t Number(const FILETIME& time)
{
    return Joined(time.dwHighDateTime, time.dwLowDateTime);
}

std::wstring NameOfSubkey(HKEY key, DWORD index)
{
    constexpr DWORD kLongestName = 255;
    std::array<wchar_t, kLongestName + 1> name{};
    auto length = static_cast<DWORD>(name.size());
    ::RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    return {name.data(), length};
}

void AddSubkey(HKEY key, const std::wstring& subkey, const std::wstring& path, Traces& traces)
{
    HKEY opened = nullptr;
    if (::RegOpenKeyExW(key, subkey.c_str(), REG_OPTION_OPEN_LINK, KEY_READ, &opened) !=
        ERROR_SUCCESS)
    {
        // Without a key one may look into, its being there is all there is to see.
        traces[path] = {};
        return;
    }
    const UniqueHandle<HKEY, &::RegCloseKey> closes(opened);
    AddKeys(opened, path, traces);
}

bool IsItselfOrParent(const std::wstring& name)
{
    return name == L"." || name == L"..";
}

void AddFound(const WIN32_FIND_DATAW& found, const std::wstring& folder, Traces& traces)
{
    const std::wstring path = folder + L'\\' + found.cFileName;
    constexpr DWORD kFolderOrLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    if ((found.dwFileAttributes & kFolderOrLink) != FILE_ATTRIBUTE_DIRECTORY)
    {
        traces[path] = {Number(found.ftLastWriteTime),
                        Joined(found.nFileSizeHigh, found.nFileSizeLow)};
    }
    else if (!IsItselfOrParent(found.cFileName))
    {
        AddFiles(path, traces);
    }
}

} // namespace

void AddKeys(HKEY key, const std::wstring& name, Traces& traces)
{
    DWORD subkeys = 0;
    DWORD values = 0;
    FILETIME changed{};
    ::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr,
                       nullptr, nullptr, &changed);
    traces[name] = {Number(changed), values};
    for (DWORD index = 0; index < subkeys; ++index)
    {
        const std::wstring subkey = NameOfSubkey(key, index);
        AddSubkey(key, subkey, name + L'\\' + subkey, traces);
    }
}

void AddFiles(const std::wstring& folder, Traces& traces)
{
    WIN32_FILE_ATTRIBUTE_DATA itself{};
    ::GetFileAttributesExW((folder + L'\\').c_str(), GetFileExInfoStandard, &itself);
    traces[folder] = {Number(itself.ftLastWriteTime), 0};
    WIN32_FIND_DATAW found{};
    const HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
    {
        return;
    }
    const UniqueHandle<HANDLE, &::FindClose> closes(search);
    do
    {
        AddFound(found, folder, traces);
    } while (::FindNextFileW(search, &found));
}

Traces AllTraces()
{
    std::array<wchar_t, MAX_PATH> windows{};
    ::GetWindowsDirectoryW(windows.data(), static_cast<UINT>(windows.size()));
    Traces traces;
    AddKeys(HKEY_USERS, L"HKEY_USERS", traces);
    AddKeys(HKEY_LOCAL_MACHINE, L"HKEY_LOCAL_MACHINE", traces);
    AddFiles(std::filesystem::path(windows.data()).root_name().wstring(), traces);
    return traces;
}

std::vector<std::wstring> Differences(const Traces& before, const Traces& after)
{
    std::vector<std::wstring> differences;
    for (const auto& [path, change] : after)
    {
        const auto earlier = before.find(path);
        if (earlier == before.end())
        {
            differences.push_back(L"new " + path);
        }
        else if (earlier->second != change)
        {
            differences.push_back(L"changed " + path);
        }
    }
    for (const auto& [path, change] : before)
    {
        if (!after.contains(path))
        {
            differences.push_back(L"gone " + path);
        }
    }
    return differences;
}
