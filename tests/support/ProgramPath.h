#pragma once

#include <filesystem>
#include <string_view>

/// The path of a program that the same build has put beside this one.
std::filesystem::path BuiltProgram(std::wstring_view name);
