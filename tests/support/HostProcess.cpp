#include "tests/support/HostProcess.h"

#include "tests/support/HostReport.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/QuilletRun.h"

HostProcess::HostProcess(const std::wstring& className, const std::wstring& title,
                         const std::wstring& words)
    : Process(BuiltProgram(L"test_host.exe"),
              L"test_host \"" + className + L"\" \"" + title + L"\" " + words)
{
    WaitUntil([&] {
        const HWND window = FindProcessWindow(Id(), className.c_str(), nullptr);
        m_window = Reported(window, kReportReady) > 0 ? window : nullptr;
        return m_window != nullptr || !IsRunning();
    });
}

bool HostProcess::WaitUntilReceived() const
{
    return WaitUntil([&] { return Reported(m_window, kReportReceived) > 0; });
}

bool HostProcess::WaitUntilAnswered() const
{
    return WaitUntil([&] { return Reported(m_window, kReportAnswered) > 0; });
}

std::size_t HostProcess::Activations() const
{
    return Reported(m_window, kReportActivated);
}
