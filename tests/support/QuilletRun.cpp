#include "tests/support/QuilletRun.h"

#include "tests/support/ProgramPath.h"

#include <gtest/gtest.h>

namespace
{

std::filesystem::path QuilletPath()
{
    return BuiltProgram(L"quillet.exe");
}

bool HasFocus(HWND control)
{
    GUITHREADINFO information{};
    information.cbSize = sizeof(information);
    const DWORD thread = ::GetWindowThreadProcessId(control, nullptr);
    return control != nullptr && ::GetGUIThreadInfo(thread, &information) &&
           information.hwndFocus == control;
}

} // namespace

QuilletRun::QuilletRun(std::wstring_view arguments) : Process(QuilletPath(), CommandLine(arguments))
{
}

std::wstring QuilletRun::CommandLine(std::wstring_view arguments)
{
    return L'"' + QuilletPath().wstring() + L'"' + std::wstring(arguments);
}

HWND QuilletRun::Dialog() const
{
    return FindProcessWindow(Id(), L"#32770", L"Orvane Anwendungsweiterleitung");
}

HWND QuilletRun::WaitForDialog(std::chrono::milliseconds limit) const
{
    HWND dialog = nullptr;
    WaitUntil([&] { return (dialog = Dialog()) != nullptr || !IsRunning(); }, limit);
    return dialog;
}

HWND QuilletRun::WaitForShownDialog() const
{
    const HWND dialog = WaitForDialog();
    const bool shown =
        dialog != nullptr && WaitUntil([&] {
            return ::IsWindowVisible(dialog) && HasFocus(::GetDlgItem(dialog, IDCANCEL));
        });
    return shown ? dialog : nullptr;
}

int RunQuillet(std::wstring_view arguments)
{
    constexpr int kNoExitCode = 999999;
    const QuilletRun run(arguments);
    const auto code = run.WaitForExit();
    EXPECT_TRUE(code.has_value()) << "quillet.exe still runs";
    return code.value_or(kNoExitCode);
}

HWND FindProcessWindow(DWORD processId, const wchar_t* className, const wchar_t* text)
{
    for (HWND window = ::FindWindowExW(nullptr, nullptr, className, text); window != nullptr;
         window = ::FindWindowExW(nullptr, window, className, text))
    {
        DWORD owner = 0;
        ::GetWindowThreadProcessId(window, &owner);
        if (owner == processId)
        {
            return window;
        }
    }
    return nullptr;
}
