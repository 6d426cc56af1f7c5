#include "tests/support/Process.h"

#include <system_error>

Process::Process(const std::filesystem::path& program, std::wstring commandLine)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    if (!::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          nullptr, &startup, &m_information))
    {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(),
                                program.string());
    }
}

Process::~Process()
{
    Kill();
    ::CloseHandle(m_information.hThread);
    ::CloseHandle(m_information.hProcess);
}

bool Process::IsRunning() const
{
    return ::WaitForSingleObject(m_information.hProcess, 0) == WAIT_TIMEOUT;
}

std::optional<int> Process::WaitForExit(std::chrono::milliseconds limit) const
{
    if (::WaitForSingleObject(m_information.hProcess, static_cast<DWORD>(limit.count())) !=
        WAIT_OBJECT_0)
    {
        return std::nullopt;
    }
    DWORD code = 0;
    ::GetExitCodeProcess(m_information.hProcess, &code);
    return static_cast<int>(code);
}

void Process::Kill()
{
    if (IsRunning())
    {
        constexpr UINT kKilled = 0xDEAD;
        ::TerminateProcess(m_information.hProcess, kKilled);
        WaitForExit();
    }
}
