#pragma once

#include <windows.h>

#include "tests/support/UniqueHandle.h"
#include "tests/support/Waiting.h"

#include <filesystem>
#include <optional>
#include <string>

/// A started process. Whatever still runs at the end of the object's life is ended then.
class Process
{
public:
    /// Starts `program` with exactly `commandLine` (program name included, nothing quoted or
    /// added), of up to 32,766 code units. `showCommand` (SW_HIDE …) is how the caller wants its
    /// first window shown; without one it says nothing about that. `output`, an inheritable handle,
    /// gets what it prints on either stream; there is no input then. Throws std::system_error when
    /// the platform refuses.
    Process(const std::filesystem::path& program, const std::wstring& commandLine,
            std::optional<WORD> showCommand = std::nullopt, HANDLE output = nullptr);
    /// Takes over a process that somebody else, such as the shell, has started.
    explicit Process(KernelHandle process);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    DWORD Id() const { return ::GetProcessId(Handle()); }
    DWORD MainThreadId() const { return m_mainThreadId; }
    HANDLE Handle() const { return m_process.get(); }

    bool IsRunning() const;
    /// The exit code once the process has ended; nothing when it still runs after `limit`.
    std::optional<int> WaitForExit(std::chrono::milliseconds limit = kWaitLimit) const;
    /// Ends the process from outside, as a task manager does.
    void Kill();

private:
    KernelHandle m_process;
    DWORD m_mainThreadId = 0;
};
