#include "tests/support/HostProcess.h"

#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

HostProcess::HostProcess(const std::wstring& className, const std::wstring& title,
                         const std::wstring& words)
    : Process(BuiltProgram(L"test_host.exe"),
              L"test_host \"" + className + L"\" \"" + title + L"\" " + words)
{
    WaitUntil([&] {
        m_window = FindProcessWindow(Id(), className.c_str(), nullptr);
        return m_window != nullptr || !IsRunning();
    });
}

bool HostProcess::WaitUntilReceived() const
{
    return WaitUntil([&] { return FindProcessWindow(Id(), nullptr, L"received") != nullptr; });
}
