#include "tests/support/OpenByShell.h"

#include "tests/support/Process.h"

#include <shellapi.h>

#include <iostream>

std::optional<int> OpenByShell(const std::wstring& what)
{
    SHELLEXECUTEINFOW execution{};
    execution.cbSize = sizeof(execution);
    execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    execution.lpFile = what.c_str();
    execution.nShow = SW_SHOWNORMAL;
    if (!::ShellExecuteExW(&execution) || execution.hProcess == nullptr)
    {
        std::cerr << "The shell does not open it: error " << ::GetLastError() << '\n';
        return std::nullopt;
    }
    return Process(KernelHandle(execution.hProcess)).WaitForExit();
}
