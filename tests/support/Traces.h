#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// When something was last changed, and how much it holds (a file's bytes, a key's values).
struct LastChange
{
    std::uint64_t time = 0;
    std::uint64_t size = 0;
    bool operator==(const LastChange&) const = default;
};

/// What programs can leave behind: keys of the registry, files and folders, by their paths. What
/// was made and removed again shows as a change of the key or folder that it was in.
using Traces = std::map<std::wstring, LastChange>;

/// Adds the key and all keys below it; `name` is what they begin with. Links are not followed.
void AddKeys(HKEY key, const std::wstring& name, Traces& traces);

/// Adds the folder and everything in it. Links are not followed: those that Wine puts into a user's
/// profile lead out of the folder that belongs to it.
void AddFiles(const std::wstring& folder, Traces& traces);

/// Everything: all users' keys, all of the machine's, and the whole drive on which Windows is.
Traces AllTraces();

/// "new PATH", "changed PATH" or "gone PATH" for each difference.
std::vector<std::wstring> Differences(const Traces& before, const Traces& after);
