#include "tests/support/OpenByShell.h"

#include "tests/support/Process.h"

#include <shellapi.h>

#include <gtest/gtest.h>

std::optional<int> OpenByShell(const std::wstring& what)
{
    SHELLEXECUTEINFOW execution{};
    execution.cbSize = sizeof(execution);
    execution.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    execution.lpFile = what.c_str();
    execution.nShow = SW_SHOWNORMAL;
    if (!::ShellExecuteExW(&execution) || execution.hProcess == nullptr)
    {
        ADD_FAILURE() << "the shell does not open it: error " << ::GetLastError();
        return std::nullopt;
    }
    const auto exitCode = Process(execution.hProcess).WaitForExit();
    EXPECT_TRUE(exitCode.has_value()) << "what the shell started still runs";
    return exitCode;
}
