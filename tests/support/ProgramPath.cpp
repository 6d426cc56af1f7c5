#include "tests/support/ProgramPath.h"

#include <windows.h>

std::filesystem::path BuiltProgram(std::wstring_view name)
{
    wchar_t self[MAX_PATH];
    ::GetModuleFileNameW(nullptr, self, MAX_PATH);
    return std::filesystem::path(self).replace_filename(name);
}
