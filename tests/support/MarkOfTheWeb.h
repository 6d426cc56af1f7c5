#pragma once

#include <windows.h>

#include <filesystem>

/// Whether the file is marked as downloaded. The shell asks its user before it starts such a
/// program, and nobody is there to answer.
inline bool HasMarkOfTheWeb(const std::filesystem::path& file)
{
    return ::GetFileAttributesW((file.wstring() + L":Zone.Identifier").c_str()) !=
           INVALID_FILE_ATTRIBUTES;
}
