#include "tests/kit/WatchedProgram.h"

#include "tests/support/KillOnCloseJob.h"

#include <memory>

namespace
{

struct Closing
{
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, Closing>;

HANDLE OpenInheritable(const wchar_t* path, DWORD access, DWORD disposition)
{
    SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return ::CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                         disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

std::uintmax_t SizeOf(const std::filesystem::path& file)
{
    std::error_code notThere;
    const std::uintmax_t size = std::filesystem::file_size(file, notThere);
    return notThere ? 0 : size;
}

/// Whether the process ended by itself.
bool WaitWhileAlive(HANDLE process, const std::filesystem::path& sign,
                    std::chrono::seconds patience)
{
    constexpr DWORD kLookEvery = 100; // milliseconds
    std::uintmax_t size = 0;
    auto lastGrowth = std::chrono::steady_clock::now();
    while (::WaitForSingleObject(process, kLookEvery) == WAIT_TIMEOUT)
    {
        const auto now = std::chrono::steady_clock::now();
        const std::uintmax_t newSize = SizeOf(sign);
        lastGrowth = newSize == size ? lastGrowth : now;
        size = newSize;
        if (now - lastGrowth > patience)
        {
            return false;
        }
    }
    return true;
}

} // namespace

ProgramEnd RunWatched(const std::wstring& program, std::wstring commandLine,
                      const std::filesystem::path& output, const std::filesystem::path& sign,
                      std::chrono::seconds patience)
{
    const Handle nothing(OpenInheritable(L"NUL", GENERIC_READ, OPEN_EXISTING));
    const Handle printed(OpenInheritable(output.c_str(), FILE_APPEND_DATA, OPEN_ALWAYS));
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing.get();
    startup.hStdOutput = printed.get();
    startup.hStdError = printed.get();
    PROCESS_INFORMATION information{};
    if (!::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                          CREATE_SUSPENDED, nullptr, nullptr, &startup, &information))
    {
        return {.startError = ::GetLastError()};
    }
    const Handle process(information.hProcess);
    const Handle thread(information.hThread);
    const Handle job(MakeKillOnCloseJob());
    ::AssignProcessToJobObject(job.get(), process.get());
    ::ResumeThread(thread.get());

    ProgramEnd end;
    end.hung = !WaitWhileAlive(process.get(), sign, patience);
    if (end.hung)
    {
        constexpr UINT kEnded = 0xDEAD;
        ::TerminateProcess(process.get(), kEnded);
        constexpr DWORD kLimit = 10'000;
        ::WaitForSingleObject(process.get(), kLimit);
    }
    ::GetExitCodeProcess(process.get(), &end.exitCode);
    return end;
}
