#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <string>

/// How a program ended.
struct ProgramEnd
{
    /// The platform's error when it was not even started, or 0.
    DWORD startError = 0;
    DWORD exitCode = 0;
    /// Whether it had to be ended.
    bool hung = false;
};

/// Runs a program to its end, with all that it prints added to the file `output`. When the file
/// `sign` of its life has not grown for as long as `patience`, the program is ended. What it has
/// started and left behind is ended in any case.
ProgramEnd RunWatched(const std::wstring& program, std::wstring commandLine,
                      const std::filesystem::path& output, const std::filesystem::path& sign,
                      std::chrono::seconds patience);
