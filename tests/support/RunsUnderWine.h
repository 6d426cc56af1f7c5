#pragma once

#include <windows.h>

/// For expectations in which Wine and Windows differ.
inline bool RunsUnderWine()
{
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}
