#include "tests/support/Process.h"

#include <system_error>
#include <utility>

namespace
{

// Under heavy load Wine now and then fails to set a new process up and reports an internal error;
// the program has not begun to run then, so another try is no second run. Windows does not do this.
bool Create(const std::filesystem::path& program, const std::wstring& commandLine,
            STARTUPINFOW& startup, PROCESS_INFORMATION& information)
{
    constexpr int kTries = 5;
    for (int attempt = 0; attempt < kTries; ++attempt)
    {
        std::wstring writable = commandLine;
        const BOOL inheritsHandles = startup.hStdOutput != nullptr;
        if (::CreateProcessW(program.c_str(), writable.data(), nullptr, nullptr, inheritsHandles, 0,
                             nullptr, nullptr, &startup, &information))
        {
            return true;
        }
        if (::GetLastError() != ERROR_INTERNAL_ERROR)
        {
            return false;
        }
    }
    return false;
}

} // namespace

Process::Process(const std::filesystem::path& program, const std::wstring& commandLine,
                 std::optional<WORD> showCommand, HANDLE output)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    if (showCommand)
    {
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = *showCommand;
    }
    startup.dwFlags |= output == nullptr ? 0 : STARTF_USESTDHANDLES;
    startup.hStdOutput = output;
    startup.hStdError = output;
    PROCESS_INFORMATION information{};
    if (!Create(program, commandLine, startup, information))
    {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(),
                                program.string());
    }
    const KernelHandle thread(information.hThread);
    m_process.reset(information.hProcess);
    m_mainThreadId = information.dwThreadId;
}

Process::Process(KernelHandle process) : m_process(std::move(process)) {}

Process::~Process()
{
    Kill();
}

bool Process::IsRunning() const
{
    return ::WaitForSingleObject(m_process.get(), 0) == WAIT_TIMEOUT;
}

std::optional<int> Process::WaitForExit(std::chrono::milliseconds limit) const
{
    if (::WaitForSingleObject(m_process.get(), static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0)
    {
        return std::nullopt;
    }
    DWORD code = 0;
    ::GetExitCodeProcess(m_process.get(), &code);
    return static_cast<int>(code);
}

void Process::Kill()
{
    if (IsRunning())
    {
        constexpr UINT kKilled = 0xDEAD;
        ::TerminateProcess(m_process.get(), kKilled);
        WaitForExit();
    }
}
