#include "tests/support/QuilletRun.h"

#include "tests/support/DialogProbe.h"
#include "tests/support/ProgramPath.h"

#include <gtest/gtest.h>

namespace
{

std::filesystem::path QuilletPath()
{
    return BuiltProgram(L"quillet.exe");
}

struct Wanted
{
    DWORD processId;
    const wchar_t* className;
    const wchar_t* text;
    std::vector<HWND> found;
};

// A walk from one window to the next would end early when the one it stands on goes away; the
// platform's own enumeration works on a list made before.
BOOL CALLBACK TakeIfWanted(HWND window, LPARAM parameter)
{
    auto& wanted = *reinterpret_cast<Wanted*>(parameter);
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (owner != wanted.processId)
    {
        return TRUE;
    }
    constexpr int kCapacity = 512;
    wchar_t className[kCapacity] = L"";
    wchar_t text[kCapacity] = L"";
    ::GetClassNameW(window, className, kCapacity);
    ::InternalGetWindowText(window, text, kCapacity);
    const bool fits =
        (wanted.className == nullptr || ::lstrcmpiW(className, wanted.className) == 0) &&
        (wanted.text == nullptr || ::lstrcmpiW(text, wanted.text) == 0);
    if (fits)
    {
        wanted.found.push_back(window);
    }
    return TRUE;
}

} // namespace

QuilletRun::QuilletRun(std::wstring_view arguments, std::optional<WORD> showCommand)
    : Process(QuilletPath(), CommandLine(arguments), showCommand)
{
}

std::wstring QuilletRun::CommandLine(std::wstring_view arguments)
{
    return L'"' + QuilletPath().wstring() + L'"' + std::wstring(arguments);
}

HWND QuilletRun::Dialog() const
{
    return FindProcessWindow(Id(), L"#32770", kWaitDialogCaption);
}

HWND QuilletRun::WaitForDialog() const
{
    HWND dialog = nullptr;
    WaitUntil([&] { return (dialog = Dialog()) != nullptr || !IsRunning(); });
    return dialog;
}

HWND QuilletRun::WaitForWaitingDialog() const
{
    const HWND dialog = WaitForDialog();
    const bool waits = dialog != nullptr && WaitForPostedMessages(dialog);
    return waits ? dialog : nullptr;
}

int RunQuillet(std::wstring_view arguments)
{
    constexpr int kNoExitCode = 999999;
    const QuilletRun run(arguments);
    const auto code = run.WaitForExit();
    EXPECT_TRUE(code.has_value()) << "quillet.exe still runs";
    return code.value_or(kNoExitCode);
}

std::vector<HWND> FindProcessWindows(DWORD processId, const wchar_t* className, const wchar_t* text)
{
    Wanted wanted{processId, className, text, {}};
    ::EnumWindows(&TakeIfWanted, reinterpret_cast<LPARAM>(&wanted));
    return wanted.found;
}

HWND FindProcessWindow(DWORD processId, const wchar_t* className, const wchar_t* text)
{
    const std::vector<HWND> found = FindProcessWindows(processId, className, text);
    return found.empty() ? nullptr : found.front();
}
