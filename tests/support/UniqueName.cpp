#include "tests/support/UniqueName.h"

#include <windows.h>

#include <atomic>

std::wstring UniqueName(std::wstring_view stem)
{
    static std::atomic<int> count{0};
    return std::wstring(stem) + std::to_wstring(::GetCurrentProcessId()) + L"x" +
           std::to_wstring(++count);
}
